#include "ui/settings/SnapshotDifference.h"

#include "links/LinkContent.h"

namespace orvelle {

namespace {

struct Place {
    const LinkItem *item = nullptr;
    QString group; ///< stable id of the group around it; empty at the top level
};
using Places = QHash<QString, Place>;

void collect(const LinkList &links, const QString &group, Places &places)
{
    for (const LinkItem &item : links) {
        places.insert(item.stableId, {&item, group});
        if (item.children)
            collect(*item.children, item.stableId, places);
    }
}

SnapshotDifference::Fate fateOf(const Place &place, const Places &current)
{
    using Fate = SnapshotDifference::Fate;
    const auto there = current.constFind(place.item->stableId);
    if (there == current.constEnd())
        return Fate::ComesBack;
    if (contentOf(*there->item) != contentOf(*place.item))
        return Fate::Changes;
    return there->group == place.group ? Fate::Same : Fate::Moves;
}

QStringList order(const LinkList &links)
{
    QStringList ids;
    for (const LinkItem &item : links) {
        ids += item.stableId;
        if (item.children)
            ids += order(*item.children);
    }
    return ids;
}

} // namespace

SnapshotDifference snapshotDifference(const LinkList &tree, const LinkList &snapshot)
{
    using Fate = SnapshotDifference::Fate;
    Places current;
    Places past;
    collect(tree, {}, current);
    collect(snapshot, {}, past);

    SnapshotDifference result;
    for (auto it = past.constBegin(); it != past.constEnd(); ++it) {
        const Fate fate = fateOf(*it, current);
        result.comeBack += fate == Fate::ComesBack;
        result.change += fate == Fate::Changes;
        result.move += fate == Fate::Moves;
        if (fate != Fate::Same)
            result.fates.insert(it.key(), fate);
    }
    for (auto it = current.constBegin(); it != current.constEnd(); ++it)
        result.go += !past.contains(it.key());
    const bool sameItems = result.comeBack == 0 && result.go == 0 && result.move == 0;
    result.reorders = sameItems && order(tree) != order(snapshot);
    return result;
}

} // namespace orvelle
