#pragma once

#include "links/LinkItem.h"
#include "sync/SaneDates.h"

#include <optional>

namespace orvelle {

/// Two copies of one item merged, but for members of groups: the newer one
/// with the local bookmark, ties to the local one. The text of a note is
/// chosen by itself, by its own date. Absent when that is the local copy as it
/// stands.
std::optional<LinkItem> mergePair(const LinkItem &local, const LinkItem &remote, const SaneDates &dates = {});

} // namespace orvelle
