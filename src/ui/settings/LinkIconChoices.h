#pragma once

#include "links/LinkIcons.h"

namespace orvelle {

/// The symbols the user may choose for the item; empty for kinds whose picture
/// is not chosen.
std::span<const IconChoice> iconChoices(const LinkItem &item);

} // namespace orvelle
