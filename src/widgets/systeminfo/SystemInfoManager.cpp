#include "widgets/systeminfo/SystemInfoManager.h"

#include <QLoggingCategory>

#include <cstring>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSystemInfo, "SystemInfoManager", QtInfoMsg)

const MonitorSettings<SystemInfoDisplayMode>::Kind &settingsKind()
{
    static const MonitorSettings<SystemInfoDisplayMode>::Kind kind{
        u"SystemInfoDisplayMode"_s, u"SystemInfoMenuBarOnly"_s, &systemInfoDisplayModeFromRawValue,
        &Notifications::systemInfoChanged};
    return kind;
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
      m_settings({services.defaults, services.debugMode, services.notifications}, settingsKind(),
                 [this](bool enabled) { follow(enabled); }),
      m_schedule(services.sampler, services.powerEvents, [this] { return makeJob(); })
{
}

void SystemInfoManager::follow(bool enabled)
{
    if (enabled)
        startMonitoring();
    else
        stopMonitoring();
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
