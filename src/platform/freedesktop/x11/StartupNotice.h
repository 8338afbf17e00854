#pragma once

#include <memory>

struct _GAppLaunchContext;

namespace orvelle {

/// What the desktop is told of a program that is being started (Startup
/// Notification Protocol 0.1, freedesktop.org): its name and icon, and an id
/// with the time of the user's action, by which the program's window may take
/// the focus. On Wayland the activation token serves for that, and is spent.
/// Made on the main thread, whose environment of that moment the program gets;
/// used by one thread.
class StartupNotice
{
public:
    StartupNotice();
    ~StartupNotice();

    /// For GIO's launch functions; lives as long as this.
    _GAppLaunchContext *context() const;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};

} // namespace orvelle
