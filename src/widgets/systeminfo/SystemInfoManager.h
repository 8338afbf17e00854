#pragma once

#include "platform/HostStatistics.h"
#include "widgets/MonitorSchedule.h"
#include "widgets/MonitorSettings.h"
#include "widgets/systeminfo/SystemInfoData.h"

#include <QObject>

namespace orvelle {

/// The system widget: its settings, and the processor load, memory and disk
/// space of the moment. Main thread; samples are read beside it.
class SystemInfoManager : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        const PowerEvents &powerEvents;
        BackgroundSampler &sampler;
        /// Used on the sampler's thread, and outlives the sampler.
        const HostStatistics &host;
    };
    /// Reads the settings; samples nothing before startMonitoring().
    explicit SystemInfoManager(const Services &services, QObject *parent = nullptr);

    SystemInfoDisplayMode displayMode() const { return m_settings.displayMode(); }
    /// Begins or ends the sampling with the widget.
    void setDisplayMode(SystemInfoDisplayMode mode) { m_settings.setDisplayMode(mode); }
    bool isEnabled() const { return m_settings.isEnabled(); }
    bool menuBarOnly() const { return m_settings.menuBarOnly(); }
    void setMenuBarOnly(bool only) { m_settings.setMenuBarOnly(only); }

    /// Absent before the first sample.
    const std::optional<SystemInfoData> &systemInfo() const { return m_systemInfo; }

    void startMonitoring() { m_schedule.start(); }
    void stopMonitoring() { m_schedule.stop(); }
    /// While the menu is open.
    void startLiveRefresh() { m_schedule.startLive(true); }
    void stopLiveRefresh() { m_schedule.stopLive(); }

private:
    void follow(bool enabled);
    BackgroundSampler::Job makeJob();
    void publish(const SystemInfoData &data);

    Services m_services;
    MonitorSettings<SystemInfoDisplayMode> m_settings;
    std::optional<SystemInfoData> m_systemInfo;
    MonitorSchedule m_schedule;
};

/// The share of the time between two readings that the processors worked, in
/// percent. 0 when no time has passed.
double cpuLoad(const CpuTicks &before, const CpuTicks &now);

} // namespace orvelle
