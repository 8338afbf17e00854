#pragma once

#include "platform/HotKeyService.h"

#include <QByteArray>

namespace orvelle {

/// The combination as the desktop's portals write it (freedesktop.org shortcuts
/// specification): "LOGO+ALT+x", modifiers and then what the key gives on the
/// keyboard that is set, by its name in xkbcommon. `keymap` is that keyboard in
/// the text form of XKB; without it, or where its layouts have no Latin letter
/// in that place, the US keyboard counts. Empty for a key without a name.
QString portalTrigger(const HotKey &hotKey, const QByteArray &keymap = {});

} // namespace orvelle
