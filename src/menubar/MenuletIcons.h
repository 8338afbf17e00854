#pragma once

#include "base/Text.h"

#include <QString>

#include <span>

namespace orvelle {

/// A choice of status-item icon. Stored value and drawn symbol differ on
/// purpose in some rows: the filled variants are drawn.
struct MenuletIcon {
    const char *stored;
    const char *symbol;
    TextKey label;
};

std::span<const MenuletIcon> menuletIcons();

/// The symbol for a stored value; "link" for an unknown one.
QString menuletSymbol(const QString &stored);

} // namespace orvelle
