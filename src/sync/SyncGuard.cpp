#include "sync/SyncGuard.h"

#include "sync/LinkMerge.h"

namespace orvelle {

namespace {

constexpr qint64 fewItems = 5;
constexpr qint64 manyItems = 1000;
constexpr qint64 maxPercent = 20;

} // namespace

std::optional<MassRemoval> massRemoval(const LinkList &before, const LinkList &after)
{
    const QSet<QString> had = collectAllStableIds(before);
    const QSet<QString> has = collectAllStableIds(after);
    MassRemoval removal{0, had.size()};
    for (const QString &stableId : had)
        removal.removed += has.contains(stableId) ? 0 : 1;
    const bool isGreatShare = removal.removed > fewItems && removal.removed * 100 > removal.of * maxPercent;
    if (!isGreatShare && removal.removed <= manyItems)
        return std::nullopt;
    return removal;
}

} // namespace orvelle
