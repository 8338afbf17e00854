#include "links/favicons/FaviconStore.h"

#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/favicons/FaviconHosts.h"
#include "links/favicons/FaviconImage.h"

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Handing over walks the whole tree, so it is done a few times only.
constexpr qsizetype readBatch = 2500;
/// An address is often pasted and then corrected; what is typed in between is
/// told to nobody.
constexpr auto quietBeforeFetch = 1500ms;
/// Answers come in a quick row.
constexpr auto gathering = 150ms;

bool hasSite(const LinkItem &item)
{
    return item.type == LinkType::Url && !item.isNetworkLink();
}

} // namespace

FaviconStore::FaviconStore(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_cache(services.folder),
      m_queue(services.settings, services.http, services.clock)
{
    // One thread: what is asked of the disk happens in order.
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(5000);
    connect(&m_queue, &FaviconQueue::answered, this, &FaviconStore::judge);
    connect(&services.settings, &FaviconSettings::changed, this, &FaviconStore::settingsChanged);
}

FaviconStore::~FaviconStore()
{
    m_pool.waitForDone();
}

void FaviconStore::attach(LinkStore &links)
{
    m_links = &links;
    m_unreviewed = links.links();
    connect(&links, &LinkStore::linksChanged, this, &FaviconStore::noteChange);
    connect(&links, &QObject::destroyed, this, [this] { m_links = nullptr; });
}

void FaviconStore::noteChange()
{
    if (m_seen.isEmpty())
        forgetMoved();
    m_reviewTimer = m_services.clock.singleShot(0ms, [this] { review(); });
    if (!m_mayFetch)
        return;
    m_fetchTimer = m_services.clock.singleShot(quietBeforeFetch, [this] { fetchAllFavicons(); });
}

/// A command ends before any review, and a file that it leaves behind would be
/// taken for the new site's picture for ever.
void FaviconStore::forgetMoved()
{
    QHash<QUuid, QString> addresses;
    walk(std::exchange(m_unreviewed, m_links->links()),
         [&addresses](const LinkItem &item) { addresses.insert(item.id, item.path); });
    walk(m_links->links(), [&](const LinkItem &item) {
        const auto before = addresses.constFind(item.id);
        if (before != addresses.cend() && *before != item.path && faviconHost(*before) != faviconHost(item.path))
            deleteFile(item.id);
    });
}

void FaviconStore::settingsChanged()
{
    m_queue.cancelAll();
    m_queue.forgetFailures();
    // Later, as the tree of another mode is not loaded yet.
    if (m_mayFetch)
        m_fetchTimer = m_services.clock.singleShot(0ms, [this] { fetchAllFavicons(); });
}

void FaviconStore::fetchAllFavicons()
{
    m_mayFetch = true;
    m_fetchTimer.reset();
    // What is on the disk need not be fetched; the end of reading comes back.
    if (!m_links || m_reading > 0 || m_readTimer)
        return;
    m_fetchNow = true;
    review();
    m_fetchNow = false;
}

void FaviconStore::fetchFavicon(const LinkItem &link)
{
    if (!hasSite(link) || !m_services.settings.isEnabled())
        return;
    const QString host = faviconHost(link.path);
    if (m_pictures.contains(host))
        reviewSoon();
    else
        m_queue.ask(host);
}

/// Pictures of several sites are handed over together.
void FaviconStore::reviewSoon()
{
    if (!m_reviewTimer)
        m_reviewTimer = m_services.clock.singleShot(gathering, [this] { review(); });
}

/// Compares the tree with what was seen of it before: sites that changed lose
/// their picture, items without one get what is known of their site.
void FaviconStore::review()
{
    m_reviewTimer.reset();
    if (!m_links)
        return;
    SeenLinks seen;
    seen.reserve(m_seen.size());
    Changes changes;
    walk(m_links->links(), [&](const LinkItem &item) { reviewItem(item, seen, changes); });
    m_seen = std::move(seen);
    m_unreviewed.clear();
    apply(changes);
}

void FaviconStore::reviewItem(const LinkItem &item, SeenLinks &seen, Changes &changes)
{
    const bool siteful = hasSite(item);
    if (!siteful && !item.faviconData)
        return;
    const auto before = m_seen.constFind(item.id);
    const Seen now = siteful ? look(item) : Seen{item.path, {}};
    const bool moved = before != m_seen.cend() && before->host != now.host;
    if (moved) {
        deleteFile(item.id);
        if (item.faviconData)
            changes.insert(item.id, std::nullopt);
    }
    seen.insert(item.id, now);
    if (!now.host.isEmpty() && (moved || !item.faviconData))
        supply(item, now.host, changes);
}

/// Taking an address apart costs much more than looking it up.
FaviconStore::Seen FaviconStore::look(const LinkItem &item) const
{
    const auto before = m_seen.constFind(item.id);
    if (before != m_seen.cend() && before->address == item.path)
        return *before;
    return {item.path, faviconHost(item.path)};
}

void FaviconStore::supply(const LinkItem &item, const QString &host, Changes &changes)
{
    if (const auto known = m_pictures.constFind(host); known != m_pictures.cend()) {
        changes.insert(item.id, *known);
        writeFile(item.id, *known);
    } else if (m_fetchNow && m_services.settings.isEnabled()) {
        m_queue.ask(host);
    }
}

void FaviconStore::apply(const Changes &changes)
{
    if (m_links && !changes.isEmpty())
        m_links->setFaviconData(changes);
}

void FaviconStore::hydrateFaviconsFromDisk(LinkList &links)
{
    // Nothing at start, when there is the most to do.
    if (!m_pictures.isEmpty()) {
        changeItems(links, [this](const LinkItem &item) -> std::optional<LinkItem> {
            const auto known = hasSite(item) ? m_pictures.constFind(look(item).host) : m_pictures.cend();
            if (known == m_pictures.cend())
                return std::nullopt;
            LinkItem pictured = item;
            pictured.faviconData = *known;
            return pictured;
        });
    }
    m_readTimer = m_services.clock.singleShot(0ms, [this] { readDisk(); });
}

void FaviconStore::cleanupOrphanFavicons()
{
    m_cleanupWanted = true;
}

void FaviconStore::readDisk()
{
    m_readTimer.reset();
    if (!m_links)
        return;
    QSet<QUuid> all;
    SeenLinks missing;
    walk(m_links->links(), [&](const LinkItem &item) {
        all.insert(item.id);
        if (hasSite(item) && !item.faviconData)
            missing.insert(item.id, {item.path, {}});
    });
    // A tree that could not be read is empty, and comes back.
    const bool cleanup = std::exchange(m_cleanupWanted, false) && !m_links->isUnreadable();
    ++m_reading;
    m_pool.start([this, all, missing, cleanup] {
        readDiskElsewhere(missing);
        if (cleanup)
            m_cache.removeAllBut(all);
        QMetaObject::invokeMethod(this, [this] {
            --m_reading;
            m_movedWhileReading.clear();
            if (m_mayFetch)
                fetchAllFavicons();
        });
    });
}

/// On the other thread: so many addresses take a while to be taken apart.
void FaviconStore::readDiskElsewhere(const SeenLinks &missing)
{
    SeenLinks seen = missing;
    QSet<QUuid> ids;
    for (auto link = seen.begin(); link != seen.end(); ++link) {
        link->host = faviconHost(link->address);
        ids.insert(link.key());
    }
    QMetaObject::invokeMethod(this, [this, seen] { takeSeen(seen); });
    m_cache.loadAll(ids, readBatch, [this](const FaviconCache::Pictures &pictures) {
        QMetaObject::invokeMethod(this, [this, pictures] { takeFromDisk(pictures); });
    });
}

void FaviconStore::takeSeen(const SeenLinks &links)
{
    for (auto link = links.cbegin(); link != links.cend(); ++link) {
        if (!m_seen.contains(link.key()))
            m_seen.insert(link.key(), *link);
    }
    review();
}

void FaviconStore::takeFromDisk(const FaviconCache::Pictures &pictures)
{
    Changes changes;
    for (auto picture = pictures.cbegin(); picture != pictures.cend(); ++picture) {
        if (m_movedWhileReading.contains(picture.key()))
            continue;
        const QString host = m_seen.value(picture.key()).host;
        if (!host.isEmpty() && !m_pictures.contains(host))
            m_pictures.insert(host, *picture);
        changes.insert(picture.key(), *picture);
    }
    apply(changes);
}

/// Decodes elsewhere, as a picture of the largest size takes some time.
void FaviconStore::judge(const QString &host, const QByteArray &bytes)
{
    m_pool.start([this, host, bytes] {
        const bool isImage = isFaviconImage(bytes);
        QMetaObject::invokeMethod(this, [this, host, bytes, isImage] {
            m_queue.settle(host, isImage);
            if (!isImage || !m_services.settings.isEnabled())
                return;
            m_pictures.insert(host, bytes);
            reviewSoon();
        });
    });
}

void FaviconStore::removeFavicon(const LinkItem &link)
{
    m_pictures.remove(m_seen.value(link.id).host);
    deleteFile(link.id);
    apply({{link.id, std::nullopt}});
}

void FaviconStore::writeFile(const QUuid &id, const QByteArray &bytes)
{
    m_pool.start([this, id, bytes] { m_cache.writeFaviconToDisk(bytes, id); });
}

void FaviconStore::deleteFile(const QUuid &id)
{
    if (m_reading > 0)
        m_movedWhileReading.insert(id);
    m_pool.start([this, id] { m_cache.deleteFaviconFromDisk(id); });
}

} // namespace orvelle
