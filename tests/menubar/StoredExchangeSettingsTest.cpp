#include "menubar/StoredExchangeSettings.h"

#include "base/Notifications.h"
#include "links/exchange/ExchangeDocument.h"
#include "menubar/WidgetOrderManager.h"
#include "services/DebugModeManager.h"
#include "support/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct World {
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    WidgetOrderManager widgetOrder{defaults, debugMode, notifications};
    StoredExchangeSettings settings{{defaults, debugMode, notifications, widgetOrder}, {u"1.2"_s, u"3"_s, u"mars"_s}};
    QStringList posted;

    World()
    {
        const std::pair<void (Notifications::*)(), const char *> signalNames[] = {
            {&Notifications::weatherChanged, "weather"},           {&Notifications::systemInfoChanged, "systemInfo"},
            {&Notifications::networkChanged, "network"},           {&Notifications::clipboardChanged, "clipboard"},
            {&Notifications::calendarChanged, "calendar"},         {&Notifications::quickLaunchChanged, "quickLaunch"},
            {&Notifications::menuletIconChanged, "icon"},          {&Notifications::globalShortcutChanged, "shortcut"},
            {&Notifications::generalSettingsChanged, "general"},   {&Notifications::widgetOrderChanged, "order"},
            {&Notifications::syncableSettingsChanged, "syncable"},
        };
        for (const auto &[signal, name] : signalNames) {
            QObject::connect(&notifications, signal, &notifications,
                             [this, name = name] { posted += QString::fromLatin1(name); });
        }
    }

    ExportData gathered() const
    {
        ExportData document;
        settings.gather(document);
        return document;
    }

    /// What was posted, in order.
    std::string apply(const ExportData &document)
    {
        posted.clear();
        settings.apply(document);
        return posted.join(u' ').toStdString();
    }
};

ExportData everything()
{
    ExportData document;
    document.weatherSettings = {u"manual"_s, u"Besançon"_s, u"celsius"_s, true, u"zephyr"_s};
    document.systemInfoSettings = {u"terminal"_s, false};
    document.networkSettings = {u"graph"_s, false};
    document.clipboardSettings = {true, true, u"blue"_s};
    document.calendarSettings = {true, true, u"green"_s, 5, u"2"_s};
    document.generalSettings = {false, u"star"_s, false, 40, 0x40000};
    document.quickLaunchEnabled = false;
    document.quickLaunchApps = {std::nullopt,
                                QuickLaunchApp{QUuid::createUuidV5({}, u"E"_s), u"E"_s, u"/e"_s, u"org.e"_s},
                                std::nullopt, std::nullopt};
    document.quickLaunchDisplayStyle = u"neon"_s;
    document.widgetOrder = {u"timer"_s,    u"weather"_s,     u"network"_s,  u"systemInfo"_s,
                            u"calendar"_s, u"quickLaunch"_s, u"clipboard"_s};
    return document;
}

/// The sections alone.
ExportData sections(ExportData document)
{
    document.appVersion.clear();
    document.appBuild.clear();
    document.lastModifiedBy.reset();
    document.settingsModifiedAt.reset();
    document.weatherSettings->temperatureUnit.reset();
    return document;
}

TEST(StoredExchangeSettings, AFreshStoreHasTheDefaultsOfTheOwners)
{
    const World world;
    const ExportData document = world.gathered();
    EXPECT_EQ(document.appVersion, u"1.2");
    EXPECT_EQ(document.appBuild, u"3");
    EXPECT_EQ(document.lastModifiedBy, u"mars");
    EXPECT_EQ(document.settingsModifiedAt, std::nullopt);
    ExportData expected;
    expected.weatherSettings.emplace(ExportWeatherSettings{u"disabled"_s, {}, {}, false, u"aurora"_s});
    expected.systemInfoSettings.emplace(ExportSystemInfoSettings{u"disabled"_s, true});
    expected.networkSettings.emplace(ExportNetworkSettings{u"disabled"_s, true});
    expected.clipboardSettings.emplace(ExportClipboardSettings{false, false, u"purple"_s});
    expected.calendarSettings.emplace(ExportCalendarSettings{false, false, u"red"_s, 1, u"0"_s});
    expected.generalSettings.emplace(ExportGeneralSettings{true, u"link"_s, true, 7, 0});
    expected.quickLaunchEnabled = true;
    expected.quickLaunchApps = QuickLaunchSlots(4);
    expected.quickLaunchDisplayStyle = u"souffle"_s;
    expected.widgetOrder = {u"clipboard"_s,  u"quickLaunch"_s, u"calendar"_s, u"weather"_s,
                            u"systemInfo"_s, u"network"_s,     u"timer"_s};
    EXPECT_EQ(sections(document), sections(expected));
}

TEST(StoredExchangeSettings, WhatIsAppliedIsGatheredAgain)
{
    World world;
    ASSERT_TRUE(world.defaults.write(u"orvelle_settingsModifiedAt"_s, Timestamp{5}));
    EXPECT_EQ(world.apply(everything()),
              "weather systemInfo network clipboard calendar quickLaunch icon shortcut general "
              "syncable syncable order");
    EXPECT_EQ(sections(world.gathered()), sections(everything()));
    EXPECT_EQ(world.gathered().settingsModifiedAt, Timestamp{5});
    const int writes = world.defaults.writeCount();
    EXPECT_EQ(world.apply(everything()), "") << "the same again changes nothing";
    EXPECT_EQ(world.defaults.writeCount(), writes);
    EXPECT_EQ(world.defaults.get<qint64>(u"CalendarDisplayScope"_s), 2);
    EXPECT_EQ(world.defaults.get<QString>(u"WeatherManualCity"_s), u"Besançon");

    EXPECT_EQ(world.apply({}), "") << "what is missing stays as it is";
    EXPECT_EQ(sections(world.gathered()), sections(everything()));
    EXPECT_TRUE(world.settings.apply(everything()));
    EXPECT_FALSE(world.settings.apply({}));
    ExportData emptySlots;
    emptySlots.quickLaunchApps = QuickLaunchSlots(4);
    EXPECT_FALSE(world.settings.apply(emptySlots));
    EXPECT_EQ(world.gathered().quickLaunchApps, QuickLaunchSlots(4));
}

TEST(StoredExchangeSettings, ValuesThatNameNothingLeaveTheSettingAlone)
{
    const std::pair<const char *, std::function<void(ExportData &)>> cases[] = {
        {"mode", [](ExportData &d) { d.weatherSettings->locationMode = u"orbital"_s; }},
        {"style", [](ExportData &d) { d.weatherSettings->displayStyle = u"Aurora"_s; }},
        {"system mode", [](ExportData &d) { d.systemInfoSettings->displayMode = u"graph"_s; }},
        {"network mode", [](ExportData &d) { d.networkSettings->displayMode.clear(); }},
        {"colour", [](ExportData &d) { d.clipboardSettings->iconColor = u"teal"_s; }},
        {"no events", [](ExportData &d) { d.calendarSettings->maxEvents = 0; }},
        {"too many events", [](ExportData &d) { d.calendarSettings->maxEvents = qint64(1) << 40; }},
        {"scope", [](ExportData &d) { d.calendarSettings->displayScope = u"3"_s; }},
        {"scope text", [](ExportData &d) { d.calendarSettings->displayScope = u"today"_s; }},
        {"icon", [](ExportData &d) { d.generalSettings->menuletIcon = u"link.circle.fill"_s; }},
        {"key", [](ExportData &d) { d.generalSettings->globalShortcutKeyCode = -1; }},
        {"large key", [](ExportData &d) { d.generalSettings->globalShortcutKeyCode = 0x10000; }},
        {"modifiers", [](ExportData &d) { d.generalSettings->globalShortcutModifiers = -1; }},
        {"quick launch style", [](ExportData &d) { d.quickLaunchDisplayStyle = u"flat"_s; }},
    };
    World world;
    world.apply(everything());
    for (const auto &[what, change] : cases) {
        ExportData document = everything();
        change(document);
        EXPECT_EQ(world.apply(document), "") << what;
    }
    // An order is repaired instead.
    ExportData document;
    document.widgetOrder = {u"timer"_s, u"toaster"_s, u"timer"_s};
    world.apply(document);
    EXPECT_EQ(world.gathered().widgetOrder->mid(0, 2), QStringList({u"timer"_s, u"clipboard"_s}));
    EXPECT_EQ(world.gathered().widgetOrder->size(), 7);
    document.widgetOrder = {u"toaster"_s};
    world.apply(document);
    EXPECT_EQ(world.gathered().widgetOrder->first(), u"clipboard");
}

TEST(StoredExchangeSettings, OnlyWhatChangedIsAnnounced)
{
    const std::tuple<std::function<void(ExportData &)>, const char *> cases[] = {
        {[](ExportData &d) { d.weatherSettings->manualCity = u"Lyon"_s; }, "syncable"},
        {[](ExportData &d) { d.weatherSettings->menuBarOnly = false; }, "weather syncable"},
        {[](ExportData &d) { d.networkSettings->menuBarOnly = true; }, "network syncable"},
        {[](ExportData &d) { d.generalSettings->confirmBeforeQuit = true; }, "general syncable"},
        {[](ExportData &d) { d.generalSettings->menuletIcon = u"bolt"_s; }, "icon general syncable"},
        {[](ExportData &d) { d.generalSettings->globalShortcutKeyCode = 41; }, "shortcut general syncable"},
        {[](ExportData &d) { d.quickLaunchApps->clear(); }, "quickLaunch syncable"},
        {[](ExportData &d) { d.widgetOrder->move(0, 1); }, "syncable order"},
    };
    for (const auto &[change, announced] : cases) {
        World world;
        world.apply(everything());
        ExportData document = everything();
        change(document);
        EXPECT_EQ(world.apply(document), announced);
    }
}

TEST(StoredExchangeSettings, OldAndOddStoredValuesReadAsTheirOwnersWould)
{
    const std::tuple<const char *, DefaultsValue, std::function<QString(const ExportData &)>, const char *> cases[] = {
        {"WeatherWidgetEnabled", true, [](const ExportData &d) { return d.weatherSettings->locationMode; },
         "automatic"},
        {"CalendarTodayOnly", false, [](const ExportData &d) { return *d.calendarSettings->displayScope; }, "1"},
        {"CalendarTodayOnly", true, [](const ExportData &d) { return *d.calendarSettings->displayScope; }, "0"},
        {"CalendarDisplayScope", qint64(9), [](const ExportData &d) { return *d.calendarSettings->displayScope; }, "0"},
        {"CalendarMaxEvents", qint64(-3),
         [](const ExportData &d) { return QString::number(*d.calendarSettings->maxEvents); }, "1"},
        {"SystemInfoMenuBarOnly", u"no"_s,
         [](const ExportData &d) { return QString::number(*d.systemInfoSettings->menuBarOnly); }, "1"},
        {"GlobalShortcutKeyCode", qint64(-1),
         [](const ExportData &d) { return QString::number(*d.generalSettings->globalShortcutKeyCode); }, "7"},
        {"QuickLaunchApps", QByteArray(R"([{"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","name":"E","path":"/e"}])"),
         [](const ExportData &d) { return (*d.quickLaunchApps)[0]->name; }, "E"},
        {"QuickLaunchApps", QByteArray("{"),
         [](const ExportData &d) { return QString::number(d.quickLaunchApps->size()); }, "4"},
    };
    for (const auto &[key, value, read, expected] : cases) {
        World world;
        ASSERT_TRUE(world.defaults.write(QString::fromLatin1(key), value));
        EXPECT_EQ(read(world.gathered()), QLatin1StringView(expected)) << key;
    }
}

TEST(StoredExchangeSettings, DebugModeHasItsOwn)
{
    World world;
    world.debugMode.toggle();
    world.apply(everything());
    EXPECT_EQ(world.defaults.get<QString>(u"debug_WeatherLocationMode"_s), u"manual");
    EXPECT_TRUE(world.defaults.value(u"debug_QuickLaunchApps"_s));
    world.debugMode.toggle();
    EXPECT_EQ(world.gathered().weatherSettings->locationMode, u"disabled");
}

} // namespace
} // namespace orvelle::test
