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

} // namespace

LinkList Orphanage::adoptInto(const LinkList &tree)
{
    if (isEmpty())
        return tree;
    QSet<QString> left;
    const auto note = [&left](const LinkItem &item) {
        if (item.isGroup())
            left.insert(item.stableId);
    };
    walk(tree, note);
    for (const Orphan &orphan : m_orphans)
        walk({orphan.item}, note);
    // A route's outer one was made before it.
    std::vector<const QString *> targets;
    for (const Group &group : m_groups) {
        const QString *outer = group.outer == noRoute ? nullptr : targets[static_cast<std::size_t>(group.outer)];
        targets.push_back(left.contains(group.stableId) ? &group.stableId : outer);
    }
    const auto targetOf = [&targets](const Orphan &orphan) {
        return orphan.route == noRoute ? nullptr : targets[static_cast<std::size_t>(orphan.route)];
    };
    Gifts gifts;
    LinkList result = tree;
    for (const Orphan &orphan : m_orphans) {
        if (const QString *target = targetOf(orphan))
            gifts[*target] += orphan.item;
        else
            result += orphan.item;
    }
    result = handOut(result, gifts);
    // Groups that are only in each other have no place of their own.
    for (const Orphan &orphan : m_orphans) {
        const QString *target = gifts.isEmpty() ? nullptr : targetOf(orphan);
        if (target && gifts.contains(*target))
            result += handOut(gifts.take(*target), gifts);
    }
    return result;
}

} // namespace orvelle
