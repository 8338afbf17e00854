#include "links/LinkEditing.h"

#include "links/exchange/TakenIdentities.h"

#include <QCollator>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

// A group at this depth takes nothing more.
constexpr int fullDepth = 2;

QSet<QUuid> toSet(const QList<QUuid> &ids)
{
    return {ids.begin(), ids.end()};
}

void collectGroups(QList<GroupAtDepth> &groups, const LinkList &links, int depth)
{
    for (const LinkItem &item : links) {
        if (!item.isGroup())
            continue;
        groups += {item, depth};
        if (item.children)
            collectGroups(groups, *item.children, depth + 1);
    }
}

/// Why these items cannot come into the group, if they cannot.
std::optional<EditRefusal> refusalOf(const LinkList &links, const QSet<QUuid> &moved,
                                     const std::optional<QUuid> &toGroup)
{
    if (!toGroup)
        return std::nullopt;
    const ItemPath path = pathTo(links, *toGroup);
    if (path.isEmpty())
        return EditRefusal::NotFound;
    if (!itemAt(links, path).isGroup())
        return EditRefusal::NotAGroup;
    if (path.size() - 1 >= fullDepth)
        return EditRefusal::TooDeep;
    for (qsizetype levels = 1; levels <= path.size(); ++levels) {
        if (moved.contains(itemAt(links, path.first(levels)).id))
            return EditRefusal::IntoItself;
    }
    return std::nullopt;
}

/// The members of a group that is there, or the top level.
LinkList &membersOf(LinkList &links, const std::optional<QUuid> &group)
{
    if (!group)
        return links;
    const ItemPath path = pathTo(links, *group);
    LinkItem &item = listHolding(links, path)[path.last()];
    if (!item.children)
        item.children.emplace();
    return *item.children;
}

void insertInto(LinkList &list, std::optional<qsizetype> at, LinkList items)
{
    const qsizetype index = std::clamp<qsizetype>(at.value_or(list.size()), 0, list.size());
    const auto place = list.insert(index, items.size(), LinkItem());
    std::move(items.begin(), items.end(), place);
}

/// Takes the items from where they are to where they may go; `at` counts when
/// they are out.
void place(LinkList &links, const QSet<QUuid> &ids, const std::optional<QUuid> &toGroup, std::optional<qsizetype> at,
           Timestamp now)
{
    LinkList taken = takeItems(links, ids);
    for (LinkItem &item : taken)
        item.modifiedAt = editDate(item.modifiedAt, now);
    insertInto(membersOf(links, toGroup), at, std::move(taken));
}

struct GroupAbove {
    LinkItem group;
    int depth = 0;
};

std::optional<GroupAbove> groupAbove(const LinkList &links, const LinkLocation &place)
{
    if (place.index == 0)
        return std::nullopt;
    const LinkItem &above = (place.parent ? *place.parent->children : links).at(place.index - 1);
    return above.isGroup() ? std::optional(GroupAbove{above, place.depth}) : std::nullopt;
}

bool couldTake(const GroupAbove &above, const LinkItem &item)
{
    // The move itself stops at another depth than this; both numbers are meant.
    constexpr int maxDepthAbove = 3;
    constexpr int maxLevels = 4;
    return above.depth < maxDepthAbove && (!item.isGroup() || above.depth + 1 + maxNestedDepth(item) < maxLevels);
}

} // namespace

Timestamp editDate(const std::optional<Timestamp> &present, Timestamp now)
{
    return present ? std::max(now, Timestamp{std::floor(present->seconds) + 1}) : now;
}

QString logText(EditRefusal refusal)
{
    switch (refusal) {
    case EditRefusal::NotFound:
        return u"There is no item with this id."_s;
    case EditRefusal::NotAGroup:
        return u"Only a group can hold items."_s;
    case EditRefusal::TooDeep:
        return u"Déplacement refusé: profondeur maximale atteinte (3 niveaux)"_s;
    case EditRefusal::IntoItself:
        return u"Déplacement refusé: impossible de déplacer un groupe dans ses propres enfants"_s;
    case EditRefusal::NothingToDo:
        return u"There is nothing to change here."_s;
    case EditRefusal::NotStored:
        return u"No copy of the tree could be kept, so nothing was changed."_s;
    }
    Q_UNREACHABLE();
}

std::optional<LinkLocation> findLinkLocation(const LinkList &links, const QUuid &id)
{
    const ItemPath path = pathTo(links, id);
    if (path.isEmpty())
        return std::nullopt;
    LinkLocation location{itemAt(links, path), std::nullopt, path.last(), static_cast<int>(path.size()) - 1};
    if (path.size() > 1)
        location.parent = itemAt(links, path.first(path.size() - 1));
    return location;
}

std::optional<int> getDepth(const LinkList &links, const QUuid &id)
{
    const ItemPath path = pathTo(links, id);
    return path.isEmpty() ? std::nullopt : std::optional(static_cast<int>(path.size()) - 1);
}

bool isDescendant(const LinkList &links, const QUuid &parentId, const QUuid &childId)
{
    const LinkItem *parent = findItem(links, parentId);
    return parent && parent->children && findItem(*parent->children, childId);
}

int maxNestedDepth(const LinkItem &group)
{
    int levels = 0;
    for (const LinkItem &item : group.children.value_or(LinkList())) {
        if (item.isGroup())
            levels = std::max(levels, 1 + maxNestedDepth(item));
    }
    return levels;
}

QList<GroupAtDepth> allGroups(const LinkList &links, int depth)
{
    QList<GroupAtDepth> groups;
    collectGroups(groups, links, depth);
    return groups;
}

std::optional<EditRefusal> moveItem(LinkList &links, const QUuid &id, const std::optional<QUuid> &toGroup,
                                    std::optional<qsizetype> at, Timestamp now)
{
    if (!findItem(links, id))
        return EditRefusal::NotFound;
    if (const auto refusal = refusalOf(links, {id}, toGroup))
        return refusal;
    place(links, {id}, toGroup, at, now);
    return std::nullopt;
}

std::optional<EditRefusal> moveItems(LinkList &links, const QList<QUuid> &ids, const std::optional<QUuid> &toGroup,
                                     std::optional<qsizetype> before, Timestamp now)
{
    if (ids.isEmpty())
        return EditRefusal::NothingToDo;
    QSet<QUuid> missing = toSet(ids);
    walk(links, [&missing](const LinkItem &item) { missing.remove(item.id); });
    if (!missing.isEmpty())
        return EditRefusal::NotFound;
    const QSet<QUuid> moved = toSet(ids);
    if (const auto refusal = refusalOf(links, moved, toGroup))
        return refusal;
    if (before) {
        const LinkList destination = toGroup ? findItem(links, *toGroup)->children.value_or(LinkList()) : links;
        const qsizetype end = std::clamp<qsizetype>(*before, 0, destination.size());
        before = end - std::count_if(destination.begin(), destination.begin() + end,
                                     [&moved](const LinkItem &item) { return moved.contains(item.id); });
    }
    place(links, moved, toGroup, before, now);
    return std::nullopt;
}

bool canIndent(const LinkList &links, const QUuid &id)
{
    const auto location = findLinkLocation(links, id);
    const auto above = location ? groupAbove(links, *location) : std::nullopt;
    return above && couldTake(*above, location->item);
}

std::optional<EditRefusal> indentItem(LinkList &links, const QUuid &id, Timestamp now)
{
    const auto location = findLinkLocation(links, id);
    if (!location)
        return EditRefusal::NotFound;
    const auto above = groupAbove(links, *location);
    if (!above)
        return EditRefusal::NothingToDo;
    if (!couldTake(*above, location->item))
        return EditRefusal::TooDeep;
    return moveItem(links, id, above->group.id, std::nullopt, now);
}

bool canOutdent(const LinkList &links, const QUuid &id)
{
    return pathTo(links, id).size() > 1;
}

std::optional<EditRefusal> outdentItem(LinkList &links, const QUuid &id, Timestamp now)
{
    const auto location = findLinkLocation(links, id);
    if (!location)
        return EditRefusal::NotFound;
    if (!location->parent)
        return EditRefusal::NothingToDo;
    const auto parent = findLinkLocation(links, location->parent->id);
    const std::optional<QUuid> target = parent->parent ? std::optional(parent->parent->id) : std::nullopt;
    return moveItem(links, id, target, parent->index + 1, now);
}

std::optional<EditRefusal> sortGroup(LinkList &links, const QUuid &groupId, Timestamp now)
{
    const ItemPath path = pathTo(links, groupId);
    if (path.isEmpty())
        return EditRefusal::NotFound;
    const LinkItem &stored = itemAt(links, path);
    if (!stored.isGroup())
        return EditRefusal::NotAGroup;
    if (!stored.children || stored.children->size() < 2)
        return EditRefusal::NothingToDo;
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    LinkItem &group = listHolding(links, path)[path.last()];
    std::stable_sort(group.children->begin(), group.children->end(),
                     [&](const LinkItem &a, const LinkItem &b) { return collator.compare(a.name, b.name) < 0; });
    group.modifiedAt = editDate(group.modifiedAt, now);
    return std::nullopt;
}

std::optional<EditRefusal> reorderTopLevel(LinkList &links, const QList<QUuid> &ids, const std::optional<QUuid> &before)
{
    const QSet<QUuid> moved = toSet(ids);
    LinkList taken;
    LinkList rest;
    std::partition_copy(links.cbegin(), links.cend(), std::back_inserter(taken), std::back_inserter(rest),
                        [&moved](const LinkItem &item) { return moved.contains(item.id); });
    const auto anchor = std::find_if(rest.cbegin(), rest.cend(),
                                     [&before](const LinkItem &item) { return before && item.id == *before; });
    insertInto(rest, anchor - rest.cbegin(), std::move(taken));
    const bool same = std::equal(rest.cbegin(), rest.cend(), links.cbegin(),
                                 [](const LinkItem &a, const LinkItem &b) { return a.id == b.id; });
    if (same)
        return EditRefusal::NothingToDo;
    links = std::move(rest);
    return std::nullopt;
}

LinkItem withFreeIdentities(const LinkList &links, const LinkItem &item)
{
    TakenIdentities taken;
    taken.addAll(links);
    LinkList fresh = {item};
    changeItems(fresh, [&taken](const LinkItem &entering) { return taken.claimed(entering); });
    return fresh.first();
}

std::optional<EditRefusal> removeItems(LinkList &links, const QList<QUuid> &ids)
{
    return takeItems(links, toSet(ids)).isEmpty() ? std::optional(EditRefusal::NotFound) : std::nullopt;
}

std::optional<EditRefusal> changeEach(LinkList &links, const QList<QUuid> &ids,
                                      const std::function<void(LinkItem &)> &change, Timestamp now)
{
    const QSet<QUuid> wanted = toSet(ids);
    const bool any = changeItems(links, [&](const LinkItem &old) -> std::optional<LinkItem> {
        if (!wanted.contains(old.id))
            return std::nullopt;
        LinkItem item = old;
        change(item);
        item.id = old.id;
        item.stableId = old.stableId;
        item.children = old.children;
        if (item.isGroup() != old.isGroup())
            item.type = old.type;
        item.modifiedAt = editDate(old.modifiedAt, now);
        return item;
    });
    return any ? std::nullopt : std::optional(EditRefusal::NotFound);
}

} // namespace orvelle
