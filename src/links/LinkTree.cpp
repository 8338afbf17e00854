#include "links/LinkTree.h"

namespace orvelle {

namespace {

/// Positions from the root list down to an item.
using Path = QList<qsizetype>;

bool findPath(const LinkList &links, const QUuid &id, Path &path)
{
    for (qsizetype i = 0; i < links.size(); ++i) {
        path += i;
        const LinkItem &item = links.at(i);
        if (item.id == id || (item.children && findPath(*item.children, id, path)))
            return true;
        path.removeLast();
    }
    return false;
}

/// The list that holds the last position of the path, ready to be changed.
LinkList &listAt(LinkList &links, const Path &path)
{
    LinkList *list = &links;
    for (qsizetype level = 0; level + 1 < path.size(); ++level)
        list = &*(*list)[path[level]].children;
    return *list;
}

} // namespace

const LinkItem *findItem(const LinkList &links, const std::function<bool(const LinkItem &)> &matches)
{
    for (const LinkItem &item : links) {
        if (matches(item))
            return &item;
        if (!item.children)
            continue;
        if (const LinkItem *found = findItem(*item.children, matches))
            return found;
    }
    return nullptr;
}

const LinkItem *findItem(const LinkList &links, const QUuid &id)
{
    return findItem(links, [&id](const LinkItem &item) { return item.id == id; });
}

void walk(const LinkList &links, const std::function<void(const LinkItem &)> &visit)
{
    for (const LinkItem &item : links) {
        visit(item);
        if (item.children)
            walk(*item.children, visit);
    }
}

qint64 countAll(const LinkList &links)
{
    qint64 count = 0;
    walk(links, [&count](const LinkItem &) { ++count; });
    return count;
}

int treeLevels(const LinkList &links)
{
    int below = 0;
    for (const LinkItem &item : links) {
        if (item.children)
            below = std::max(below, treeLevels(*item.children));
    }
    return links.isEmpty() ? 0 : below + 1;
}

bool replaceItem(LinkList &links, const LinkItem &item)
{
    Path path;
    if (!findPath(links, item.id, path))
        return false;
    listAt(links, path)[path.last()] = item;
    return true;
}

bool removeItem(LinkList &links, const QUuid &id)
{
    Path path;
    if (!findPath(links, id, path))
        return false;
    listAt(links, path).removeAt(path.last());
    return true;
}

bool appendToGroup(LinkList &links, const QUuid &groupId, const LinkItem &item)
{
    Path path;
    if (!findPath(links, groupId, path))
        return false;
    const LinkItem *group = findItem(links, groupId);
    if (!group->isGroup())
        return false;
    LinkItem &target = listAt(links, path)[path.last()];
    if (!target.children)
        target.children.emplace();
    target.children->append(item);
    return true;
}

bool changeItems(LinkList &links, const std::function<std::optional<LinkItem>(const LinkItem &)> &change)
{
    bool changed = false;
    for (qsizetype i = 0; i < links.size(); ++i) {
        std::optional<LinkItem> fresh = change(links.at(i));
        std::optional<LinkList> children = links.at(i).children;
        const bool below = children && changeItems(*children, change);
        if (!fresh && !below)
            continue;
        if (!fresh)
            fresh = links.at(i);
        if (below)
            fresh->children = std::move(children);
        links[i] = std::move(*fresh);
        changed = true;
    }
    return changed;
}

} // namespace orvelle
