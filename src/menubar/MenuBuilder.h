#pragma once

#include "menubar/Menu.h"
#include "platform/StatusItem.h"

namespace orvelle {

class LinkStore;
class StartupJobs;
class WidgetOrderManager;

/// Makes the menus from the state of the moment. Keeps nothing: a menu is
/// built anew each time it opens. Main thread.
class MenuBuilder
{
public:
    MenuBuilder(const LinkStore &links, const WidgetOrderManager &widgetOrder, StartupJobs &jobs);

    /// The tree, the enabled widgets, a mark when the synchronisation needs the
    /// user, the bottom row. First lets sync, weather and clipboard catch up, so
    /// that what it shows is current.
    Menu buildMainMenu() const;
    /// The same of what is known already, for a menu that is shown all the while.
    Menu currentMainMenu() const;
    /// Lets sync, weather and clipboard look for what is new.
    void letServicesCatchUp() const;
    /// The same without the bottom row and without the widgets that want to be
    /// in the status item's menu only.
    Menu buildLinksOnlyMenu() const;
    /// The menu of a right click: settings and quit, never the tree.
    Menu buildContextMenu() const;

private:
    void addLinks(Menu &menu) const;
    void addWidgets(Menu &menu, bool withMenuBarOnly) const;
    void addSyncMark(Menu &menu) const;

    const LinkStore &m_links;
    const WidgetOrderManager &m_widgetOrder;
    StartupJobs &m_jobs;
};

/// The context menu for tray hosts that draw it themselves. An entry's id is
/// its position counted from 1.
QList<HostMenuEntry> hostMenuEntries(const Menu &menu);

} // namespace orvelle
