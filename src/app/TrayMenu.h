#pragma once

#include "menubar/MenuBuilder.h"
#include "ui/menu/HostMenuContent.h"

namespace orvelle {

class Notifications;
class WidgetJobs;

/// The whole menu in the hands of the tray's host, for desktops on which no
/// program can place a menu itself. Main thread.
class TrayMenu
{
public:
    struct Services {
        const LinkStore &links;
        const WidgetOrderManager &widgetOrder;
        WidgetJobs &jobs;
        const Notifications &notifications;
        Clock &clock;
        std::function<void(const MenuAction &)> perform;
    };
    explicit TrayMenu(const Services &services);

    /// Before the item is shown.
    void giveTo(StatusItem &item) { item.setHostMenuSource(m_content); }

private:
    HostMenuContent::Doors doors(const Services &services);
    void follow(const Services &services);

    MenuBuilder m_builder;
    HostMenuContent m_content;
};

} // namespace orvelle
