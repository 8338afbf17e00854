#pragma once

#include "widgets/calendar/CalendarEventInfo.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace orvelle {

class Clock;
class DebugModeManager;
class Notifications;
class Timer;
class UserDefaults;

/// The calendar widget: its settings and the next events. Follows the stored
/// settings also when an import, another process or the debug mode changes
/// them, and watches the calendars only while it is on. Main thread.
class CalendarManager : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds debounce{5000};
    static constexpr double leastSecondsBetweenRefreshes = 60;
    static constexpr int searchDays = 7;
    static constexpr qint64 mostEvents = 20; ///< what the settings offer

    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Clock &clock;
        CalendarStore &store;
    };
    /// Reads the settings and the access; fetches nothing before startMonitoring().
    explicit CalendarManager(const Services &services, QObject *parent = nullptr);
    ~CalendarManager() override;

    bool isEnabled() const { return m_settings.isEnabled; }
    /// Starts or stops the monitoring with the widget.
    void setEnabled(bool enabled);
    bool menuBarOnly() const { return m_settings.menuBarOnly; }
    void setMenuBarOnly(bool only);
    /// A key of the colour table.
    const QString &iconColor() const { return m_settings.iconColor; }
    void setIconColor(const QString &colorKey);
    /// At least 1.
    qint64 maxEvents() const { return m_settings.maxEvents; }
    void setMaxEvents(qint64 count);
    CalendarScope displayScope() const { return m_settings.displayScope; }
    void setDisplayScope(CalendarScope scope);
    bool hidesDeclined() const { return m_settings.hidesDeclined; }
    void setHidesDeclined(bool hides);

    bool accessGranted() const { return m_accessGranted; }
    const QList<CalendarEventInfo> &nextEvents() const { return m_nextEvents; }

    void requestAccess();
    void startMonitoring();
    void stopMonitoring();
    /// Fetches unless that was done in the last minute.
    void refreshIfNeeded();
    /// Asks the store; the list changes, and is announced, with its answer.
    void fetchNextEvent();
    QString formattedEventTime(const CalendarEventInfo &event) const;

private:
    struct Settings {
        bool isEnabled = false;
        bool menuBarOnly = false;
        QString iconColor;
        qint64 maxEvents = 1;
        CalendarScope displayScope = CalendarScope::Today;
        bool hidesDeclined = false;
        friend bool operator==(const Settings &, const Settings &) = default;
    };
    Settings stored() const;
    void migrate();
    void reload();
    void observeSettings();
    void follow(const Settings &before);
    void readAccess();
    void fetchSoon();
    void publish(const QList<CalendarEventInfo> &events);
    void armRefresh();
    void changed(bool syncable);

    Services m_services;
    Settings m_settings;
    bool m_accessGranted = false;
    bool m_monitoring = false;
    bool m_posting = false;
    quint64 m_lastQuestion = 0; ///< an answer to an earlier one comes too late
    QList<CalendarEventInfo> m_nextEvents;
    std::optional<Timestamp> m_lastFetchDate;
    std::unique_ptr<Timer> m_refreshTimer;
    std::unique_ptr<Timer> m_debounceTimer;
};

} // namespace orvelle
