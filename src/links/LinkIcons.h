#pragma once

#include "base/Text.h"
#include "links/LinkItem.h"

#include <span>

namespace orvelle {

struct IconChoice {
    TextKey label;
    const char *symbol;
};

/// The icon pickers' tables, in the order shown.
std::span<const IconChoice> groupIcons();
std::span<const IconChoice> networkIcons();
std::span<const IconChoice> noteIcons();

/// The key of the kind label shown in lists ("type.web", "type.group", ...).
TextKey kindLabel(const LinkItem &item);

} // namespace orvelle
