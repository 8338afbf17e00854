#pragma once

#include "links/LinkItem.h"

namespace orvelle {

/// `links` with each date that is later than both `now` and `exportDate`, the
/// date of the document that is merged, replaced by `exportDate`: a clock that
/// was years ahead then makes no item the newest for ever. Without such dates
/// the list itself. Why this changes nothing for clocks that are right:
/// docs/synchronisation.md.
LinkList withSaneDates(const LinkList &links, Timestamp exportDate, Timestamp now);

} // namespace orvelle
