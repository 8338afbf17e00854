#pragma once

#include "platform/Pasteboard.h"

#include <memory>

namespace orvelle {

class Clock;

/// The clipboard as this desktop gives access to it: the compositor's where it
/// lets us, else that of the X server, which on Wayland is what the compositor
/// shows to X programs.
std::unique_ptr<Pasteboard> desktopPasteboard(Clock &clock);

} // namespace orvelle
