#pragma once

#include "platform/HotKeyService.h"

#include <memory>

namespace orvelle {

class Clock;

/// The hot key as this desktop lets programs have one: a grab on X, and on
/// Wayland KDE's own service or any other desktop's portal. `appId` is the name
/// of the desktop entry, `description` what the user reads that the key does.
std::unique_ptr<HotKeyService> desktopHotKeys(Clock &clock, const QString &appId, const QString &description);

} // namespace orvelle
