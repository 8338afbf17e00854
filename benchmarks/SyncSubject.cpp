#include "SyncSubject.h"

#include "MainThread.h"
#include "platform/freedesktop/folder/FolderContainer.h"
#include "platform/freedesktop/webdav/WebDavContainer.h"

#include <QDir>

namespace orvelle::bench {

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<SqliteUserDefaults> openedDefaults(const QString &folder, Clock &clock)
{
    auto opened = SqliteUserDefaults::open(folder, clock);
    if (!opened)
        qFatal("the settings cannot be opened");
    return std::move(std::move(opened).value().defaults);
}

WatchedApplication &application()
{
    return *static_cast<WatchedApplication *>(QCoreApplication::instance());
}

} // namespace

SyncSubject::SyncSubject()
    : m_defaults(openedDefaults(below("config"), m_clock)),
      m_debugMode(*m_defaults, m_notifications),
      m_favicons(*m_defaults, m_debugMode, m_notifications),
      m_snapshots(below("snapshots"), m_clock),
      m_http(m_clock, "Orvelle/0"),
      m_icons({m_favicons, m_http, m_clock, below("icons")}),
      m_settings(*m_defaults, m_debugMode, m_notifications, m_home.path())
{
    m_links = std::make_unique<LinkStore>(LinkStore::Services{*m_defaults, m_debugMode, m_notifications, m_clock,
                                                              m_bookmarks, m_volumes, m_power, m_snapshots, *this});
    m_icons.attach(*m_links);
    m_exchange = std::make_unique<LinkExchange>(*m_links, m_settings, m_bookmarks, m_clock);
    m_sync =
        std::make_unique<CloudSync>(CloudSync::Services{*m_links, *m_exchange, m_settings, m_bookmarks, *m_defaults,
                                                        m_debugMode, m_notifications, m_clock, m_snapshots, m_secrets});
    m_defaults->startWatching();
}

SyncSubject::~SyncSubject()
{
    m_sync.reset();
}

QString SyncSubject::below(const char *name) const
{
    QString path = m_home.filePath(QString::fromLatin1(name));
    QDir().mkpath(path);
    return path;
}

void SyncSubject::shareIn(const QString &folder)
{
    m_container = std::make_unique<FolderContainer>(folder, m_home.path(), m_clock);
    m_sync->setContainer(m_container.get());
}

void SyncSubject::shareOn(const QUrl &server)
{
    m_container = std::make_unique<WebDavContainer>(WebDavSettings{.folderUrl = server, .user = u"ann"_s}, m_http,
                                                    m_secrets, m_clock, below("cache"));
    m_sync->setContainer(m_container.get());
}

void SyncSubject::begin()
{
    bool done = false;
    m_sync->readForConfigure([&](const auto &found) {
        if (!found)
            qFatal("not read: %s", qPrintable(found.error().description));
        if (found->has_value() && !m_exchange->importPrepared(**found, ImportMode::Replace))
            qFatal("not taken over");
        if (found->has_value())
            done = true;
        else
            m_sync->beginAnew([&done](const auto &) { done = true; });
    });
    application().await([&] { return done; }, "the document");
    m_sync->setAutoSyncEnabled(true);
    application().await([this] { return isIdle(); }, "peace");
}

void SyncSubject::rename(const QString &stableId, const QString &name)
{
    LinkItem item = m_links->findByText(stableId).value_or(LinkItem());
    item.name = name;
    if (!m_links->updateLink(item))
        qFatal("the edit was refused");
}

QString SyncSubject::nameOf(const QString &stableId) const
{
    return m_links->findByText(stableId).value_or(LinkItem()).name;
}

bool SyncSubject::isIdle() const
{
    return m_sync->status().state == SyncStatus::State::Current;
}

void SyncSubject::scheduleAutoSync()
{
    if (m_sync)
        m_sync->scheduleAutoSync();
}

void SyncSubject::syncableSettingsDidChange()
{
    if (m_sync)
        m_sync->syncableSettingsDidChange();
}

} // namespace orvelle::bench
