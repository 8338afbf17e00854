#pragma once

#include "links/LinkItem.h"

#include <compare>
#include <limits>
#include <optional>

namespace orvelle {

/// A date as it counts in a merge. Among those that count the same, what the
/// clock said decides.
struct CountedDate {
    Timestamp counted;
    Timestamp stated;
    friend auto operator<=>(const CountedDate &, const CountedDate &) = default;
};

/// What dates count for in the merge of one document: one that is later than
/// both now and the document by more than a minute is from a clock that was
/// wrong, and counts as the document's own date. Less is no wonder: several
/// edits of an item within a second are dated a second apart. Nothing is
/// changed in the items, as edits made since are dated after the wrong date.
/// Why this changes nothing for clocks that are right: docs/synchronisation.md.
class SaneDates
{
public:
    /// Every date counts as it stands.
    SaneDates() = default;
    SaneDates(Timestamp exportDate, Timestamp now) : m_exportDate(exportDate), m_latest(std::max(exportDate, now)) {}

    bool isWrong(Timestamp date) const { return date > m_latest + patience; }
    CountedDate count(Timestamp date) const { return {isWrong(date) ? m_exportDate : date, date}; }

    // The dates of ItemDates.h.
    CountedDate itemDate(const LinkItem &item) const;
    CountedDate contentDate(const LinkItem &note) const;

private:
    static constexpr double patience = 60; ///< seconds

    Timestamp m_exportDate;
    Timestamp m_latest{std::numeric_limits<double>::infinity()};
};

} // namespace orvelle
