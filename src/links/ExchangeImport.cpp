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
class Identities
{
public:
    explicit Identities(qsizetype expected)
    {
        m_ids.reserve(expected);
        m_stableIds.reserve(expected);
    }

    void addAll(const LinkList &links)
    {
        walk(links, [this](const LinkItem &item) {
            claim(item.id, m_ids);
            claimStableId(item.stableId);
        });
    }

    /// Gives the item other identities for those that are taken; absent when
    /// it can keep both.
    std::optional<LinkItem> claimed(const LinkItem &item)
    {
        const bool freeId = claim(item.id, m_ids);
        const bool freeStableId = claimStableId(item.stableId);
        if (freeId && freeStableId)
            return std::nullopt;
        LinkItem unique = item;
        while (!freeId && !claim(unique.id = QUuid::createUuid(), m_ids)) {
        }
        while (!freeStableId && !claimStableId(unique.stableId = newUuidText())) {
        }
        return unique;
    }

private:
    template<typename T>
    static bool claim(const T &value, QSet<T> &taken)
    {
        const qsizetype before = taken.size();
        taken.insert(value);
        return taken.size() > before;
    }

    /// Stable ids are compared without regard to case.
    bool claimStableId(const QString &text)
    {
        if (text.isEmpty())
            return false;
        const auto uuid = parseUuid(text);
        return uuid ? claim(*uuid, m_stableIds) : claim(text.toUpper(), m_oddStableIds);
    }

    QSet<QUuid> m_ids;
    QSet<QUuid> m_stableIds;
    QSet<QString> m_oddStableIds; ///< those of other makers
};

AppliedImport replaceTree(LinkList &tree, const LinkList &items)
{
    const qint64 count = countAllLinks(items);
    Identities taken(count);
    tree = items;
    changeItems(tree, [&taken](const LinkItem &item) { return taken.claimed(item); });
    return {count, 0};
}

AppliedImport mergeIntoTree(LinkList &tree, const LinkList &items)
{
    LinkList fresh = filterNewLinks(items, tree);
    const qint64 count = countAllLinks(fresh);
    Identities taken(countAllLinks(tree) + count);
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
