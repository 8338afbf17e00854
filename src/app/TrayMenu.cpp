#include "app/TrayMenu.h"

#include "app/WidgetJobs.h"
#include "base/Notifications.h"
#include "links/LinkStore.h"

namespace orvelle {

TrayMenu::TrayMenu(const Services &services)
    : m_builder(services.links, services.widgetOrder, services.jobs), m_content(doors(services), services.clock)
{
    follow(services);
}

HostMenuContent::Doors TrayMenu::doors(const Services &services)
{
    return {[this] { return m_builder.currentMainMenu(); },
            [this] { m_builder.letServicesCatchUp(); },
            [this] { return m_builder.buildContextMenu(); },
            &childEntries,
            [&jobs = services.jobs](WidgetType type, QWidget *parent) { return jobs.makeRow(type, parent); },
            services.perform,
            [&jobs = services.jobs](bool live) { live ? jobs.startLiveWidgets() : jobs.stopLiveWidgets(); }};
}

/// What changes each second is looked at only while the menu is shown.
void TrayMenu::follow(const Services &services)
{
    QObject::connect(&services.links, &LinkStore::linksChanged, &m_content, &HostMenuContent::contentChanged);
    QObject::connect(&services.links, &LinkStore::faviconsChanged, &m_content, &HostMenuContent::contentChanged);
    for (const auto signal :
         {&Notifications::widgetOrderChanged, &Notifications::quickLaunchChanged, &Notifications::weatherChanged,
          &Notifications::clipboardChanged, &Notifications::calendarChanged, &Notifications::timerChanged,
          &Notifications::syncStatusChanged, &Notifications::debugModeChanged, &Notifications::generalSettingsChanged})
        QObject::connect(&services.notifications, signal, &m_content, &HostMenuContent::contentChanged);
}

} // namespace orvelle
