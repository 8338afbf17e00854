#pragma once

#include "menubar/QuickLaunchManager.h"
#include "support/FakeApplications.h"
#include "support/FakeCalendarStore.h"
#include "support/FakeHost.h"
#include "support/FakeHttp.h"
#include "support/FakePasteboard.h"
#include "support/FakePlaces.h"
#include "support/FakeSyncControl.h"
#include "ui/UiWorld.h"
#include "ui/menu/MenuPopup.h"
#include "widgets/calendar/CalendarManager.h"
#include "widgets/clipboard/ClipboardManager.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"
#include "widgets/weather/WeatherManager.h"

#include <memory>

namespace orvelle::test {

/// A profile in which everything is in use: all widgets on, a tree with every
/// kind of item, a synchronisation that asks something.
struct LooksWorld : UiWorld {
    FakeSampler sampler{clock};
    FakeHostStatistics host;
    FakeNetworkCounters counters;
    FakeSounds sounds;
    FakeDesktopNotifications messages;
    FakeHttp http;
    FakeLocationService location;
    FakeGeocoder geocoder;
    FakePasteboard pasteboard{clock};
    FakeCalendarStore calendars;
    FakeApplications applications;
    FakeSyncControl syncControl{notifications};
    ClipboardCache cache{{folder.path()}};
    SystemInfoManager system{{defaults, debugMode, notifications, powerEvents, sampler, host}};
    NetworkManager network{{defaults, debugMode, notifications, powerEvents, sampler, counters}};
    TimerManager timer{{defaults, debugMode, notifications, clock, alerts, sounds, messages, [] {}}};
    WeatherManager weather{{defaults, debugMode, notifications, clock, powerEvents, http, location, geocoder}};
    CalendarManager calendar{{defaults, debugMode, notifications, clock, calendars}};
    QuickLaunchManager quickLaunch{{defaults, debugMode, notifications, applications}};
    ClipboardManager clipboard{{defaults, debugMode, notifications, powerEvents, clock, pasteboard, cache,
                                [](const QByteArray &) { return QStringLiteral("rich"); }}};

    LooksWorld();

    SettingsServices settings();
    /// The menu with all of this, opened with its submenu "Work".
    std::unique_ptr<MenuPopup> openMenu(const MenuPlacement &placement = {{400, 20}, true});
    Menu menu() const;

private:
    void fillTree();
    void fillWidgets();
    QWidget *makeRow(WidgetType type, QWidget *parent);
};

/// A window of Orvelle and what opens it. The window is shown by the caller.
struct KnownWindow {
    const char *name;
    std::unique_ptr<QWidget> (*make)(LooksWorld &world);
};

/// Every window, one for each tab and each widget section of the settings.
const QList<KnownWindow> &knownWindows();

/// Texts as a language with long words would have them: 40 per cent longer,
/// with accents, in brackets by which a cut end shows. Lasts as long as this.
class LongTexts
{
public:
    LongTexts();
    ~LongTexts();

private:
    std::unique_ptr<QTranslator> m_translator;
};

} // namespace orvelle::test
