#include "links/ExchangeImport.h"

#include "base/Uuid.h"
#include "links/LinkTree.h"

#include <QSet>

#include <tuple>

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
struct Content {
    LinkType type;
    QString path;
    QString name;
    friend bool operator==(const Content &, const Content &) = default;
};

Content contentOf(const LinkItem &item)
{
    return {item.type, item.path, item.name};
}

size_t qHash(const Content &content, size_t seed = 0)
{
    return qHashMulti(seed, static_cast<int>(content.type), content.path, content.name);
}

/// The identities that are taken.
struct Identities {
    QSet<QUuid> ids;
    QSet<QString> stableIds; ///< upper case

    void addAll(const LinkList &links)
    {
        walk(links, [this](const LinkItem &item) {
            ids.insert(item.id);
            stableIds.insert(item.stableId.toUpper());
        });
    }

    /// Takes the item's identities; those that are taken already become new.
    std::optional<LinkItem> claimed(const LinkItem &item)
    {
        const bool newId = ids.contains(item.id);
        const bool newStableId = item.stableId.isEmpty() || stableIds.contains(item.stableId.toUpper());
        LinkItem unique = item;
        if (newId)
            unique.id = QUuid::createUuid();
        if (newStableId)
            unique.stableId = newUuidText();
        ids.insert(unique.id);
        stableIds.insert(unique.stableId.toUpper());
        return newId || newStableId ? std::optional(unique) : std::nullopt;
    }
};

void makeUnique(LinkList &items, Identities &&taken)
{
    changeItems(items, [&taken](const LinkItem &item) { return taken.claimed(item); });
}

AppliedImport replaceTree(LinkList &tree, const LinkList &items)
{
    tree = items;
    makeUnique(tree, {});
    return {countAllLinks(tree), 0};
}

AppliedImport mergeIntoTree(LinkList &tree, const LinkList &items)
{
    LinkList fresh = filterNewLinks(items, tree);
    Identities taken;
    taken.addAll(tree);
    makeUnique(fresh, std::move(taken));
    tree += fresh;
    return {countAllLinks(fresh), items.size() - fresh.size()};
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

LinkList validLinks(const LinkList &imported, qint64 &dropped)
{
    LinkList items = imported;
    cutTooDeep(items, 0, dropped);
    LinkList valid;
    valid.reserve(items.size());
    for (LinkItem &item : items) {
        if (isValidLink(item, 0))
            valid += std::move(item);
        else
            dropped += countAllLinks({item});
    }
    return valid;
}

qint64 countAllLinks(const LinkList &links)
{
    return countAll(links);
}

bool existsInList(const LinkItem &item, const LinkList &list)
{
    const Content content = contentOf(item);
    return std::any_of(list.begin(), list.end(),
                       [&content](const LinkItem &existing) { return contentOf(existing) == content; });
}

LinkList filterNewLinks(const LinkList &imported, const LinkList &existing)
{
    // As existsInList() for each, but not in quadratic time.
    QSet<Content> known;
    for (const LinkItem &item : existing)
        known.insert(contentOf(item));
    LinkList fresh;
    for (const LinkItem &item : imported) {
        if (!known.contains(contentOf(item)))
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
