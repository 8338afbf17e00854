#pragma once

#include "links/LinkItem.h"
#include "links/favicons/FaviconCache.h"
#include "links/favicons/FaviconQueue.h"

#include <QThreadPool>

namespace orvelle {

class LinkStore;

/// Gives web links the pictures of their sites: from the cache folder at
/// start, from the icon service when there is none, in memory from then on.
/// Main thread; files are read and written, and pictures looked at, on a
/// thread of its own.
///
/// Nothing is asked of the network before fetchAllFavicons() was called, nor
/// while the setting is off; pictures that are there stay.
class FaviconStore : public QObject
{
    Q_OBJECT

public:
    struct Services {
        FaviconSettings &settings;
        HttpClient &http;
        Clock &clock;
        QString folder; ///< `faviconCacheDir`
    };
    explicit FaviconStore(const Services &services, QObject *parent = nullptr);
    ~FaviconStore() override;

    /// The store whose items get pictures. Outlived by this object; it may
    /// call the two below from its constructor, before this.
    void attach(LinkStore &links);

    /// Puts pictures that are in memory already into the items, and looks for
    /// the others on the disk as soon as the event loop runs.
    void hydrateFaviconsFromDisk(LinkList &links);
    /// Deletes files of items that are gone, after that.
    void cleanupOrphanFavicons();

    /// Fetches one picture unless the link's site is none whose name may be
    /// told, or was asked for without success within the hour.
    void fetchFavicon(const LinkItem &link);
    /// Fetches what is missing in the attached store, now and after every
    /// later change.
    void fetchAllFavicons();
    /// Forgets a link's picture, on the disk too.
    void removeFavicon(const LinkItem &link);

    /// Waits until files are read and written; what was read arrives by the
    /// event loop.
    void waitForDisk() { m_pool.waitForDone(); }

private:
    /// What was last seen of a link.
    struct Seen {
        QString address;
        QString host; ///< empty when it is told to nobody
    };
    using SeenLinks = QHash<QUuid, Seen>;
    using Changes = QHash<QUuid, std::optional<QByteArray>>;

    void noteChange();
    void forgetMoved();
    void settingsChanged();
    void review();
    void reviewItem(const LinkItem &item, SeenLinks &seen, Changes &changes);
    void reviewSoon();
    Seen look(const LinkItem &item) const;
    void supply(const LinkItem &item, const QString &host, Changes &changes);
    void apply(const Changes &changes);

    void readDisk();
    void readDiskElsewhere(const SeenLinks &missing);
    void takeSeen(const SeenLinks &links);
    void takeFromDisk(const FaviconCache::Pictures &pictures);
    void judge(const QString &host, const QByteArray &bytes);
    void writeFile(const QUuid &id, const QByteArray &bytes);
    void deleteFile(const QUuid &id);

    Services m_services;
    FaviconCache m_cache;
    FaviconQueue m_queue;
    LinkStore *m_links = nullptr;
    LinkList m_unreviewed; ///< the tree as it was attached, until m_seen knows it
    SeenLinks m_seen;
    QHash<QString, QByteArray> m_pictures; ///< by host
    QSet<QUuid> m_movedWhileReading;       ///< links whose file is of another site now
    std::unique_ptr<Timer> m_readTimer;
    std::unique_ptr<Timer> m_reviewTimer;
    std::unique_ptr<Timer> m_fetchTimer;
    int m_reading = 0;
    bool m_cleanupWanted = false;
    bool m_mayFetch = false; ///< fetchAllFavicons() was called
    bool m_fetchNow = false; ///< the review that runs asks for what is missing
    QThreadPool m_pool;
};

} // namespace orvelle
