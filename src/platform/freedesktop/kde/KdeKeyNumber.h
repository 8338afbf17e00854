#pragma once

#include "platform/HotKeyService.h"

#include <QByteArray>

namespace orvelle {

/// The combination as KDE's service of shortcuts numbers it: a Qt::Key with
/// Qt's modifiers. It goes by what the keyboard gives, so that Shift and a key
/// with another character on top are that character. `keymap` as for
/// keySymbols(); 0 for a key without a number.
int kdeKeyNumber(const HotKey &hotKey, const QByteArray &keymap = {});

} // namespace orvelle
