#pragma once

#include "base/Notifications.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeSettings.h"
#include "links/exchange/LinkExchange.h"
#include "platform/SecretStore.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakeCloudContainer.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "sync/CloudSync.h"
#include "sync/SyncRunner.h"

#include <QTemporaryDir>

#include <deque>

namespace orvelle::test {

/// Does the work at once, or when the test says so, and answers from the clock.
class FakeSyncRunner : public SyncRunner
{
public:
    explicit FakeSyncRunner(FakeClock &clock) : m_clock(clock) {}

    void run(std::function<void()> work, QObject *context, std::function<void()> done) override
    {
        m_waiting.push_back([this, work = std::move(work), guard = QPointer<QObject>(context), done = std::move(done)] {
            work();
            if (guard)
                m_clock.after(std::chrono::milliseconds(0), guard, done);
        });
        if (!m_held)
            release();
    }
    /// Work that is asked for from now on waits.
    void hold() { m_held = true; }
    void release()
    {
        m_held = false;
        while (!m_waiting.empty() && !m_held) {
            const auto next = std::move(m_waiting.front());
            m_waiting.pop_front();
            next();
        }
    }
    std::size_t waiting() const { return m_waiting.size(); }

private:
    FakeClock &m_clock;
    bool m_held = false;
    std::deque<std::function<void()>> m_waiting;
};

/// A keyring in memory.
class FakeSecretStore : public SecretStore
{
public:
    explicit FakeSecretStore(FakeClock &clock) : m_clock(clock) {}

    QMap<QString, QByteArray> secrets; ///< by key and account
    std::optional<SecretError> failure;
    std::chrono::milliseconds latency{0};
    int lookups = 0;

    static QString place(const QString &key, const QString &account) { return key + u'/' + account; }

    void lookup(const QString &key, const QString &account,
                std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) override
    {
        ++lookups;
        later([this, at = place(key, account), done] {
            if (failure)
                done(*failure);
            else
                done(secrets.contains(at) ? std::optional(secrets.value(at)) : std::nullopt);
        });
    }
    void store(const QString &key, const QString &account, const QString &, const QByteArray &secret,
               std::function<void(const Result<Nothing, SecretError> &)> done) override
    {
        later([this, at = place(key, account), secret, done] {
            if (failure) {
                done(*failure);
                return;
            }
            secrets.insert(at, secret);
            done(Nothing{});
        });
    }
    void remove(const QString &key, const QString &account,
                std::function<void(const Result<Nothing, SecretError> &)> done) override
    {
        later([this, at = place(key, account), done] {
            secrets.remove(at);
            done(Nothing{});
        });
    }

private:
    void later(std::function<void()> what) { m_clock.after(latency, &m_alive, std::move(what)); }

    FakeClock &m_clock;
    QObject m_alive;
};

/// The settings that travel, but for one of them none.
class FakeExchangeSettings : public ExchangeSettings
{
public:
    FakeExchangeSettings(UserDefaults &defaults, DebugModeManager &debugMode, Notifications &notifications,
                         const QString &machine)
        : m_defaults(defaults), m_debugMode(debugMode), m_notifications(notifications), m_machine(machine)
    {
    }

    void gather(ExportData &document) const override
    {
        document.lastModifiedBy = m_machine;
        document.settingsModifiedAt =
            m_defaults.get<Timestamp>(m_debugMode.key(QStringLiteral("orvelle_settingsModifiedAt")));
        document.generalSettings.emplace();
        document.generalSettings->menuletIcon = icon();
    }
    bool apply(const ExportData &document) override
    {
        if (document.generalSettings && document.generalSettings->menuletIcon)
            setIcon(*document.generalSettings->menuletIcon);
        return false;
    }
    QString icon() const { return m_defaults.get<QString>(iconKey()).value_or(QStringLiteral("link")); }
    /// As an editor of settings does it.
    void setIcon(const QString &icon)
    {
        if (icon == this->icon() || !m_defaults.write(iconKey(), icon))
            return;
        emit m_notifications.syncableSettingsChanged();
    }

private:
    QString iconKey() const { return m_debugMode.key(QStringLiteral("MenuletIcon")); }

    UserDefaults &m_defaults;
    DebugModeManager &m_debugMode;
    Notifications &m_notifications;
    QString m_machine;
};

/// One installation with its settings store, which survives a restart, and its
/// view of a shared place.
class SyncMachine
{
public:
    SyncMachine(FakeClock &clock, FakeCloudPlace &place, const QString &name, bool enabled = true)
        : container(place), runner(clock), secrets(clock), m_clock(clock), m_name(name)
    {
        if (enabled && !defaults.write(CloudSync::autoSyncEnabledBaseKey(), true))
            qFatal("the settings store in memory failed");
        start();
    }

    /// Ends the program, as it stands, and starts it again.
    void restart()
    {
        stop();
        start();
    }
    void stop() { m_run.reset(); }
    void start()
    {
        m_run = std::make_unique<Run>(*this);
        m_run->sync.setContainer(&container);
    }

    Timestamp now() const { return m_clock.now(); }
    LinkStore &links() { return m_run->links; }
    CloudSync &sync() { return m_run->sync; }
    FakeExchangeSettings &settings() { return m_run->settings; }
    LinkExchange &exchange() { return m_run->exchange; }
    DebugModeManager &debugMode() { return m_run->debugMode; }
    Notifications &notifications() { return m_run->notifications; }
    SnapshotStore &snapshots() { return m_run->snapshots; }
    QString snapshotFolder() const { return m_folder.filePath(QStringLiteral("snapshots")); }

    FakeUserDefaults defaults;
    FakeCloudContainer container;
    FakeSyncRunner runner;
    FakeSecretStore secrets;
    FakeFileBookmarks bookmarks;
    FakePowerEvents power;

private:
    /// What lives as long as the program runs.
    struct Run : LinkStoreHooks {
        explicit Run(SyncMachine &machine)
            : debugMode(machine.defaults, notifications),
              snapshots(machine.snapshotFolder(), machine.m_clock),
              links({machine.defaults, debugMode, notifications, machine.m_clock, machine.bookmarks, volumes,
                     machine.power, snapshots, *this}),
              settings(machine.defaults, debugMode, notifications, machine.m_name),
              exchange(links, settings, machine.bookmarks, machine.m_clock),
              sync({links, exchange, settings, machine.bookmarks, machine.defaults, debugMode, notifications,
                    machine.m_clock, snapshots, machine.secrets, &machine.runner})
        {
            engine = &sync;
            QObject::connect(&notifications, &Notifications::debugModeChanged, &sync,
                             [this] { sync.reloadForModeChange(); });
        }
        ~Run() override { engine = nullptr; }

        void hydrateFavicons(LinkList &) override {}
        void cleanupOrphanFavicons(const LinkList &) override {}
        void loadSyncState() override {}
        void scheduleAutoSync() override
        {
            if (engine)
                engine->scheduleAutoSync();
        }
        void systemDidWake() override
        {
            if (engine)
                engine->handleSystemDidWake();
        }
        void syncableSettingsDidChange() override
        {
            if (engine)
                engine->syncableSettingsDidChange();
        }

        CloudSync *engine = nullptr;
        Notifications notifications;
        DebugModeManager debugMode;
        FakeVolumes volumes;
        SnapshotStore snapshots;
        LinkStore links;
        FakeExchangeSettings settings;
        LinkExchange exchange;
        CloudSync sync;
    };

    FakeClock &m_clock;
    QString m_name;
    QTemporaryDir m_folder;
    std::unique_ptr<Run> m_run;
};

} // namespace orvelle::test
