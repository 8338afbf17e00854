#pragma once

#include "links/LinkItem.h"
#include "sync/SaneDates.h"

#include <functional>

namespace orvelle {

/// deduplicateByStableId(), but for items that only a copy which gives way
/// has, and for which `mayVanish` holds: they go with it. For `movedAt` see
/// Orphanage::adoptInto().
LinkList deduplicate(const LinkList &items, std::optional<Timestamp> movedAt,
                     const std::function<bool(const LinkItem &)> &mayVanish, const SaneDates &dates = {});

} // namespace orvelle
