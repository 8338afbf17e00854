#pragma once

#include "platform/HotKeyService.h"

#include <QByteArray>

#include <xkbcommon/xkbcommon.h>

namespace orvelle {

/// What a key gives on a keyboard that is set; XKB_KEY_NoSymbol for nothing.
struct KeySymbols {
    xkb_keysym_t plain = XKB_KEY_NoSymbol;
    xkb_keysym_t shifted = XKB_KEY_NoSymbol;
};

/// Of the first layout that gives what a shortcut can be made of. `keymap` is
/// the keyboard in the text form of XKB; without it, or where its layouts have
/// no Latin letter in that place, the US keyboard counts.
KeySymbols keySymbols(const HotKey &hotKey, const QByteArray &keymap);

} // namespace orvelle
