#pragma once

#include "links/LinkItem.h"

#include <optional>

namespace orvelle {

/// How much a change takes away. Counts items by their stable ids, at all
/// levels.
struct MassRemoval {
    qint64 removed = 0;
    qint64 of = 0; ///< how many there were
    friend bool operator==(const MassRemoval &, const MassRemoval &) = default;
};

/// Set when `after` lacks more than 20 % of what is in `before` and more than
/// 5 items, or more than 1,000: such a change is not made without asking.
std::optional<MassRemoval> massRemoval(const LinkList &before, const LinkList &after);

} // namespace orvelle
