#include "sync/SaneDates.h"

#include "links/LinkTree.h"

#include <algorithm>

namespace orvelle {

namespace {

bool isWrong(const std::optional<Timestamp> &date, Timestamp latest)
{
    return date && *date > latest;
}

bool anyWrong(const LinkItem &item, Timestamp latest)
{
    return isWrong(item.createdAt, latest) || isWrong(item.modifiedAt, latest) ||
           isWrong(item.contentModifiedAt, latest);
}

} // namespace

LinkList withSaneDates(const LinkList &links, Timestamp exportDate, Timestamp now)
{
    const Timestamp latest = std::max(exportDate, now);
    LinkList sane = links;
    changeItems(sane, [&](const LinkItem &item) -> std::optional<LinkItem> {
        if (!anyWrong(item, latest))
            return std::nullopt;
        LinkItem changed = item;
        for (auto *date : {&changed.createdAt, &changed.modifiedAt, &changed.contentModifiedAt}) {
            if (isWrong(*date, latest))
                *date = exportDate;
        }
        return changed;
    });
    return sane;
}

} // namespace orvelle
