#include "links/BookmarkMaintenance.h"

#include "links/LinkLog.h"
#include "links/LinkTree.h"
#include "platform/FileBookmarks.h"

namespace orvelle {

namespace {

/// The bookmark to keep from now on; absent when it leads nowhere.
std::optional<QByteArray> reopened(const QByteArray &bookmark, FileBookmarks &bookmarks)
{
    const auto resolved = bookmarks.resolve(bookmark);
    if (!resolved) {
        qCWarning(lcLinkStore).noquote() << "Erreur résolution bookmark:" << resolved.error().detail;
        return std::nullopt;
    }
    if (!bookmarks.startAccess(resolved->path))
        return std::nullopt;
    if (!resolved->stale)
        return bookmark;
    const auto fresh = bookmarks.create(resolved->path);
    return fresh ? *fresh : bookmark;
}

enum class OnFailure { KeepOld, Drop };

bool rebuildBookmarks(LinkList &links, const FileBookmarks &bookmarks, OnFailure onFailure)
{
    return changeItems(links, [&](const LinkItem &old) -> std::optional<LinkItem> {
        if (!isOnDisk(old))
            return std::nullopt;
        LinkItem item = old;
        if (const auto bookmark = bookmarks.create(item.path))
            item.bookmarkData = *bookmark;
        else if (onFailure == OnFailure::Drop)
            item.bookmarkData.reset();
        if (item.bookmarkData == old.bookmarkData)
            return std::nullopt;
        return item;
    });
}

QString parentFolder(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}

} // namespace

bool isOnDisk(const LinkItem &item)
{
    return item.type == LinkType::File || item.type == LinkType::Folder;
}

QString securePath(const LinkItem &item, const FileBookmarks &bookmarks)
{
    if (!item.bookmarkData)
        return item.path;
    const auto resolved = bookmarks.resolve(*item.bookmarkData);
    if (resolved)
        return resolved->path;
    qCWarning(lcLinkStore).noquote() << "Erreur résolution bookmark:" << resolved.error().detail;
    return item.path;
}

BookmarkRefresh refreshBookmarks(LinkList &links, FileBookmarks &bookmarks)
{
    BookmarkRefresh result;
    result.renewed = changeItems(links, [&](const LinkItem &old) -> std::optional<LinkItem> {
        if (!isOnDisk(old))
            return std::nullopt;
        const auto bookmark = old.bookmarkData ? reopened(*old.bookmarkData, bookmarks) : std::nullopt;
        if (!bookmark)
            result.unrecoverable = true;
        if (!bookmark || bookmark == old.bookmarkData)
            return std::nullopt;
        LinkItem item = old;
        item.bookmarkData = *bookmark;
        return item;
    });
    return result;
}

bool regenerateBookmarksRecursive(LinkList &links, const FileBookmarks &bookmarks)
{
    return rebuildBookmarks(links, bookmarks, OnFailure::KeepOld);
}

bool recreateBookmarks(LinkList &links, const FileBookmarks &bookmarks)
{
    return rebuildBookmarks(links, bookmarks, OnFailure::Drop);
}

QStringList collectAllPaths(const LinkList &links)
{
    QStringList paths;
    walk(links, [&paths](const LinkItem &item) {
        if (isOnDisk(item))
            paths += item.path;
    });
    return paths;
}

QString findCommonAncestor(const QStringList &paths, const QString &home)
{
    if (paths.isEmpty())
        return home;
    QString candidate = paths.first();
    for (const QString &path : paths) {
        while (candidate != u'/' && !path.startsWith(candidate))
            candidate = parentFolder(candidate);
    }
    return candidate;
}

bool openRootBookmarks(QList<QByteArray> &roots, FileBookmarks &bookmarks)
{
    bool changed = false;
    for (QByteArray &root : roots) {
        const auto bookmark = reopened(root, bookmarks);
        if (!bookmark || *bookmark == root)
            continue;
        root = *bookmark;
        changed = true;
    }
    return changed;
}

} // namespace orvelle
