#pragma once

#include <QPointer>
#include <QWidget>

namespace orvelle {

/// Keeps the window around a widget alive while a drag from inside it goes on.
/// A drag runs an event loop of its own, in which a window that deletes itself
/// when it is closed would be gone with the widget that is dragging. One that
/// was closed meanwhile is deleted once the caller is back in its own event
/// loop. Main thread; to be used on the stack.
class KeptWindow
{
public:
    explicit KeptWindow(const QWidget &inside);
    ~KeptWindow();
    KeptWindow(const KeptWindow &) = delete;
    KeptWindow &operator=(const KeptWindow &) = delete;

private:
    QPointer<QWidget> m_window; ///< null where the window does not delete itself
};

} // namespace orvelle
