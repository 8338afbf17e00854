#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/LinkLog.h"
#include "links/LinkStoreHistory.h"
#include "links/LinkTree.h"
#include "platform/Alerts.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"

#include <QPointer>

namespace orvelle {

bool LinkStore::refreshStaleBookmarks()
{
    LinkList links = m_links;
    const BookmarkRefresh refreshed = refreshBookmarks(links, m_services.bookmarks);
    if (refreshed.renewed)
        setBookmarks(links);
    return refreshed.unrecoverable;
}

/// Takes over the bookmarks of a copy of the tree. Upkeep, not a step that the
/// user could undo. What another process has meanwhile made to lead elsewhere
/// keeps its own bookmark.
void LinkStore::setBookmarks(const LinkList &renewed)
{
    struct Renewed {
        QString path;
        std::optional<QByteArray> bookmark;
    };
    QHash<QUuid, Renewed> bookmarks;
    walk(renewed, [&bookmarks](const LinkItem &item) {
        if (item.bookmarkData)
            bookmarks.insert(item.id, {item.path, item.bookmarkData});
    });
    const Edit change = [bookmarks](LinkList &tree) {
        return changeItems(tree, [&bookmarks](const LinkItem &old) -> std::optional<LinkItem> {
            const auto fresh = bookmarks.constFind(old.id);
            if (fresh == bookmarks.cend() || old.path != fresh->path || old.bookmarkData == fresh->bookmark)
                return std::nullopt;
            LinkItem item = old;
            item.bookmarkData = fresh->bookmark;
            return item;
        });
    };
    const Outcome outcome = perform({Step::Ordinary, QStringLiteral("bookmarks"), change}, true);
    if (outcome.applied || outcome.rebased)
        announceTree();
}

void LinkStore::restoreRootAccess()
{
    const UserDefaults::Versioned stored = m_services.defaults.read(rootBookmarksKey());
    const auto *bookmarks = stored.value ? std::get_if<QList<QByteArray>>(&*stored.value) : nullptr;
    if (!bookmarks)
        return;
    QList<QByteArray> roots = *bookmarks;
    if (!openRootBookmarks(roots, m_services.bookmarks))
        return;
    const auto written = m_services.defaults.compareAndSet(rootBookmarksKey(), stored.revision, roots);
    if (!written)
        qCWarning(lcLinkStore).noquote() << "Renewed folder bookmarks could not be stored:" << written.error().detail;
}

void LinkStore::repairBookmarks(FolderChooser &chooser)
{
    const QString start = findCommonAncestor(collectAllPaths(m_links), m_services.volumes.realHomeDirectory());
    chooser.chooseFolder(text("repair.message"_text), text("repair.prompt"_text), start,
                         [store = QPointer(this)](const QString &folder) {
                             if (store && !folder.isEmpty())
                                 store->rebuildBookmarksBelow(folder);
                         });
}

void LinkStore::rebuildBookmarksBelow(const QString &folder)
{
    m_services.bookmarks.startAccess(folder);
    const auto bookmark = m_services.bookmarks.create(folder);
    if (bookmark) {
        auto roots = m_services.defaults.get<QList<QByteArray>>(rootBookmarksKey()).value_or(QList<QByteArray>());
        roots += *bookmark;
        if (const auto written = m_services.defaults.write(rootBookmarksKey(), roots); !written)
            reportFailure(written.error());
    } else {
        qCWarning(lcLinkStore).noquote() << "No bookmark of the chosen folder:" << bookmark.error().detail;
    }
    LinkList links = m_links;
    if (regenerateBookmarksRecursive(links, m_services.bookmarks))
        setBookmarks(links);
    else
        saveLinks();
}

QString LinkStore::securePath(const LinkItem &item) const
{
    if (!item.bookmarkData)
        return item.path;
    const auto resolved = m_services.bookmarks.resolve(*item.bookmarkData);
    if (resolved)
        return resolved->path;
    qCWarning(lcLinkStore).noquote() << "Erreur résolution bookmark:" << resolved.error().detail;
    return item.path;
}

} // namespace orvelle
