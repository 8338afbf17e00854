#pragma once

#include "links/LinkItem.h"

#include <QStringList>

namespace orvelle {

class FileBookmarks;

/// True for files and folders.
bool isOnDisk(const LinkItem &item);

/// Where a file or folder link leads: its bookmark's target, else its path.
QString securePath(const LinkItem &item, const FileBookmarks &bookmarks);

struct BookmarkRefresh {
    bool renewed = false;       ///< the tree changed
    bool unrecoverable = false; ///< at least one file or folder cannot be reached by its bookmark
};

/// Resolves the bookmark of every file and folder, begins access to it, and
/// renews those that are stale.
BookmarkRefresh refreshBookmarks(LinkList &links, FileBookmarks &bookmarks);

/// New bookmarks from the paths. A bookmark that cannot be made leaves the old
/// one (regenerate...) or none (recreate..., for items from another machine).
bool regenerateBookmarksRecursive(LinkList &links, const FileBookmarks &bookmarks);
bool recreateBookmarks(LinkList &links, const FileBookmarks &bookmarks);

/// The paths of all files and folders, in display order.
QStringList collectAllPaths(const LinkList &links);

/// The folder above all paths, by plain text prefix: for "/a/b/x" and "/a/bc"
/// it is "/a/b", which the second begins with. `home` without paths.
QString findCommonAncestor(const QStringList &paths, const QString &home);

/// Begins access to the bookmarked folders and renews stale bookmarks in the
/// list. True when the list changed.
bool openRootBookmarks(QList<QByteArray> &roots, FileBookmarks &bookmarks);

} // namespace orvelle
