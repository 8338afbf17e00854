#pragma once

#include "links/LinkItem.h"

namespace orvelle {

/// How the items of another tree stand to this one's, by their stable ids.
struct ExchangeAnalysis {
    qint64 added = 0;    ///< only in the other tree
    qint64 changed = 0;  ///< in both, but with other content or in another group
    qint64 equal = 0;    ///< in both and the same
    qint64 onlyHere = 0; ///< only in this tree
    friend bool operator==(const ExchangeAnalysis &, const ExchangeAnalysis &) = default;
};

/// Dates, bookmarks and pictures are no content.
ExchangeAnalysis analyseExchange(const LinkList &here, const LinkList &other);

} // namespace orvelle
