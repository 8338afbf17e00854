#pragma once

#include "base/Notifications.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakeHost.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"

namespace orvelle::test {

/// What the widgets' managers stand on, with the announcements counted.
struct WidgetWorld {
    FakeClock clock;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakePowerEvents power;
    FakeSampler sampler{clock};
    FakeHostStatistics host;
    FakeNetworkCounters counters;
    FakeAlerts alerts;
    FakeSounds sounds;
    FakeDesktopNotifications desktop;
    int activated = 0;
    int changes = 0;  ///< of the widget under test
    int syncable = 0; ///< syncableSettingsChanged

    explicit WidgetWorld(void (Notifications::*changed)())
    {
        QObject::connect(&notifications, changed, [this] { ++changes; });
        QObject::connect(&notifications, &Notifications::syncableSettingsChanged, [this] { ++syncable; });
    }
};

} // namespace orvelle::test
