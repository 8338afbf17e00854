#pragma once

#include "support/FakeCalendarStore.h"
#include "support/FakeHttp.h"
#include "support/FakePasteboard.h"
#include "support/FakePlaces.h"
#include "widgets/WidgetWorld.h"
#include "widgets/calendar/CalendarManager.h"
#include "widgets/clipboard/ClipboardManager.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"
#include "widgets/weather/WeatherManager.h"

#include <QCoreApplication>
#include <QTemporaryDir>

namespace orvelle::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Every widget at once, on a clock that a test moves.
class EveryWidget
{
public:
    EveryWidget()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        http.answers(u"*"_s, 200,
                     R"({"current":{"temperature_2m":20.5,"weather_code":2,"is_day":1},)"
                     R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})");
        geocoder.names = QList<Placemark>{{Coordinates{48.8566, 2.0}, u"Paris"_s, {}}};
        weather.setLocationMode(WeatherLocationMode::Automatic);
        calendar.setEnabled(true);
        clipboard.setEnabled(true);
        timer.setEnabled(true);
        system.setDisplayMode(SystemInfoDisplayMode::Terminal);
        network.setDisplayMode(NetworkDisplayMode::Graph);
        qInstallMessageHandler(nullptr);
    }

    /// What the world answers to whatever was asked.
    void answer()
    {
        for (; answeredLocations < location.requested; ++answeredLocations) {
            if (isOffline)
                location.findsNothing(u"no place"_s);
            else
                location.machineIsAt({48.8566, 2.0});
        }
        for (int i = 0; i < 3; ++i) {
            geocoder.deliver();
            http.deliverAll();
        }
        store.answer();
        QCoreApplication::processEvents();
        counters.bytesGoBy();
    }
    void pass(std::chrono::seconds time)
    {
        constexpr std::chrono::seconds step{5};
        for (; time.count() > 0; time -= step) {
            world.clock.advance(std::min(step, time));
            answer();
        }
    }
    void menuIsOpenFor(std::chrono::seconds time)
    {
        weather.refreshIfNeeded();
        calendar.refreshIfNeeded();
        clipboard.checkNow();
        system.startLiveRefresh();
        network.startLiveRefresh();
        pass(time);
        system.stopLiveRefresh();
        network.stopLiveRefresh();
    }

    /// A minute of an ordinary day, from midnight on, with what goes wrong on it.
    void liveThrough(int minute)
    {
        const int hour = minute / 60;
        isOffline = hour == 10 || hour == 11;
        world.host.failure = hour == 12 ? 5 : 0;
        world.counters.fails = hour == 12;
        if (minute % 7 == 0)
            pasteboard.otherAppCopies(u"text %1"_s.arg(minute % 30));
        if (minute % 60 == 20)
            timer.start(300);
        if (minute == 14 * 60 + 3) {
            world.clock.sleep(2h);
            world.power.systemWakes();
        }
        if (minute == 16 * 60 + 3 || minute == 17 * 60 + 3)
            world.clock.setNow(world.clock.now() + (minute < 17 * 60 ? -3600 : 3600));
        if (minute == 18 * 60 + 3)
            world.power.screensGoDark();
        if (minute == 19 * 60 + 3)
            world.power.screensComeBack();
        if (minute % 30 == 0)
            menuIsOpenFor(20s);
        pass(minute % 30 == 0 ? 40s : 60s);
    }
    /// What fakes note down for tests that look at it.
    void forgetWhatWasAsked()
    {
        http.requests.clear();
        pasteboard.asked.clear();
    }

    struct Counters {
        FakeNetworkCounters &counters;
        quint64 bytes = 0;
        void bytesGoBy()
        {
            bytes += 4000;
            counters.reading = {{{2, u"eth0"_s, {}, 0, bytes, bytes}}};
        }
    };

    WidgetWorld world{&Notifications::weatherChanged};
    FakeHttp http;
    FakeLocationService location;
    FakeGeocoder geocoder;
    FakeCalendarStore store;
    FakePasteboard pasteboard{world.clock};
    QTemporaryDir folder;
    ClipboardCache cache{{folder.path()}};
    Counters counters{world.counters};
    int answeredLocations = 0;
    bool isOffline = false;

    WeatherManager weather{
        {world.defaults, world.debugMode, world.notifications, world.clock, world.power, http, location, geocoder}};
    CalendarManager calendar{{world.defaults, world.debugMode, world.notifications, world.clock, store}};
    ClipboardManager clipboard{{world.defaults, world.debugMode, world.notifications, world.power, world.clock,
                                pasteboard, cache, [](const QByteArray &rtf) { return QString::fromUtf8(rtf); }}};
    TimerManager timer{{world.defaults, world.debugMode, world.notifications, world.clock, world.alerts, world.sounds,
                        world.desktop, [] {}}};
    SystemInfoManager system{
        {world.defaults, world.debugMode, world.notifications, world.power, world.sampler, world.host}};
    NetworkManager network{
        {world.defaults, world.debugMode, world.notifications, world.power, world.sampler, world.counters}};
};

} // namespace orvelle::test
