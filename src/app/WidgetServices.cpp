#include "app/WidgetServices.h"

#include "app/Folders.h"
#include "base/Notifications.h"
#include "links/richtext/RtfReader.h"
#include "platform/Workspace.h"
#include "platform/freedesktop/DesktopPasteboard.h"
#include "ui/menu/rows/CalendarRowView.h"
#include "ui/menu/rows/ClipboardRowView.h"
#include "ui/menu/rows/NetworkRowView.h"
#include "ui/menu/rows/QuickLaunchRowView.h"
#include "ui/menu/rows/SystemInfoRowView.h"
#include "ui/menu/rows/TimerRowView.h"
#include "ui/settings/CalendarSection.h"
#include "ui/settings/ClipboardSection.h"
#include "ui/settings/NetworkSection.h"
#include "ui/settings/QuickLaunchSection.h"
#include "ui/settings/SystemInfoSection.h"
#include "ui/settings/TimerSection.h"

namespace orvelle {

namespace {

/// The text of RTF as the notes read it.
QString richPreview(const QByteArray &rtf)
{
    const auto document = readRtf(rtf);
    return document ? document->text.toPlainText() : QString();
}

/// Who the user is in the lists of invited people, as far as the session says.
QStringList ownMailAddresses()
{
    const QString address = qEnvironmentVariable("EMAIL").trimmed().toLower();
    return address.contains(u'@') ? QStringList{address} : QStringList();
}

} // namespace

WidgetServices::WidgetServices(const Surroundings &surroundings)
    : m_surroundings(surroundings),
      m_messages(surroundings.sessionBus),
      m_pasteboard(desktopPasteboard(surroundings.clock)),
      m_clipboardCache(temporaryFolders()),
      m_serverCalendars(ownMailAddresses()),
      m_fileCalendars({}, ownMailAddresses()),
      m_calendarFolders(surroundings.defaults, m_fileCalendars),
      systemInfo({surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.powerEvents,
                  m_sampler, m_host}),
      network({surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.powerEvents,
               m_sampler, m_counters}),
      timer({surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.clock,
             surroundings.alerts, m_sounds, m_messages, surroundings.activateApp}),
      clipboard({surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.powerEvents,
                 surroundings.clock, *m_pasteboard, m_clipboardCache, &richPreview}),
      quickLaunch({surroundings.defaults, surroundings.debugMode, surroundings.notifications, m_applications}),
      calendar(
          {surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.clock, m_calendars}),
      jobs(surroundings.otherJobs, surroundings.shortcut)
{
    addSystemInfo();
    addNetwork();
    addTimer();
    addClipboard();
    addQuickLaunch();
    addCalendar();
}

void WidgetServices::addSystemInfo()
{
    Notifications &notifications = m_surroundings.notifications;
    jobs.add(WidgetType::SystemInfo,
             {[this] { return systemInfo.isEnabled(); }, [this] { return systemInfo.menuBarOnly(); },
              [this] { systemInfo.startMonitoring(); }, [this] { systemInfo.startLiveRefresh(); },
              [this] { systemInfo.stopLiveRefresh(); },
              [this, &notifications](QWidget *parent) -> QWidget * {
                  return new SystemInfoRowView(systemInfo, notifications, parent);
              }});
    sections.insert(WidgetType::SystemInfo, [this, &notifications](QWidget *parent) {
        return new SystemInfoSection(systemInfo, notifications, parent);
    });
}

void WidgetServices::addNetwork()
{
    Notifications &notifications = m_surroundings.notifications;
    jobs.add(WidgetType::Network, {[this] { return network.isEnabled(); }, [this] { return network.menuBarOnly(); },
                                   [this] { network.startMonitoring(); }, [this] { network.startLiveRefresh(); },
                                   [this] { network.stopLiveRefresh(); },
                                   [this, &notifications](QWidget *parent) -> QWidget * {
                                       return new NetworkRowView(network, notifications, parent);
                                   }});
    sections.insert(WidgetType::Network, [this, &notifications](QWidget *parent) {
        return new NetworkSection(network, notifications, parent);
    });
}

void WidgetServices::addTimer()
{
    Notifications &notifications = m_surroundings.notifications;
    Clock &clock = m_surroundings.clock;
    jobs.add(WidgetType::Timer, {[this] { return timer.isEnabled(); },
                                 [this] { return timer.menuBarOnly(); },
                                 {},
                                 {},
                                 {},
                                 [this, &notifications, &clock](QWidget *parent) -> QWidget * {
                                     return new TimerRowView(timer, notifications, clock, parent);
                                 }});
    sections.insert(WidgetType::Timer,
                    [this, &notifications](QWidget *parent) { return new TimerSection(timer, notifications, parent); });
}

void WidgetServices::addClipboard()
{
    Notifications &notifications = m_surroundings.notifications;
    jobs.add(WidgetType::Clipboard, {[this] { return clipboard.isEnabled(); },
                                     [this] { return clipboard.menuBarOnly(); },
                                     [this] { clipboard.startMonitoring(); },
                                     {},
                                     {},
                                     [this, &notifications](QWidget *parent) -> QWidget * {
                                         return new ClipboardRowView(clipboard, notifications, m_surroundings.closeMenu,
                                                                     parent);
                                     },
                                     [this] { clipboard.checkNow(); }});
    sections.insert(WidgetType::Clipboard, [this, &notifications](QWidget *parent) {
        return new ClipboardSection(clipboard, notifications, parent);
    });
}

void WidgetServices::addQuickLaunch()
{
    Notifications &notifications = m_surroundings.notifications;
    const QuickLaunchRowView::Actions actions{[this](int slot) {
                                                  m_surroundings.closeMenu();
                                                  quickLaunch.launchApp(slot);
                                              },
                                              [this, &notifications] {
                                                  m_surroundings.closeMenu();
                                                  emit notifications.openAppSettings();
                                              }};
    jobs.add(WidgetType::QuickLaunch, {[this] { return quickLaunch.isEnabled(); },
                                       [] { return false; },
                                       {},
                                       {},
                                       {},
                                       [this, &notifications, actions](QWidget *parent) -> QWidget * {
                                           return new QuickLaunchRowView(quickLaunch, m_applications, notifications,
                                                                         actions, parent);
                                       }});
    sections.insert(WidgetType::QuickLaunch, [this, &notifications](QWidget *parent) {
        return new QuickLaunchSection(quickLaunch, m_applications, notifications, parent);
    });
}

void WidgetServices::addCalendar()
{
    Notifications &notifications = m_surroundings.notifications;
    jobs.add(WidgetType::Calendar,
             {[this] { return calendar.isEnabled(); },
              [this] { return calendar.menuBarOnly(); },
              [this] { calendar.startMonitoring(); },
              [this] {
                  if (calendar.isEnabled())
                      calendar.refreshIfNeeded();
              },
              {},
              [this, &notifications](QWidget *parent) -> QWidget * {
                  return new CalendarRowView(calendar, notifications,
                                             {m_surroundings.closeMenu, [this] { m_calendarApplication.open(); },
                                              [&notifications] { emit notifications.openAppSettings(); },
                                              [this](const QUrl &url) { m_surroundings.workspace.openUrl(url); }},
                                             parent);
              }});
    sections.insert(WidgetType::Calendar, [this, &notifications](QWidget *parent) {
        return new CalendarSection(calendar, notifications,
                                   {[this] { return m_calendarFolders.folders(); },
                                    [this](const QStringList &folders) { m_calendarFolders.setFolders(folders); }},
                                   m_surroundings.folderChooser, parent);
    });
}

} // namespace orvelle
