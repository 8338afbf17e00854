#pragma once

#include "base/Text.h"
#include "links/LinkItem.h"

#include <optional>
#include <span>

namespace orvelle {

/// A colour as two sRGB values 0xRRGGBB, opaque: for light and for dark
/// surroundings. The fixed colours have the same value twice.
struct LinkColor {
    quint32 light = 0;
    quint32 dark = 0;
    friend bool operator==(const LinkColor &, const LinkColor &) = default;
};

struct ColorChoice {
    TextKey label;
    const char *key; ///< what customIconColor stores
    LinkColor color;
};

/// The colours on offer, in picker order.
std::span<const ColorChoice> allColors();

/// The colour behind a stored key; absent for an unknown or absent key.
std::optional<LinkColor> nsColor(const std::optional<QString> &key);

/// The tint of the item's symbol.
LinkColor displayColor(const LinkItem &item);

} // namespace orvelle
