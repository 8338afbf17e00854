#include "sync/ItemDates.h"

#include <algorithm>
#include <cmath>

namespace orvelle {

namespace {

bool isKnown(const std::optional<Timestamp> &date)
{
    return date && !std::isnan(date->seconds);
}

Timestamp firstKnown(const std::optional<Timestamp> &first, const std::optional<Timestamp> &second)
{
    if (isKnown(first))
        return *first;
    return isKnown(second) ? *second : Timestamp::distantPast();
}

} // namespace

Timestamp itemDate(const LinkItem &item)
{
    return firstKnown(item.modifiedAt, item.createdAt);
}

Timestamp contentDate(const LinkItem &note)
{
    const bool isBlank = note.noteContent.value_or(QString()).isEmpty() && !note.noteRTFData;
    if (isBlank && !isKnown(note.contentModifiedAt))
        return Timestamp::distantPast();
    return firstKnown(note.contentModifiedAt, note.modifiedAt);
}

Timestamp creationDate(const LinkItem &item)
{
    return firstKnown(item.createdAt, std::nullopt);
}

Timestamp latestItemDate(const LinkList &links)
{
    Timestamp latest = Timestamp::distantPast();
    for (const LinkItem &item : links) {
        latest = std::max(latest, itemDate(item));
        if (item.children)
            latest = std::max(latest, latestItemDate(*item.children));
    }
    return latest;
}

} // namespace orvelle
