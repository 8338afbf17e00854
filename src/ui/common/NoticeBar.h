#pragma once

#include <QFrame>
#include <QList>
#include <QString>

#include <functional>

class QBoxLayout;
class QLabel;

namespace orvelle {

/// A bar inside a window that says what happened and offers what can be done
/// about it, without stopping anybody. Hidden until showNotice() is called.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    struct Action {
        QString title;
        std::function<void()> run;
    };

    explicit NoticeBar(QWidget *parent = nullptr);

    /// For a bar that reaches from edge to edge of its window: square corners.
    void setFlush(bool flush) { m_flush = flush; }

    /// Shows `message` (plain text) with one button per action, replacing what
    /// was shown. With `dismissable` the bar can also be closed. The same notice
    /// again keeps its buttons, and with them the keyboard's focus; only what
    /// they do is replaced.
    void showNotice(const QString &message, const QList<Action> &actions = {}, bool dismissable = true);

    QSize minimumSizeHint() const override;

signals:
    void dismissed();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void makeButtons(bool dismissable);
    void clearButtons();
    void updateColors();

    QLabel *m_label;
    QBoxLayout *m_row;
    QBoxLayout *m_buttons;
    QColor m_ground;
    bool m_flush = false;
    QList<Action> m_actions;
    bool m_isDismissable = false;
};

} // namespace orvelle
