#pragma once

#include <QWidget>

namespace orvelle {

class OverlayShell;

/// An invisible window over the whole screen, in which the panels of a menu
/// are placed where windows cannot place themselves. Presses beside the menu
/// reach it, too, and the keyboard is its own.
class MenuStage : public QWidget
{
    Q_OBJECT

public:
    explicit MenuStage(OverlayShell &shell);
    ~MenuStage() override;

    /// False when the desktop refuses.
    bool open();
    /// Out of sight and in nobody's way; the window itself goes a moment later,
    /// because the toolkit (6.4) may crash when one goes whose last frame the
    /// compositor has not shown yet.
    void retire();
    void withdraw();

signals:
    /// The pointer's place became known, or it did not in the time that a
    /// compositor needs at most; at global pixels.
    void pointerFound(const QPoint &global);
    /// The desktop took the window away.
    void taken();

protected:
    bool eventFilter(QObject *window, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void giveUpAfter(int milliseconds);
    void found(const QPoint &global);

    OverlayShell &m_shell;
    bool m_isCovering = false;
    bool m_isFound = false;
    bool m_isPainted = false;
    int m_searches = 0;
};

} // namespace orvelle
