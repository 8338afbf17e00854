#include "Replica.h"

using namespace Qt::StringLiterals;

namespace orvelle::test {

Replica::Replica(FakeClock &world, FakeCloudPlace &place, const QString &folder, double offset)
    : clock(world, offset), container(place), secrets(world), m_runner(world), m_snapshots(folder, clock)
{
    std::ignore = defaults.write(CloudSync::autoSyncEnabledBaseKey(), true);
    std::ignore = defaults.write(DebugModeManager::debugPrefix() + CloudSync::autoSyncEnabledBaseKey(), true);
    restart();
}

Replica::~Replica()
{
    stop();
}

void Replica::stop()
{
    m_sync.reset();
    m_exchange.reset();
    m_store.reset();
    m_settings.reset();
    m_debugMode.reset();
}

void Replica::restart()
{
    stop();
    m_debugMode = std::make_unique<DebugModeManager>(defaults, m_notifications);
    m_store = std::make_unique<LinkStore>(LinkStore::Services{defaults, *m_debugMode, m_notifications, clock,
                                                              m_bookmarks, m_volumes, m_power, m_snapshots, *this});
    m_settings = std::make_unique<FakeExchangeSettings>(defaults, *m_debugMode, m_notifications, u"machine"_s);
    m_exchange = std::make_unique<LinkExchange>(*m_store, *m_settings, m_bookmarks, clock);
    m_sync = std::make_unique<CloudSync>(CloudSync::Services{*m_store, *m_exchange, *m_settings, m_bookmarks, defaults,
                                                             *m_debugMode, m_notifications, clock, m_snapshots, secrets,
                                                             &m_runner});
    m_sync->setContainer(&container);
    m_sync->startSyncFileMonitoring();
    QObject::connect(&m_notifications, &Notifications::debugModeChanged, m_sync.get(),
                     [this] { m_sync->reloadForModeChange(); });
}

void Replica::loadSyncState()
{
    if (m_sync)
        m_sync->loadSyncState();
}

void Replica::scheduleAutoSync()
{
    if (m_sync)
        m_sync->scheduleAutoSync();
}

void Replica::systemDidWake()
{
    if (m_sync)
        m_sync->handleSystemDidWake();
}

void Replica::syncableSettingsDidChange()
{
    if (m_sync)
        m_sync->syncableSettingsDidChange();
}

} // namespace orvelle::test
