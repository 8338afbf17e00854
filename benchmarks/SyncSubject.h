#pragma once

#include "base/Notifications.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "links/exchange/LinkExchange.h"
#include "links/favicons/FaviconSettings.h"
#include "links/favicons/FaviconStore.h"
#include "platform/CloudContainer.h"
#include "platform/SecretStore.h"
#include "platform/freedesktop/InodeFileBookmarks.h"
#include "platform/freedesktop/MountVolumes.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/defaults/SqliteUserDefaults.h"
#include "platform/freedesktop/http/QtHttpClient.h"
#include "services/DebugModeManager.h"
#include "support/SyncMachine.h"
#include "sync/CloudSync.h"

#include <QTemporaryDir>

namespace orvelle::bench {

/// A keyring with one password.
class OneSecret : public QObject, public SecretStore
{
public:
    void lookup(const QString &, const QString &,
                std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) override
    {
        QMetaObject::invokeMethod(
            this, [done] { done(std::optional(QByteArray("geheim"))); }, Qt::QueuedConnection);
    }
    void store(const QString &, const QString &, const QString &, const QByteArray &,
               std::function<void(const Result<Nothing, SecretError> &)>) override
    {
    }
    void remove(const QString &, const QString &, std::function<void(const Result<Nothing, SecretError> &)>) override {}
};

/// What of the program the synchronisation has to do with, on files of its own.
class SyncSubject : private LinkStoreHooks
{
public:
    SyncSubject();
    ~SyncSubject() override;

    LinkStore &links() { return *m_links; }
    CloudSync &sync() { return *m_sync; }

    void shareIn(const QString &folder);
    void shareOn(const QUrl &server);
    /// Reads the document that is there and makes it what is here, or makes
    /// what is here the document, and begins to follow it. Ends when there is
    /// nothing left to do.
    void begin();
    void rename(const QString &stableId, const QString &name);
    QString nameOf(const QString &stableId) const;
    bool isIdle() const;

private:
    void hydrateFavicons(LinkList &links) override { m_icons.hydrateFaviconsFromDisk(links); }
    void cleanupOrphanFavicons(const LinkList &) override { m_icons.cleanupOrphanFavicons(); }
    void loadSyncState() override {}
    void scheduleAutoSync() override;
    void systemDidWake() override {}
    void syncableSettingsDidChange() override;
    QString below(const char *name) const;

    QTemporaryDir m_home;
    SystemClock m_clock;
    test::FakePowerEvents m_power;
    std::unique_ptr<SqliteUserDefaults> m_defaults;
    Notifications m_notifications;
    DebugModeManager m_debugMode;
    InodeFileBookmarks m_bookmarks;
    MountVolumes m_volumes;
    FaviconSettings m_favicons;
    SnapshotStore m_snapshots;
    QtHttpClient m_http;
    FaviconStore m_icons;
    OneSecret m_secrets;
    test::FakeExchangeSettings m_settings;
    std::unique_ptr<LinkStore> m_links;
    std::unique_ptr<LinkExchange> m_exchange;
    std::unique_ptr<CloudContainer> m_container;
    std::unique_ptr<CloudSync> m_sync;
};

} // namespace orvelle::bench
