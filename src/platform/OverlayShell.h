#pragma once

#include <functional>

class QWindow;

namespace orvelle {

/// Lets a window cover a whole screen above everything else, and have the
/// keyboard, where windows cannot place themselves. Main thread.
class OverlayShell
{
public:
    virtual ~OverlayShell() = default;

    virtual bool isAvailable() const = 0;
    /// Before `window` is shown for the first time; it has
    /// Qt::BypassWindowManagerHint and gets the size of the screen that the
    /// user is at. False when the desktop refuses: then it is not to be shown.
    /// `taken` is called, from the event loop, when the desktop takes the window
    /// away later, as it does with its screen.
    virtual bool cover(QWindow &window, std::function<void()> taken) = 0;
    /// With the next frame it leaves keyboard and pointer to others; what opens
    /// next may have the focus.
    virtual void letGo(QWindow &window) = 0;
    /// Before it is hidden or destroyed.
    virtual void uncover(QWindow &window) = 0;
};

} // namespace orvelle
