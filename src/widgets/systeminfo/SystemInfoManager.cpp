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

/// What is carried from one sample to the next.
struct Memory {
    std::optional<CpuTicks> ticks;
    FailureNotice cpuFailure;
    FailureNotice memoryFailure;
    FailureNotice diskFailure;
};

double fetchCPUUsage(const HostStatistics &host, Memory &before)
{
    const auto ticks = host.cpuTicks();
    if (before.cpuFailure.begins(!ticks))
        qCWarning(lcSystemInfo, "Failed to get CPU info: %d", ticks.error());
    if (!ticks)
        return 0;
    const double load = before.ticks ? cpuLoad(*before.ticks, *ticks) : 0;
    before.ticks = *ticks;
    return load;
}

Capacity fetchRAMInfo(const HostStatistics &host, Memory &before)
{
    const auto memory = host.memory();
    if (before.memoryFailure.begins(!memory))
        qCWarning(lcSystemInfo, "Failed to get RAM info: %d", memory.error());
    return memory ? *memory : Capacity{};
}

Capacity fetchDiskInfo(const HostStatistics &host, Memory &before)
{
    const auto volume = host.volume(u"/"_s);
    if (before.diskFailure.begins(!volume))
        qCWarning(lcSystemInfo, "Failed to get disk info: %s", std::strerror(volume.error()));
    return volume ? *volume : Capacity{};
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
    auto before = std::make_shared<Memory>();
    return [this, &host = m_services.host, before](double) -> BackgroundSampler::Deliver {
        SystemInfoData data;
        data.cpuUsage = fetchCPUUsage(host, *before);
        const Capacity memory = fetchRAMInfo(host, *before);
        const Capacity disk = fetchDiskInfo(host, *before);
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
