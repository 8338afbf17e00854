#pragma once

#include <QWidget>

#include <memory>

class QLabel;

namespace orvelle {

class Clock;
class Timer;

/// One line at the bottom of a window that says what just happened, and is
/// read out by screen readers. Goes by itself after some seconds. Keeps its
/// room while it is empty, so that nothing jumps.
class StatusLine : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLine(Clock &clock, QWidget *parent = nullptr);
    ~StatusLine() override;

    /// Plain text; replaces what stands there, an empty one clears it.
    void showText(const QString &text);
    QString shownText() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    Clock &m_clock;
    QLabel *m_label;
    QString m_text;
    std::unique_ptr<Timer> m_timer;
};

} // namespace orvelle
