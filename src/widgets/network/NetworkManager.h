#pragma once

#include "widgets/MonitorSchedule.h"
#include "widgets/MonitorSettings.h"
#include "widgets/network/NetworkSpeed.h"

#include <QObject>

namespace orvelle {

/// The network widget: its settings, the speed of the moment and the last few
/// before it. Main thread; counters are read beside it.
class NetworkManager : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype maxHistoryCount = 20;

    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        const PowerEvents &powerEvents;
        BackgroundSampler &sampler;
        /// Used on the sampler's thread, and outlives the sampler.
        NetworkCounters &counters;
    };
    /// Reads the settings; reads no counters before startMonitoring().
    explicit NetworkManager(const Services &services, QObject *parent = nullptr);

    NetworkDisplayMode displayMode() const { return m_settings.displayMode(); }
    /// Begins or ends the sampling with the widget.
    void setDisplayMode(NetworkDisplayMode mode) { m_settings.setDisplayMode(mode); }
    bool isEnabled() const { return m_settings.isEnabled(); }
    bool menuBarOnly() const { return m_settings.menuBarOnly(); }
    void setMenuBarOnly(bool only) { m_settings.setMenuBarOnly(only); }

    /// Absent before the first.
    const std::optional<NetworkSpeed> &currentSpeed() const { return m_currentSpeed; }
    /// Oldest first, at most maxHistoryCount; the last one is the current.
    const QList<NetworkSpeed> &speedHistory() const { return m_speedHistory; }

    /// Counts from now on: the first speed comes with the next sample.
    void startMonitoring() { m_schedule.start(); }
    void stopMonitoring() { m_schedule.stop(); }
    /// While the menu is open.
    void startLiveRefresh() { m_schedule.startLive(false); }
    void stopLiveRefresh() { m_schedule.stopLive(); }

private:
    void follow(bool enabled);
    BackgroundSampler::Job makeJob();
    void publish(const NetworkSpeed &speed);

    Services m_services;
    MonitorSettings<NetworkDisplayMode> m_settings;
    std::optional<NetworkSpeed> m_currentSpeed;
    QList<NetworkSpeed> m_speedHistory;
    MonitorSchedule m_schedule;
};

} // namespace orvelle
