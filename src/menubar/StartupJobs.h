#pragma once

#include "menubar/WidgetType.h"

#include <QString>

namespace orvelle {

/// What start-up and the opening menu ask of the widgets and services.
/// AppDelegate and MenuBarManager fix the order and the delays; who does the
/// work is wired in app/.
class StartupJobs
{
public:
    virtual ~StartupJobs() = default;

    virtual bool isWidgetEnabled(WidgetType widget) const = 0;
    /// Whether the widget shows in the status item's menu only, and not in the
    /// one that the global shortcut opens.
    virtual bool isMenuBarOnly(WidgetType widget) const = 0;
    virtual void startMonitoring(WidgetType widget) = 0;
    virtual void fetchAllFavicons() = 0;
    virtual void checkForUpdatesIfNeeded() = 0;
    virtual void recordLaunch() = 0;
    virtual void presentTipPromptIfNeeded() = 0;

    /// On every opening of the menu, in this order.
    virtual void checkSyncIfNeeded() = 0;
    virtual void refreshWeatherIfNeeded() = 0;
    virtual void checkClipboardNow() = 0;

    /// What the synchronisation needs the user for, as a short title; empty
    /// while it needs nobody.
    virtual QString syncNeedsUser() const { return {}; }

    /// While the menu is open.
    virtual void startLiveWidgets() = 0;
    virtual void stopLiveWidgets() = 0;

    virtual void setupGlobalShortcut() = 0;
    virtual void removeGlobalShortcut() = 0;
};

} // namespace orvelle
