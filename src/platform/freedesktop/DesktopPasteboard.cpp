#include "platform/freedesktop/DesktopPasteboard.h"

#include "platform/freedesktop/XcbPasteboard.h"
#include "platform/freedesktop/wayland/WaylandPasteboard.h"

namespace orvelle {

std::unique_ptr<Pasteboard> desktopPasteboard(Clock &clock)
{
    if (auto wayland = WaylandPasteboard::open(clock))
        return wayland;
    return std::make_unique<XcbPasteboard>(clock);
}

} // namespace orvelle
