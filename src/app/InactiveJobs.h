#pragma once

#include "menubar/StartupJobs.h"

namespace orvelle {

/// The widgets and services of a version that has none of them yet: no widget
/// is enabled, nothing is fetched, checked or registered.
class InactiveJobs : public StartupJobs
{
public:
    bool isWidgetEnabled(WidgetType) const override { return false; }
    bool isMenuBarOnly(WidgetType) const override { return false; }
    void startMonitoring(WidgetType) override {}
    void fetchAllFavicons() override {}
    void checkForUpdatesIfNeeded() override {}
    void recordLaunch() override {}
    void presentTipPromptIfNeeded() override {}
    void checkSyncIfNeeded() override {}
    void refreshWeatherIfNeeded() override {}
    void checkClipboardNow() override {}
    void startLiveWidgets() override {}
    void stopLiveWidgets() override {}
    void setupGlobalShortcut() override {}
    void removeGlobalShortcut() override {}
};

} // namespace orvelle
