#pragma once

#include "links/LinkEditing.h"
#include "links/LinkItem.h"
#include "platform/DistantFiles.h"
#include "platform/FileBookmarks.h"
#include "platform/UserDefaults.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

namespace orvelle {

class Clock;
class DebugModeManager;
class FolderChooser;
class Notifications;
class PowerEvents;
class SnapshotStore;
class TreeDifference;
class Volumes;

/// The work around the tree that other subsystems do when their time comes in
/// the life of the store.
class LinkStoreHooks
{
public:
    virtual ~LinkStoreHooks() = default;

    /// Put cached site icons into the items; no change of the stored tree.
    virtual void hydrateFavicons(LinkList &links) = 0;
    /// Remove cached icons of items that are gone.
    virtual void cleanupOrphanFavicons(const LinkList &links) = 0;
    /// Re-read the persisted sync state through the keys of the current mode.
    virtual void loadSyncState() = 0;
    /// A local change was saved: upload it when sync is on.
    virtual void scheduleAutoSync() = 0;
    /// The machine woke up.
    virtual void systemDidWake() = 0;
    /// A setting that travels with the sync document changed.
    virtual void syncableSettingsDidChange() {}
};

/// The owner of the user's tree: loads, upgrades and saves it, keeps file
/// links reachable, and is the only place where the tree changes. Main thread
/// only; lives for the whole run.
///
/// The tree is saved as one value. When another process changed it meanwhile,
/// the edit is made again on that process's tree, so that neither change is
/// lost.
class LinkStore : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Clock &clock;
        FileBookmarks &bookmarks;
        Volumes &volumes;
        PowerEvents &powerEvents;
        SnapshotStore &snapshots;
        LinkStoreHooks &hooks;
        DistantFiles *distantFiles = nullptr; ///< null: it may wait for any volume
    };

    explicit LinkStore(const Services &services, QObject *parent = nullptr);
    ~LinkStore() override;

    static QString linksBaseKey() { return QStringLiteral("orvelle_savedLinks"); }
    static QString rootBookmarksBaseKey() { return QStringLiteral("orvelle_rootBookmarks"); }

    const LinkList &links() const { return m_links; }
    QString machineId() const { return m_machineId; }
    /// True while a sync document is being applied; saves then do not ask for
    /// an upload.
    bool isAutoSyncingFromFile() const { return m_isAutoSyncingFromFile; }
    void setAutoSyncingFromFile(bool applying) { m_isAutoSyncingFromFile = applying; }

    /// How an edit treats history.
    enum class Step {
        Ordinary,    ///< one undo step
        Destructive, ///< the same, and the tree before it is kept as a snapshot
    };
    /// A change of a tree; false means nothing to do. May run more than once,
    /// each time on a fresh tree, so it must not keep state.
    using Edit = std::function<bool(LinkList &)>;

    /// The one way to change the tree: applies `change`, saves, records one
    /// undo step, emits linksChanged() once. `reason` names the snapshot of a
    /// destructive step ("remove", "import", ...). False when `change` was
    /// refused, or when that snapshot could not be kept (saveFailed() tells).
    /// A failed write keeps the new tree in memory, is reported by
    /// saveFailed(), and is tried again at the next edit and at quit.
    bool edit(Step step, const QString &reason, const Edit &change, bool triggerSync = true);

    void addLink(const LinkItem &item);
    bool addLinkToGroup(const LinkItem &item, const QUuid &groupId);
    /// Into the top level; an index beyond its end appends.
    void insertLink(const LinkItem &item, qsizetype index);
    bool removeLink(const QUuid &id);
    /// All of them as one step; the tree before it is kept as a snapshot.
    std::optional<EditRefusal> removeLinks(const QList<QUuid> &ids);
    /// Replaces the item with the same id.
    bool updateLink(const LinkItem &item, bool touchModifiedAt = true);

    /// Changes each of the items as one step, for example their colour.
    std::optional<EditRefusal> updateLinks(const QList<QUuid> &ids, const std::function<void(LinkItem &)> &change);

    /// Reorders the top level: the items at `from` come to stand before what is
    /// at `to` now. Offsets that are none are ignored; nothing is stamped.
    void moveLinks(const QSet<qsizetype> &from, qsizetype to);
    /// As moveItem(); a refusal is logged and returned.
    std::optional<EditRefusal> moveLink(const QUuid &id, const std::optional<QUuid> &toGroup,
                                        std::optional<qsizetype> at = {});
    /// As moveItems(), as one step.
    std::optional<EditRefusal> moveLinks(const QList<QUuid> &ids, const std::optional<QUuid> &toGroup,
                                         std::optional<qsizetype> before = {});
    std::optional<EditRefusal> indentLink(const QUuid &id);
    std::optional<EditRefusal> outdentLink(const QUuid &id);
    std::optional<EditRefusal> sortGroupAlphabetically(const QUuid &groupId);

    /// Puts picture bytes (or nothing) into items, by run id, without saving
    /// and outside of undo. Emits faviconsChanged() once when anything changed.
    void setFaviconData(const QHash<QUuid, std::optional<QByteArray>> &pictures);

    /// The item with this run id, anywhere in the tree.
    std::optional<LinkItem> find(const QUuid &id) const;
    /// The item whose run id or stable id is `text` (either case).
    std::optional<LinkItem> findByText(const QString &text) const;

    /// The stored form of a tree (encodeLinks()), made on another thread: an
    /// edit that makes this very list the tree need not make it. Forgotten at
    /// the next edit.
    void useStoredForm(const LinkList &tree, const QByteArray &bytes) { m_storedForm = {tree, bytes}; }

    /// Stores the tree as it is. False when the write failed.
    bool saveLinks(bool triggerSync = true);
    /// True when the tree in memory is not what is stored.
    bool hasUnsavedChanges() const { return m_unsaved; }
    /// Takes over at once what another process stored, without waiting to be
    /// told of it. False when the tree here still lacks some of that.
    bool catchUp();

    /// The tree is now based on another machine's or process's change, which
    /// the steps known so far would take back.
    void forgetHistory();
    bool canUndo() const;
    bool canRedo() const;
    bool undo();
    bool redo();
    /// Restores the newest snapshot: the state before the last destructive
    /// step (itself such a step, so a second call goes back again). Absent
    /// when there is none, else its name.
    std::optional<QString> undoLastDestructiveStep();
    /// Makes a snapshot the tree again. False when it cannot be read.
    bool restoreSnapshot(const QString &name);

    /// Renews stale bookmarks: before it returns those of what is at hand, those
    /// on a distant volume when that answers. Calls `unresolved` at most once,
    /// when a file or folder link could not be resolved.
    void refreshStaleBookmarks(const std::function<void()> &unresolved);
    void restoreRootAccess();
    /// Asks for a folder that holds all linked paths and rebuilds every
    /// bookmark.
    void repairBookmarks(FolderChooser &chooser);
    /// Looks at what lies at `path` and delivers the outcome through `receiver`:
    /// before this returns when it is at hand, else when its volume answers.
    void look(const QString &path, QObject *receiver, const DistantFiles::Look &look) const;
    /// The same for what may take its time or lead to other volumes: delivers
    /// later also what is at hand, unless this process does nothing else.
    void lookAside(const QString &path, QObject *receiver, const DistantFiles::Look &look) const;
    FileBookmarks &fileBookmarks() const { return m_services.bookmarks; }
    const Volumes &volumes() const { return m_services.volumes; }
    /// The user's home folder, which documents that leave the machine call "~".
    QString homeDirectory() const;

    /// Keys under which undecodable stored bytes were set aside, newest first.
    QStringList rescuedDataKeys() const;
    /// Where the bytes are kept that the last load could not read; absent when
    /// it could, or when they could not be copied yet.
    std::optional<QString> keptUnreadableAt() const { return m_keptUnreadableAt; }
    /// True when the last load could not read what is stored, kept or not, and
    /// nothing was stored since.
    bool isUnreadable() const { return m_keptUnreadableAt || m_notYetSetAside || m_readFailed; }
    /// True when that is still to be kept or read: nothing can be stored.
    bool isLocked() const { return m_notYetSetAside || m_readFailed; }
    /// Tries to read such bytes again and makes them the tree. The copy stays.
    bool restoreRescuedData(const QString &key);

signals:
    /// The tree is another one now. Once per edit, load or outside change.
    void linksChanged();
    void historyChanged();
    /// Pictures of items are others now; nothing else is.
    void faviconsChanged();
    /// An edit with links that others made (an import, a synchronisation, a
    /// restored snapshot) is about to be stored. Comes again when the edit is
    /// made again on another process's tree.
    void foreignLinksArrive(const orvelle::LinkList &before, const orvelle::LinkList &after);
    void saveFailed(const orvelle::DefaultsError &error);
    /// Stored bytes could not be read and were copied to `key`.
    void undecodableDataSetAside(const QString &key);

private:
    struct History;
    /// An edit that is not stored yet, so that it can be made again on the
    /// tree of another process.
    struct Pending {
        Step step;
        QString reason;
        Edit change;
    };
    struct Outcome {
        bool applied = false;
        bool rebased = false; ///< another process's tree lies below the edit
        LinkList before;      ///< the tree the edit was made on
    };
    struct Stored {
        std::optional<DefaultsValue> value;
        std::optional<LinkList> links; ///< absent when there is no value or it cannot be read
        bool madeStableIds = false;
        bool failed = false; ///< see UserDefaults::Versioned
    };

    Stored readStored();
    void loadLinks();
    bool migrate(LinkList &links, bool madeStableIds);
    bool migrateLinksIfNeeded(bool madeStableIds);
    void reloadForModeChange();
    void reloadAfterOutsideChange(const QStringList &keys);
    std::optional<bool> reloadIfStale();
    void loadOrCreateMachineId();
    QString linksKey() const;
    QString rootBookmarksKey() const;

    /// A pure edit, run on each tree as Edit is.
    using Attempt = std::function<std::optional<EditRefusal>(LinkList &)>;
    std::optional<EditRefusal> attempt(Step step, const QString &reason, const Attempt &change);

    Outcome perform(const Pending &pending, bool triggerSync);
    static bool isTooDeep(const LinkList &links);
    bool keepSnapshot(Step step, const QString &reason, const LinkList &links);
    void announceForeign(const QString &reason, const LinkList &before, const LinkList &after);
    bool storeTree(bool triggerSync, Outcome &outcome);
    bool rebase(Outcome &outcome);
    bool reportFailure(const DefaultsError &error);
    void requestSync(bool triggerSync);
    TreeDifference wayBack(const Outcome &outcome) const;
    bool travel(QList<TreeDifference> &from, QList<TreeDifference> &to, const QString &reason);
    bool replaceTree(LinkList links, const QString &reason);
    using FilesLook = std::function<bool(LinkList &, FileBookmarks &)>;
    void lookAtFiles(const FilesLook &change, const std::function<void(bool found, bool changed)> &done);
    void makeLackingBookmarks();
    bool setBookmarks(const LinkList &before, const LinkList &after);
    void rebuildBookmarksBelow(const QString &folder);
    void keepRoot(const Result<QByteArray, FileBookmarkError> &bookmark);
    QString distantVolumeHolding(const QString &path) const;
    void lookIn(const QString &volume, QObject *receiver, const DistantFiles::Look &look) const;
    void setAside(const DefaultsValue &value);
    bool setAsideWhatIsStillThere();
    void announceTree();

    Services m_services;
    LinkList m_links;
    std::unique_ptr<History> m_history;
    QList<Pending> m_pending;
    struct StoredForm {
        LinkList tree;
        QByteArray bytes;
    } m_storedForm;
    /// Undecodable stored bytes that could not be copied yet; nothing is saved
    /// over them before.
    std::optional<DefaultsValue> m_notYetSetAside;
    std::optional<QString> m_keptUnreadableAt;
    bool m_readFailed = false;
    QString m_loadedKey; ///< where the tree came from and goes back to
    bool m_loadedInDebugMode = false;
    qint64 m_revision = 0;
    QHash<QUuid, QString> m_lookedFor; ///< links whose missing bookmark was asked for, with their paths
    QString m_machineId;
    bool m_isAutoSyncingFromFile = false;
    bool m_isInitialized = false;
    bool m_unsaved = false;
};

} // namespace orvelle
