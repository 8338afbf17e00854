#include "links/LinkStore.h"

#include "base/Notifications.h"
#include "base/Uuid.h"
#include "links/LinkCodec.h"
#include "links/LinkEditing.h"
#include "links/LinkLog.h"
#include "links/LinkStoreHistory.h"
#include "links/LinkTree.h"
#include "links/SnapshotStore.h"
#include "platform/Clock.h"
#include "platform/PowerEvents.h"
#include "platform/Volumes.h"
#include "services/DebugModeManager.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

DefaultsError unreadable()
{
    return {DefaultsError::Kind::Other, u"what is stored cannot be read"_s};
}

} // namespace

LinkStore::LinkStore(const Services &services, QObject *parent)
    : QObject(parent), m_services(services), m_history(std::make_unique<History>())
{
    loadOrCreateMachineId();
    loadLinks();
    m_services.hooks.hydrateFavicons(m_links);
    m_services.hooks.cleanupOrphanFavicons(m_links);
    m_services.hooks.loadSyncState();

    connect(&m_services.notifications, &Notifications::debugModeChanged, this, &LinkStore::reloadForModeChange);
    connect(&m_services.notifications, &Notifications::syncableSettingsChanged, this,
            [this] { m_services.hooks.syncableSettingsDidChange(); });
    connect(&m_services.powerEvents, &PowerEvents::didWake, this, [this] { m_services.hooks.systemDidWake(); });
    connect(&m_services.defaults, &UserDefaults::changedExternally, this, &LinkStore::reloadAfterOutsideChange);
    m_isInitialized = true;
    makeLackingBookmarks();
}

LinkStore::~LinkStore() = default;

QString LinkStore::linksKey() const
{
    return m_services.debugMode.key(linksBaseKey());
}

QString LinkStore::rootBookmarksKey() const
{
    return m_services.debugMode.key(rootBookmarksBaseKey());
}

void LinkStore::loadOrCreateMachineId()
{
    const QString key = m_services.debugMode.key(u"orvelle_machineId"_s);
    m_machineId = m_services.defaults.get<QString>(key).value_or(QString());
    if (!m_machineId.isEmpty())
        return;
    m_machineId = newUuidText();
    if (const auto written = m_services.defaults.write(key, m_machineId); !written)
        qCWarning(lcLinkStore).noquote() << "The machine id could not be stored:" << written.error().detail;
}

bool LinkStore::edit(Step step, const QString &reason, const Edit &change, bool triggerSync)
{
    const Outcome outcome = perform({step, reason, change}, triggerSync);
    if (outcome.applied) {
        History::push(m_history->undo, wayBack(outcome));
        m_history->redo.clear();
    }
    if (outcome.applied || outcome.rebased)
        announceTree();
    return outcome.applied;
}

LinkStore::Outcome LinkStore::perform(const Pending &pending, bool triggerSync)
{
    Outcome outcome{false, false, m_links};
    LinkList after = m_links;
    if (!pending.change(after))
        return outcome;
    if (isTooDeep(after) || !keepSnapshot(pending.step, pending.reason, m_links))
        return outcome;
    announceForeign(pending.reason, m_links, after);
    m_links = std::move(after);
    m_pending += pending;
    outcome.applied = true;
    storeTree(triggerSync, outcome);
    return outcome;
}

bool LinkStore::isTooDeep(const LinkList &links)
{
    if (treeLevels(links) <= maxTreeLevels)
        return false;
    qCWarning(lcLinkStore) << "Refused: groups nested deeper than" << maxTreeLevels;
    return true;
}

bool LinkStore::keepSnapshot(Step step, const QString &reason, const LinkList &links)
{
    if (step == Step::Ordinary)
        return true;
    const auto taken = m_services.snapshots.take(links, reason, m_loadedInDebugMode);
    if (taken)
        return true;
    qCWarning(lcLinkStore).noquote() << "No snapshot could be kept, so nothing was changed:" << taken.error().detail;
    emit saveFailed({DefaultsError::Kind::Other, taken.error().detail});
    return false;
}

/// The reasons of edits whose links come from elsewhere. A step of undo brings
/// back what was known before.
void LinkStore::announceForeign(const QString &reason, const LinkList &before, const LinkList &after)
{
    static const QStringList foreign{u"import"_s, u"replace"_s, u"sync"_s, u"restore"_s};
    if (foreign.contains(reason))
        emit foreignLinksArrive(before, after);
}

bool LinkStore::saveLinks(bool triggerSync)
{
    Outcome outcome;
    const bool stored = storeTree(triggerSync, outcome);
    if (outcome.rebased)
        announceTree();
    return stored;
}

bool LinkStore::storeTree(bool triggerSync, Outcome &outcome)
{
    constexpr int maxAttempts = 16;
    m_unsaved = true;
    const StoredForm given = std::exchange(m_storedForm, {});
    if (m_readFailed)
        return reportFailure(unreadable());
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        if (!setAsideWhatIsStillThere())
            return false;
        const auto written = m_services.defaults.compareAndSet(
            m_loadedKey, m_revision,
            !given.bytes.isEmpty() && given.tree.isSharedWith(m_links) ? given.bytes : encodeLinks(m_links));
        if (written) {
            m_revision = *written;
            m_pending.clear();
            m_unsaved = false;
            m_keptUnreadableAt.reset();
            requestSync(triggerSync);
            return true;
        }
        if (written.error().kind != DefaultsError::Kind::Conflict)
            return reportFailure(written.error());
        if (!rebase(outcome))
            return reportFailure(unreadable());
    }
    return reportFailure({DefaultsError::Kind::Busy, u"other processes keep changing the links"_s});
}

bool LinkStore::reportFailure(const DefaultsError &error)
{
    qCWarning(lcLinkStore).noquote() << "The links could not be stored:" << error.detail;
    emit saveFailed(error);
    return false;
}

void LinkStore::requestSync(bool triggerSync)
{
    // Before the sync state is read nothing is known to upload to.
    if (triggerSync && !m_isAutoSyncingFromFile && m_isInitialized)
        m_services.hooks.scheduleAutoSync();
}

/// Takes the stored tree of another process and makes the edits that are not
/// stored yet again on it. Steps of undo lead to trees without that process's
/// change, so they are forgotten. False when that tree cannot be read now.
bool LinkStore::rebase(Outcome &outcome)
{
    Stored stored = readStored();
    if (stored.failed)
        return false;
    m_history->clear();
    outcome.rebased = true;
    if (stored.value && !stored.links) {
        setAside(*stored.value);
        return true;
    }
    LinkList tree = stored.links.value_or(LinkList());
    migrate(tree, stored.madeStableIds);
    qsizetype survivors = 0;
    for (const Pending &pending : std::as_const(m_pending)) {
        LinkList after = tree;
        const bool last = &pending == &m_pending.constLast();
        const bool made =
            pending.change(after) && !isTooDeep(after) && keepSnapshot(pending.step, pending.reason, tree);
        if (last)
            outcome = {made, true, tree};
        if (made) {
            announceForeign(pending.reason, tree, after);
            tree = std::move(after);
        }
        survivors += made ? 1 : 0;
    }
    qCInfo(lcLinkStore) << "Another process changed the links; edits made again:" << survivors << "of"
                        << m_pending.size();
    keepPictures(tree, m_links);
    m_links = std::move(tree);
    m_services.hooks.hydrateFavicons(m_links);
    return true;
}

void LinkStore::announceTree()
{
    if (!m_isInitialized)
        return;
    emit linksChanged();
    emit historyChanged();
    makeLackingBookmarks();
}

QString LinkStore::homeDirectory() const
{
    return m_services.volumes.realHomeDirectory();
}

std::optional<LinkItem> LinkStore::find(const QUuid &id) const
{
    const LinkItem *item = findItem(m_links, id);
    return item ? std::optional(*item) : std::nullopt;
}

std::optional<LinkItem> LinkStore::findByText(const QString &text) const
{
    const LinkItem *item = findItem(m_links, [&text](const LinkItem &candidate) {
        return candidate.stableId.compare(text, Qt::CaseInsensitive) == 0 ||
               uuidText(candidate.id).compare(text, Qt::CaseInsensitive) == 0;
    });
    return item ? std::optional(*item) : std::nullopt;
}

} // namespace orvelle
