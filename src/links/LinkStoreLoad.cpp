#include "links/LinkCodec.h"
#include "links/LinkLog.h"
#include "links/LinkMigration.h"
#include "links/LinkStoreHistory.h"
#include "links/SnapshotStore.h"
#include "platform/Clock.h"
#include "services/DebugModeManager.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr auto rescueInfix = "_undecodable_"_L1;

} // namespace

/// The stored tree and its revision, from the key it was loaded from.
LinkStore::Stored LinkStore::readStored()
{
    UserDefaults::Versioned versioned = m_services.defaults.read(m_loadedKey);
    Stored stored;
    stored.failed = versioned.failed;
    if (!stored.failed)
        m_revision = versioned.revision;
    stored.value = std::move(versioned.value);
    const auto *bytes = stored.value ? std::get_if<QByteArray>(&*stored.value) : nullptr;
    if (!bytes)
        return stored;
    LinkCodecNotes notes;
    auto links = decodeLinks(*bytes, &notes);
    if (links) {
        stored.links = std::move(links).value();
        stored.madeStableIds = notes.madeStableIds;
    } else {
        qCWarning(lcLinkStore).noquote() << "The stored links cannot be read:" << links.error().reason;
    }
    return stored;
}

void LinkStore::loadLinks()
{
    m_loadedKey = linksKey();
    m_loadedInDebugMode = m_services.debugMode.isDebugMode();
    m_history->clear();
    m_pending.clear();
    m_notYetSetAside.reset();
    m_keptUnreadableAt.reset();
    m_unsaved = false;
    m_revision = 0;
    Stored stored = readStored();
    m_readFailed = stored.failed;
    LinkList links = std::move(stored.links).value_or(LinkList());
    keepPictures(links, m_links);
    m_links = std::move(links);
    if (stored.value && !stored.links)
        setAside(*stored.value);
    migrateLinksIfNeeded(stored.madeStableIds);
}

bool LinkStore::migrate(LinkList &links, bool madeStableIds)
{
    const bool upgraded = migrateItems(links, m_services.bookmarks, m_services.clock.now());
    if (upgraded || madeStableIds)
        qCInfo(lcLinkStore).noquote() << "Migration effectuée (bookmarks + stableId/timestamps)";
    return upgraded || madeStableIds;
}

bool LinkStore::migrateLinksIfNeeded(bool madeStableIds)
{
    if (!migrate(m_links, madeStableIds))
        return false;
    Outcome outcome;
    storeTree(true, outcome);
    return true;
}

void LinkStore::reloadForModeChange()
{
    // What could not be stored so far belongs to the mode that is left.
    Outcome outcome;
    if (m_unsaved && !storeTree(false, outcome)) {
        const auto kept = m_services.snapshots.take(m_links, u"unsaved"_s, m_loadedInDebugMode);
        if (!kept)
            qCCritical(lcLinkStore).noquote() << "Unsaved links could not be kept:" << kept.error().detail;
    }
    loadLinks();
    m_services.hooks.hydrateFavicons(m_links);
    m_services.hooks.loadSyncState();
    announceTree();
}

void LinkStore::reloadAfterOutsideChange(const QStringList &keys)
{
    if (keys.contains(m_loadedKey))
        reloadIfStale();
}

/// Takes over what another process stored, if it did. True when so; absent when
/// what is stored cannot be read.
std::optional<bool> LinkStore::reloadIfStale()
{
    const UserDefaults::Versioned now = m_services.defaults.read(m_loadedKey);
    if (now.failed)
        return std::nullopt;
    if (now.revision == m_revision && !m_readFailed)
        return false;
    if (m_unsaved) {
        Outcome outcome;
        storeTree(true, outcome);
    } else {
        loadLinks();
        m_services.hooks.hydrateFavicons(m_links);
    }
    announceTree();
    return true;
}

bool LinkStore::catchUp()
{
    const auto reloaded = reloadIfStale();
    return reloaded && (!*reloaded || !m_unsaved);
}

/// Copies unreadable stored bytes to a key of their own, once.
void LinkStore::setAside(const DefaultsValue &value)
{
    UserDefaults &defaults = m_services.defaults;
    m_notYetSetAside.reset();
    const QStringList earlier = rescuedDataKeys();
    for (const QString &key : earlier) {
        if (defaults.value(key) == value) {
            m_keptUnreadableAt = key;
            return;
        }
    }
    const QString stamp = m_services.clock.now().toDateTime().toString(u"yyyy-MM-dd'T'HH-mm-ss'Z'"_s);
    const QString base = m_loadedKey + rescueInfix + stamp;
    QString key = base;
    for (int i = 2; earlier.contains(key); ++i)
        key = base + u"_%1"_s.arg(i);
    if (const auto written = defaults.write(key, value); !written) {
        m_notYetSetAside = value;
        reportFailure(written.error());
        return;
    }
    qCWarning(lcLinkStore).noquote() << "The unreadable bytes were copied to" << key;
    m_keptUnreadableAt = key;
    emit undecodableDataSetAside(key);
}

bool LinkStore::setAsideWhatIsStillThere()
{
    if (m_notYetSetAside)
        setAside(DefaultsValue(*m_notYetSetAside));
    return !m_notYetSetAside;
}

QStringList LinkStore::rescuedDataKeys() const
{
    QStringList keys = m_services.defaults.keys().filter(QRegularExpression(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(m_loadedKey + rescueInfix) + u".*"_s)));
    std::sort(keys.begin(), keys.end(), std::greater<>());
    return keys;
}

bool LinkStore::restoreRescuedData(const QString &key)
{
    if (!rescuedDataKeys().contains(key))
        return false;
    const auto bytes = m_services.defaults.get<QByteArray>(key);
    if (!bytes)
        return false;
    const auto links = decodeLinks(*bytes);
    if (!links) {
        qCWarning(lcLinkStore).noquote() << key << "still cannot be read:" << links.error().reason;
        return false;
    }
    return replaceTree(*links, u"restore"_s);
}

} // namespace orvelle
