#pragma once

#include "app/WidgetJobs.h"
#include "platform/freedesktop/XdgAutostart.h"
#include "services/LaunchAtLoginManager.h"
#include "services/TipManager.h"
#include "services/UpdateManager.h"

namespace orvelle {

/// What Orvelle does beside its menu: looks for updates, asks for a tip, is
/// started at login. Main thread.
class UserServices
{
public:
    struct Surroundings {
        UserDefaults &defaults;
        Clock &clock;
        HttpClient &http;
        Alerts &alerts;
        Workspace &workspace;
        /// Brings the application's windows to the front.
        std::function<void()> activateApp;
    };
    explicit UserServices(const Surroundings &surroundings);

    void addTo(WidgetJobs &jobs);

    UpdateManager updates;
    TipManager tips;

    XdgAutostart autostart;
    LaunchAtLoginManager launchAtLogin;
};

} // namespace orvelle
