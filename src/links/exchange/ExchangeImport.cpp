#include "links/exchange/ExchangeImport.h"

#include "links/LinkTree.h"
#include "links/exchange/TakenIdentities.h"

#include <QSet>

#include <algorithm>

namespace orvelle {

namespace {

bool needsPath(LinkType type)
{
    return type == LinkType::File || type == LinkType::Folder || type == LinkType::Url;
}

/// Leaves out what lies at or below maxImportDepth, and children of anything
/// but groups.
void cutTooDeep(LinkList &items, int depth, qint64 &dropped)
{
    for (LinkItem &item : items) {
        const bool holdsChildren = item.isGroup() && depth + 1 < maxImportDepth;
        if (holdsChildren && item.children) {
            cutTooDeep(*item.children, depth + 1, dropped);
            continue;
        }
        if (item.children)
            dropped += countAllLinks(*item.children);
        item.children = item.isGroup() ? std::optional(LinkList()) : std::nullopt;
    }
}

/// What makes two items the same for a merge.
struct MergeKey {
    LinkType type;
    QString path;
    QString name;
    friend bool operator==(const MergeKey &, const MergeKey &) = default;
};

MergeKey mergeKeyOf(const LinkItem &item)
{
    return {item.type, item.path, item.name};
}

size_t qHash(const MergeKey &key, size_t seed = 0)
{
    return qHashMulti(seed, static_cast<int>(key.type), key.path, key.name);
}

AppliedImport replaceTree(LinkList &tree, const LinkList &items)
{
    const qint64 count = countAllLinks(items);
    TakenIdentities taken(count);
    tree = items;
    changeItems(tree, [&taken](const LinkItem &item) { return taken.claimed(item); });
    return {count, 0};
}

AppliedImport mergeIntoTree(LinkList &tree, const LinkList &items)
{
    LinkList fresh = filterNewLinks(items, tree);
    const qint64 count = countAllLinks(fresh);
    TakenIdentities taken(countAllLinks(tree) + count);
    taken.addAll(tree);
    changeItems(fresh, [&taken](const LinkItem &item) { return taken.claimed(item); });
    tree += fresh;
    return {count, items.size() - fresh.size()};
}

} // namespace

bool isValidLink(const LinkItem &item, int depth)
{
    if (depth >= maxImportDepth || item.name.isEmpty() || (needsPath(item.type) && item.path.isEmpty()))
        return false;
    if (!item.isGroup() || !item.children)
        return true;
    return std::all_of(item.children->begin(), item.children->end(),
                       [depth](const LinkItem &child) { return isValidLink(child, depth + 1); });
}

LinkList validLinks(LinkList imported, qint64 &dropped)
{
    cutTooDeep(imported, 0, dropped);
    imported.removeIf([&dropped](const LinkItem &item) {
        const bool valid = isValidLink(item, 0);
        if (!valid)
            dropped += countAllLinks({item});
        return !valid;
    });
    return imported;
}

void keepChildrenOfGroupsOnly(LinkList &items)
{
    changeItems(items, [](const LinkItem &item) -> std::optional<LinkItem> {
        if (item.isGroup() == item.children.has_value())
            return std::nullopt;
        LinkItem fixed = item;
        fixed.children = item.isGroup() ? std::optional(LinkList()) : std::nullopt;
        return fixed;
    });
}

qint64 countAllLinks(const LinkList &links)
{
    return countAll(links);
}

bool existsInList(const LinkItem &item, const LinkList &list)
{
    const MergeKey key = mergeKeyOf(item);
    return std::any_of(list.begin(), list.end(),
                       [&key](const LinkItem &existing) { return mergeKeyOf(existing) == key; });
}

LinkList filterNewLinks(const LinkList &imported, const LinkList &existing)
{
    // As existsInList() for each, but not in quadratic time.
    QSet<MergeKey> known;
    for (const LinkItem &item : existing)
        known.insert(mergeKeyOf(item));
    LinkList fresh;
    for (const LinkItem &item : imported) {
        if (!known.contains(mergeKeyOf(item)))
            fresh += item;
    }
    return fresh;
}

AppliedImport applyImport(LinkList &tree, const LinkList &items, ImportMode mode)
{
    switch (mode) {
    case ImportMode::Replace:
        return replaceTree(tree, items);
    case ImportMode::Merge:
        return mergeIntoTree(tree, items);
    case ImportMode::Sync:
        break;
    }
    return {};
}

} // namespace orvelle
