#pragma once

#include "app/CalendarFolders.h"
#include "app/WidgetJobs.h"
#include "menubar/QuickLaunchManager.h"
#include "platform/freedesktop/BusNotifications.h"
#include "platform/freedesktop/CanberraSounds.h"
#include "platform/freedesktop/GioApplications.h"
#include "platform/freedesktop/NetlinkCounters.h"
#include "platform/freedesktop/ProcHostStatistics.h"
#include "platform/freedesktop/ThreadSampler.h"
#include "platform/freedesktop/calendars/EvolutionCalendars.h"
#include "platform/freedesktop/calendars/GioCalendarApplication.h"
#include "platform/freedesktop/calendars/IcsCalendars.h"
#include "ui/settings/WidgetSection.h"
#include "widgets/calendar/CalendarManager.h"
#include "widgets/calendar/CombinedCalendars.h"
#include "widgets/clipboard/ClipboardManager.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"

#include <memory>

namespace orvelle {

class Alerts;
class Clock;
class DebugModeManager;
class FolderChooser;
class Notifications;
class UserDefaults;
class Workspace;

/// The widgets' managers with what they stand on, and the tables by which the
/// menu and the settings find them. Main thread.
class WidgetServices
{
public:
    /// What the widgets need of the rest. All of it outlives this.
    struct Surroundings {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        const PowerEvents &powerEvents;
        Clock &clock;
        Alerts &alerts;
        StartupJobs &otherJobs;
        GlobalShortcut &shortcut;
        QDBusConnection sessionBus;
        /// Brings the application to the front.
        std::function<void()> activateApp;
        /// Closes the menu if it is open.
        std::function<void()> closeMenu;
        Workspace &workspace;
        FolderChooser &folderChooser;
    };
    explicit WidgetServices(const Surroundings &surroundings);

    Pasteboard &pasteboard() const { return *m_pasteboard; }

private:
    void addSystemInfo();
    void addNetwork();
    void addTimer();
    void addClipboard();
    void addQuickLaunch();
    void addCalendar();

    Surroundings m_surroundings;
    ProcHostStatistics m_host;
    NetlinkCounters m_counters;
    ThreadSampler m_sampler; ///< uses the two above
    CanberraSounds m_sounds;
    BusNotifications m_messages;
    std::unique_ptr<Pasteboard> m_pasteboard;
    ClipboardCache m_clipboardCache;
    GioApplications m_applications;
    EvolutionCalendars m_serverCalendars;
    IcsCalendars m_fileCalendars;
    CombinedCalendars m_calendars{{&m_serverCalendars, &m_fileCalendars}};
    CalendarFolders m_calendarFolders;
    GioCalendarApplication m_calendarApplication;

public:
    SystemInfoManager systemInfo;
    NetworkManager network;
    TimerManager timer;
    ClipboardManager clipboard;
    QuickLaunchManager quickLaunch;
    CalendarManager calendar;
    WidgetJobs jobs;
    WidgetSectionTable sections;
};

} // namespace orvelle
