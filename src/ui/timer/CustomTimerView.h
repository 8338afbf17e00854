#pragma once

#include <QWidget>

#include <functional>

class QPushButton;
class QSpinBox;

namespace orvelle {

/// Asks for a duration in hours and minutes. A window that deletes itself when
/// it is closed.
class CustomTimerView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int mostHours = 23;

    /// `onStart` receives the duration in seconds, always above 0. Either is
    /// called at most once, before the window closes; closing it by other
    /// means counts as cancelling.
    CustomTimerView(std::function<void(qint64 seconds)> onStart, std::function<void()> onCancel,
                    QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    qint64 total() const;
    QSpinBox *makeField(const char *objectName, int most, const QString &unit);
    void start();

    std::function<void(qint64)> m_onStart;
    std::function<void()> m_onCancel;
    QSpinBox *m_hours = nullptr;
    QSpinBox *m_minutes = nullptr;
    QPushButton *m_start = nullptr;
};

} // namespace orvelle
