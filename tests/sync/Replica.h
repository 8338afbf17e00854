#pragma once

#include "base/Notifications.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ExchangeSettings.h"
#include "links/exchange/LinkExchange.h"
#include "platform/SecretStore.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakeCloudContainer.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "support/SyncMachine.h"
#include "sync/CloudSync.h"
#include "sync/SyncRunner.h"

#include <QTemporaryDir>

#include <memory>

namespace orvelle::test {

/// A machine's own clock: the world's time, off by something.
class OwnClock : public Clock
{
public:
    OwnClock(FakeClock &world, double offset_) : offset(offset_), m_world(world) {}

    double offset;

    Timestamp now() const override { return m_world.now() + offset; }
    std::unique_ptr<Timer> singleShot(std::chrono::milliseconds delay, std::function<void()> fire) override
    {
        return m_world.singleShot(delay, std::move(fire));
    }
    std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, std::function<void()> fire) override
    {
        return m_world.repeating(period, std::move(fire));
    }
    std::unique_ptr<Timer> atDate(Timestamp date, std::function<void()> fire) override
    {
        return m_world.atDate(date + -offset, std::move(fire));
    }
    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> fire) override
    {
        m_world.after(delay, context, std::move(fire));
    }

private:
    FakeClock &m_world;
};

/// Work takes some of the world's time.
class ClockedRunner : public SyncRunner
{
public:
    explicit ClockedRunner(FakeClock &clock) : m_clock(clock) {}
    void run(std::function<void()> work, QObject *context, std::function<void()> done) override
    {
        m_clock.after(std::chrono::milliseconds(20), context, [work = std::move(work), done = std::move(done)] {
            work();
            done();
        });
    }

private:
    FakeClock &m_clock;
};

/// One machine with everything that survives a restart of the program.
class Replica : private LinkStoreHooks
{
public:
    Replica(FakeClock &world, FakeCloudPlace &place, const QString &folder, double offset);
    ~Replica() override;

    void restart();

    void stop();
    LinkStore &store() { return *m_store; }
    CloudSync &sync() { return *m_sync; }
    FakeExchangeSettings &settings() { return *m_settings; }
    const LinkList &links() const { return m_store->links(); }
    bool isInDebugMode() const { return m_debugMode->isDebugMode(); }
    void toggleDebugMode() { m_debugMode->toggle(); }

    OwnClock clock;
    FakeUserDefaults defaults;
    FakeCloudContainer container;
    FakeSecretStore secrets;

private:
    void hydrateFavicons(LinkList &) override {}
    void cleanupOrphanFavicons(const LinkList &) override {}
    void loadSyncState() override;
    void scheduleAutoSync() override;
    void systemDidWake() override;
    void syncableSettingsDidChange() override;

    Notifications m_notifications;
    FakeFileBookmarks m_bookmarks;
    FakeVolumes m_volumes;
    FakePowerEvents m_power;
    ClockedRunner m_runner;
    SnapshotStore m_snapshots;
    std::unique_ptr<DebugModeManager> m_debugMode;
    std::unique_ptr<FakeExchangeSettings> m_settings;
    std::unique_ptr<LinkStore> m_store;
    std::unique_ptr<LinkExchange> m_exchange;
    std::unique_ptr<CloudSync> m_sync;
};

} // namespace orvelle::test
