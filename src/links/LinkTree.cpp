#include "links/LinkTree.h"

#include <QHash>

namespace orvelle {

namespace {

bool findPath(const LinkList &links, const QUuid &id, ItemPath &path)
{
    for (qsizetype i = 0; i < links.size(); ++i) {
        if (links.at(i).id == id) {
            path += i;
            return true;
        }
    }
    for (qsizetype i = 0; i < links.size(); ++i) {
        if (!links.at(i).children)
            continue;
        path += i;
        if (findPath(*links.at(i).children, id, path))
            return true;
        path.removeLast();
    }
    return false;
}

void takeInto(LinkList &taken, LinkList &links, const QSet<QUuid> &ids)
{
    bool anyHere = false;
    for (qsizetype i = 0; i < links.size(); ++i) {
        const LinkItem &item = links.at(i);
        if (ids.contains(item.id)) {
            taken += item;
            anyHere = true;
        } else if (item.children) {
            LinkList children = *item.children;
            const qsizetype before = taken.size();
            takeInto(taken, children, ids);
            if (taken.size() > before)
                links[i].children = std::move(children);
        }
    }
    if (anyHere)
        links.removeIf([&ids](const LinkItem &item) { return ids.contains(item.id); });
}

} // namespace

ItemPath pathTo(const LinkList &links, const QUuid &id)
{
    ItemPath path;
    findPath(links, id, path);
    return path;
}

const LinkItem &itemAt(const LinkList &links, const ItemPath &path)
{
    const LinkItem *item = &links.at(path.first());
    for (qsizetype level = 1; level < path.size(); ++level)
        item = &item->children->at(path[level]);
    return *item;
}

LinkList &listHolding(LinkList &links, const ItemPath &path)
{
    LinkList *list = &links;
    for (qsizetype level = 0; level + 1 < path.size(); ++level)
        list = &*(*list)[path[level]].children;
    return *list;
}

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
    const ItemPath path = pathTo(links, id);
    return path.isEmpty() ? nullptr : &itemAt(links, path);
}

void walk(const LinkList &links, const std::function<void(const LinkItem &)> &visit)
{
    for (const LinkItem &item : links) {
        visit(item);
        if (item.children)
            walk(*item.children, visit);
    }
}

LinkList flatten(const LinkList &links)
{
    LinkList items;
    walk(links, [&items](const LinkItem &item) { items += item; });
    return items;
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
    const ItemPath path = pathTo(links, item.id);
    if (path.isEmpty())
        return false;
    listHolding(links, path)[path.last()] = item;
    return true;
}

bool removeItem(LinkList &links, const QUuid &id)
{
    const ItemPath path = pathTo(links, id);
    if (path.isEmpty())
        return false;
    listHolding(links, path).removeAt(path.last());
    return true;
}

LinkList takeItems(LinkList &links, const QSet<QUuid> &ids)
{
    LinkList taken;
    takeInto(taken, links, ids);
    return taken;
}

bool appendToGroup(LinkList &links, const QUuid &groupId, const LinkItem &item)
{
    const ItemPath path = pathTo(links, groupId);
    if (path.isEmpty() || !itemAt(links, path).isGroup())
        return false;
    LinkItem &target = listHolding(links, path)[path.last()];
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

void keepPictures(LinkList &links, const LinkList &shown)
{
    struct Picture {
        QString path;
        std::optional<QByteArray> data;
    };
    QHash<QUuid, Picture> pictures;
    walk(shown, [&pictures](const LinkItem &item) {
        if (item.type == LinkType::Url)
            pictures.insert(item.id, {item.path, item.faviconData});
    });
    changeItems(links, [&pictures](const LinkItem &old) -> std::optional<LinkItem> {
        const auto picture = pictures.constFind(old.id);
        if (picture == pictures.cend() || picture->path != old.path || picture->data == old.faviconData)
            return std::nullopt;
        LinkItem item = old;
        item.faviconData = picture->data;
        return item;
    });
}

} // namespace orvelle
