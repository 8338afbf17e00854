#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/LinkLog.h"
#include "links/LinkMigration.h"
#include "links/LinkStoreHistory.h"
#include "links/LinkTree.h"
#include "platform/Alerts.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"

#include <QFileInfo>
#include <QMap>
#include <QPointer>

namespace orvelle {

namespace {

/// A volume of their own, as a bookmark does not say where it leads.
QString rootFolders()
{
    return QStringLiteral("root folders");
}

} // namespace

void LinkStore::look(const QString &path, QObject *receiver, const DistantFiles::Look &look) const
{
    lookIn(distantVolumeHolding(path), receiver, look);
}

void LinkStore::lookAside(const QString &path, QObject *receiver, const DistantFiles::Look &look) const
{
    const QString volume = distantVolumeHolding(path);
    lookIn(volume.isEmpty() ? QStringLiteral("at hand") : volume, receiver, look);
}

QString LinkStore::distantVolumeHolding(const QString &path) const
{
    return m_services.distantFiles ? m_services.volumes.distantVolumeHolding(path) : QString();
}

void LinkStore::lookIn(const QString &volume, QObject *receiver, const DistantFiles::Look &look) const
{
    if (m_services.distantFiles && !volume.isEmpty())
        m_services.distantFiles->look(volume, receiver, look);
    else if (const DistantFiles::Delivery delivery = look(m_services.bookmarks))
        delivery();
}

/// Lets `change` work on the files and folders of each volume. `done` is told
/// what it returned, and whether bookmarks became others, once for each.
void LinkStore::lookAtFiles(const FilesLook &change, const std::function<void(bool, bool)> &done)
{
    QMap<QString, LinkList> byVolume;
    walk(m_links, [this, &byVolume](const LinkItem &item) {
        if (isOnDisk(item))
            byVolume[distantVolumeHolding(item.path)] += item;
    });
    for (auto volume = byVolume.cbegin(); volume != byVolume.cend(); ++volume) {
        lookIn(volume.key(), this, [this, files = *volume, change, done](FileBookmarks &bookmarks) {
            LinkList changed = files;
            const bool found = change(changed, bookmarks);
            return [this, files, changed, found, done] { done(found, setBookmarks(files, changed)); };
        });
    }
}

void LinkStore::refreshStaleBookmarks(const std::function<void()> &unresolved)
{
    const auto refresh = [](LinkList &files, FileBookmarks &bookmarks) {
        return refreshBookmarks(files, bookmarks).unrecoverable;
    };
    lookAtFiles(refresh, [unresolved, told = std::make_shared<bool>(false)](bool unrecoverable, bool) {
        if (unrecoverable && !std::exchange(*told, true))
            unresolved();
    });
}

/// What lies on distant volumes comes into the tree without bookmarks, and when
/// nobody has looked at it also without knowing whether it is a folder.
void LinkStore::makeLackingBookmarks()
{
    if (!m_services.distantFiles)
        return;
    QMap<QString, LinkList> lacking;
    walk(m_links, [this, &lacking](const LinkItem &item) {
        if (item.bookmarkData) // undo can bring back what it was before that
            m_lookedFor.remove(item.id);
        if (!isOnDisk(item) || item.bookmarkData || m_lookedFor.value(item.id) == item.path)
            return;
        m_lookedFor.insert(item.id, item.path);
        const QString volume = distantVolumeHolding(item.path);
        if (!volume.isEmpty())
            lacking[volume] += item;
    });
    for (auto volume = lacking.cbegin(); volume != lacking.cend(); ++volume) {
        lookIn(volume.key(), this, [this, files = *volume](FileBookmarks &bookmarks) {
            LinkList found = files;
            for (LinkItem &item : found) {
                addBookmark(item, bookmarks);
                if (item.type == LinkType::File && QFileInfo(item.path).isDir())
                    item.type = LinkType::Folder;
            }
            return [this, files, found] { setBookmarks(files, found); };
        });
    }
}

/// Takes over what was found about files and folders of the tree. Upkeep, not a
/// step that the user could undo. What leads elsewhere by now, or was looked at
/// by another process too, stays as it is.
bool LinkStore::setBookmarks(const LinkList &before, const LinkList &after)
{
    struct Found {
        LinkItem before;
        LinkItem after;
    };
    QHash<QUuid, Found> found;
    for (qsizetype i = 0; i < before.size(); ++i) {
        if (before[i] != after[i])
            found.insert(before[i].id, {before[i], after[i]});
    }
    if (found.isEmpty())
        return false;
    const Edit change = [found](LinkList &tree) {
        return changeItems(tree, [&found](const LinkItem &old) -> std::optional<LinkItem> {
            const auto each = found.constFind(old.id);
            if (each == found.cend() || old.path != each->before.path || old.type != each->before.type ||
                old.bookmarkData != each->before.bookmarkData)
                return std::nullopt;
            LinkItem item = old;
            item.type = each->after.type;
            item.bookmarkData = each->after.bookmarkData;
            return item;
        });
    };
    const Outcome outcome = perform({Step::Ordinary, QStringLiteral("bookmarks"), change}, true);
    if (outcome.applied || outcome.rebased)
        announceTree();
    return outcome.applied;
}

void LinkStore::restoreRootAccess()
{
    const UserDefaults::Versioned stored = m_services.defaults.read(rootBookmarksKey());
    const auto *bookmarks = stored.value ? std::get_if<QList<QByteArray>>(&*stored.value) : nullptr;
    if (!bookmarks || bookmarks->isEmpty())
        return;
    const auto renew = [this, key = rootBookmarksKey(), revision = stored.revision,
                        roots = *bookmarks](FileBookmarks &files) mutable -> DistantFiles::Delivery {
        if (!openRootBookmarks(roots, files))
            return {};
        return [this, key, revision, roots] {
            const auto written = m_services.defaults.compareAndSet(key, revision, roots);
            if (!written)
                qCWarning(lcLinkStore).noquote()
                    << "Renewed folder bookmarks could not be stored:" << written.error().detail;
        };
    };
    lookIn(rootFolders(), this, renew);
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
    look(folder, this, [this, folder](FileBookmarks &bookmarks) {
        bookmarks.startAccess(folder);
        return [this, bookmark = bookmarks.create(folder)] { keepRoot(bookmark); };
    });
    lookAtFiles(&regenerateBookmarksRecursive, [this](bool, bool changed) {
        if (!changed)
            saveLinks();
    });
}

void LinkStore::keepRoot(const Result<QByteArray, FileBookmarkError> &bookmark)
{
    if (!bookmark) {
        qCWarning(lcLinkStore).noquote() << "No bookmark of the chosen folder:" << bookmark.error().detail;
        return;
    }
    auto roots = m_services.defaults.get<QList<QByteArray>>(rootBookmarksKey()).value_or(QList<QByteArray>());
    roots += *bookmark;
    if (const auto written = m_services.defaults.write(rootBookmarksKey(), roots); !written)
        reportFailure(written.error());
}

} // namespace orvelle
