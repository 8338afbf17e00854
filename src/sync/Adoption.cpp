#include "sync/Adoption.h"

#include "links/LinkTree.h"
#include "sync/RebuiltList.h"

#include <QHash>
#include <QSet>

namespace orvelle {

namespace {

using Gifts = QHash<QString, LinkList>;

/// Gives each group its gift; one that is there twice has it once.
LinkList handOut(const LinkList &list, Gifts &gifts)
{
    RebuiltList out(list);
    for (const LinkItem &item : list) {
        if (gifts.isEmpty() || !item.children) {
            out.keep();
            continue;
        }
        LinkList members = *item.children;
        if (item.isGroup())
            members += gifts.take(item.stableId);
        members = handOut(members, gifts);
        if (isSameList(members, *item.children)) {
            out.keep();
        } else {
            LinkItem group = item;
            group.children = std::move(members);
            out.replace(std::move(group));
        }
    }
    return out.take();
}

/// Coming into another group is an edit. A whole second, as documents have no
/// parts of one.
LinkItem moved(LinkItem item, std::optional<Timestamp> movedAt)
{
    if (movedAt && item.modifiedAt)
        item.modifiedAt = std::max(*item.modifiedAt + 1, *movedAt);
    return item;
}

} // namespace

LinkList Orphanage::adoptInto(const LinkList &tree, std::optional<Timestamp> movedAt)
{
    if (isEmpty())
        return tree;
    const std::vector<const QString *> targets = findTargets(tree);
    Gifts gifts;
    LinkList result = tree;
    for (std::size_t i = 0; i < m_orphans.size(); ++i) {
        if (const QString *target = targets[i]; !target)
            result += moved(m_orphans[i].item, movedAt);
        else if (*target == m_groups[static_cast<std::size_t>(m_orphans[i].route)].stableId)
            gifts[*target] += m_orphans[i].item;
        else
            gifts[*target] += moved(m_orphans[i].item, movedAt);
    }
    result = handOut(result, gifts);
    // Groups that are only in each other: one of them comes to the top level,
    // and brings the others.
    for (std::size_t i = 0; i < m_orphans.size() && !gifts.isEmpty(); ++i) {
        const QString &stableId = m_orphans[i].item.stableId;
        const auto others = targets[i] ? gifts.find(*targets[i]) : gifts.end();
        if (others == gifts.end() || !m_orphans[i].item.children || !gifts.contains(stableId))
            continue;
        others->removeIf([&stableId](const LinkItem &item) { return item.stableId == stableId; });
        result += handOut({moved(m_orphans[i].item, movedAt)}, gifts);
    }
    for (std::size_t i = 0; i < m_orphans.size() && !gifts.isEmpty(); ++i) {
        if (targets[i] && gifts.contains(*targets[i]))
            result += handOut(gifts.take(*targets[i]), gifts);
    }
    return result;
}

std::vector<const QString *> Orphanage::findTargets(const LinkList &tree) const
{
    QSet<QString> left;
    const auto note = [&left](const LinkItem &item) {
        if (item.isGroup())
            left.insert(item.stableId);
    };
    walk(tree, note);
    for (const Orphan &orphan : m_orphans)
        walk({orphan.item}, note);
    // A route's outer one was made before it.
    std::vector<const QString *> byRoute;
    for (const Group &group : m_groups) {
        const QString *outer = group.outer == noRoute ? nullptr : byRoute[static_cast<std::size_t>(group.outer)];
        byRoute.push_back(left.contains(group.stableId) ? &group.stableId : outer);
    }
    std::vector<const QString *> targets;
    for (const Orphan &orphan : m_orphans)
        targets.push_back(orphan.route == noRoute ? nullptr : byRoute[static_cast<std::size_t>(orphan.route)]);
    return targets;
}

} // namespace orvelle
