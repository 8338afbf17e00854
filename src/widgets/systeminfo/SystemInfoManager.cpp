#include "widgets/systeminfo/SystemInfoManager.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QScopedValueRollback>

#include <cstring>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSystemInfo, "SystemInfoManager", QtInfoMsg)

QString displayModeKey()
{
    return u"SystemInfoDisplayMode"_s;
}
QString menuBarOnlyKey()
{
    return u"SystemInfoMenuBarOnly"_s;
}

/// Processors that were switched off and on again may count from anywhere.
double since(quint64 before, quint64 now)
{
    return now > before ? static_cast<double>(now - before) : 0;
}

double fetchCPUUsage(const HostStatistics &host, std::optional<CpuTicks> &previous)
{
    const auto ticks = host.cpuTicks();
    if (!ticks) {
        qCWarning(lcSystemInfo, "Failed to get CPU info: %d", ticks.error());
        return 0;
    }
    const double load = previous ? cpuLoad(*previous, *ticks) : 0;
    previous = *ticks;
    return load;
}

Capacity fetchRAMInfo(const HostStatistics &host)
{
    const auto memory = host.memory();
    if (memory)
        return *memory;
    qCWarning(lcSystemInfo, "Failed to get RAM info: %d", memory.error());
    return {};
}

Capacity fetchDiskInfo(const HostStatistics &host)
{
    const auto volume = host.volume(u"/"_s);
    if (volume)
        return *volume;
    qCWarning(lcSystemInfo, "Failed to get disk info: %s", std::strerror(volume.error()));
    return {};
}

} // namespace

double cpuLoad(const CpuTicks &before, const CpuTicks &now)
{
    const double busy = since(before.user, now.user) + since(before.system, now.system) + since(before.nice, now.nice);
    const double total = busy + since(before.idle, now.idle);
    return total > 0 ? busy / total * 100 : 0;
}

SystemInfoManager::SystemInfoManager(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_schedule(services.sampler, services.powerEvents, [this] { return makeJob(); })
{
    load();
    connect(&services.notifications, &Notifications::debugModeChanged, this, &SystemInfoManager::reload);
    connect(&services.notifications, &Notifications::syncableSettingsChanged, this, [this] {
        if (!m_announcing)
            rereadAfterImport();
    });
    connect(&services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const DebugModeManager &debug = m_services.debugMode;
        if (keys.contains(debug.key(displayModeKey())) || keys.contains(debug.key(menuBarOnlyKey())))
            reload();
    });
}

void SystemInfoManager::load()
{
    const UserDefaults &defaults = m_services.defaults;
    const QString raw = defaults.get<QString>(m_services.debugMode.key(displayModeKey())).value_or(QString());
    m_displayMode = systemInfoDisplayModeFromRawValue(raw).value_or(SystemInfoDisplayMode::Disabled);
    m_menuBarOnly = defaults.get<bool>(m_services.debugMode.key(menuBarOnlyKey())).value_or(true);
}

void SystemInfoManager::reload()
{
    const bool wasEnabled = isEnabled();
    load();
    followMode(wasEnabled);
    emit m_services.notifications.systemInfoChanged();
}

/// An import writes the stored settings past their manager.
void SystemInfoManager::rereadAfterImport()
{
    const auto mode = m_displayMode;
    const bool menuBarOnly = m_menuBarOnly;
    load();
    if (mode == m_displayMode && menuBarOnly == m_menuBarOnly)
        return;
    followMode(mode != SystemInfoDisplayMode::Disabled);
    emit m_services.notifications.systemInfoChanged();
}

void SystemInfoManager::announceSetting()
{
    emit m_services.notifications.systemInfoChanged();
    const QScopedValueRollback own(m_announcing, true);
    emit m_services.notifications.syncableSettingsChanged();
}

void SystemInfoManager::followMode(bool wasEnabled)
{
    if (isEnabled() == wasEnabled)
        return;
    if (isEnabled())
        startMonitoring();
    else
        stopMonitoring();
}

void SystemInfoManager::setDisplayMode(SystemInfoDisplayMode mode)
{
    if (mode == m_displayMode)
        return;
    const bool wasEnabled = isEnabled();
    m_displayMode = mode;
    // A failed write is reported by the store itself; the mode holds for this run.
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(displayModeKey()), rawValue(mode)));
    followMode(wasEnabled);
    announceSetting();
}

void SystemInfoManager::setMenuBarOnly(bool only)
{
    if (only == m_menuBarOnly)
        return;
    m_menuBarOnly = only;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(menuBarOnlyKey()), only));
    announceSetting();
}

BackgroundSampler::Job SystemInfoManager::makeJob()
{
    // Only ever touched by the job, which runs one at a time.
    auto previousCPUTicks = std::make_shared<std::optional<CpuTicks>>();
    return [this, &host = m_services.host, previousCPUTicks](double) -> BackgroundSampler::Deliver {
        SystemInfoData data;
        data.cpuUsage = fetchCPUUsage(host, *previousCPUTicks);
        const Capacity memory = fetchRAMInfo(host);
        const Capacity disk = fetchDiskInfo(host);
        data.freeRAM = memory.free;
        data.totalRAM = memory.total;
        data.freeDisk = disk.free;
        data.totalDisk = disk.total;
        // Dropped undelivered when the schedule, and with it this, has gone.
        return [this, data] { publish(data); };
    };
}

void SystemInfoManager::publish(const SystemInfoData &data)
{
    m_systemInfo = data;
    emit m_services.notifications.systemInfoChanged();
}

} // namespace orvelle
