#include "base/Notifications.h"
#include "platform/freedesktop/http/HttpGeocoder.h"
#include "platform/freedesktop/http/QtHttpClient.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakePlaces.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "support/LogCapture.h"
#include "support/LoopbackServer.h"
#include "widgets/weather/WeatherManager.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QByteArray reading = R"({"current":{"temperature_2m":20.5,"weather_code":2,"is_day":1},)"
                           R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})";
const QByteArray lyon = R"({"results":[{"name":"Lyon","latitude":45.75,"longitude":4.85}]})";

/// The weather with the real ways to its services, all on this machine.
class WeatherFetchTest : public testing::Test
{
protected:
    WeatherFetchTest()
    {
        EXPECT_TRUE(defaults.write(u"WeatherServiceHost"_s, u"http://"_s + server.host()));
        server.answers("/v1/search", "200 OK", lyon);
        server.answers("/v1/forecast", "200 OK\r\nContent-Type: application/json", reading);
        server.answers("/reverse", "200 OK", R"({"address":{"town":"Vernon"}})");
    }
    template<typename Condition>
    static bool happens(Condition condition)
    {
        const QDeadlineTimer deadline(10s);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        return condition();
    }
    bool isAsked(const QByteArray &path)
    {
        return std::ranges::any_of(server.requests, [&](const QByteArray &r) { return r.startsWith("GET " + path); });
    }
    void fetchesLyon()
    {
        weather.setManualCity(u"Lyon"_s);
        weather.setLocationMode(WeatherLocationMode::Manual);
        ASSERT_TRUE(happens([this] { return weather.weatherData().has_value(); }));
        server.requests.clear();
    }

    FakeClock clock;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakePowerEvents power;
    LoopbackServer server;
    QtHttpClient http{clock, "Orvelle/9.9"};
    FakeLocationService location;
    HttpGeocoder geocoder{{http, clock, [this] { return server.url({}); }, [this] { return server.url({}); }}};
    WeatherManager weather{{defaults, debugMode, notifications, clock, power, http, location, geocoder}};
};

TEST_F(WeatherFetchTest, AskedExactlyAndByName)
{
    fetchesLyon();
    EXPECT_EQ(weather.weatherData()->cityName, u"Lyon"_s);
    EXPECT_EQ(weather.weatherData()->temperatureMax, 24);
    location.machineIsAt({49.09, 1.48});
    weather.setLocationMode(WeatherLocationMode::Automatic);
    location.machineIsAt({49.09, 1.48});
    ASSERT_TRUE(happens([this] { return isAsked("/v1/forecast"); }));
    const QByteArray request = server.requests.constLast();
    EXPECT_TRUE(
        request.startsWith("GET /v1/forecast?latitude=49.09&longitude=1.48"
                           "&daily=temperature_2m_min,temperature_2m_max"
                           "&current=temperature_2m,weather_code,is_day&timezone=auto&forecast_days=1 HTTP/1.1"));
    EXPECT_TRUE(request.toLower().contains("user-agent: orvelle/9.9\r\n"));
    EXPECT_FALSE(request.toLower().contains("cookie"));
    clock.advance(1s);
    ASSERT_TRUE(happens([this] { return weather.weatherData().has_value(); }));
    EXPECT_EQ(weather.weatherData()->cityName, u"Vernon"_s);
}

TEST_F(WeatherFetchTest, WhatIsNoForecastIsAFailureAndKeepsTheReading)
{
    fetchesLyon();
    const auto kept = weather.weatherData();
    const QByteArray endless = "HTTP/1.1 200 OK\r\n\r\n{\"x\":\"" + QByteArray(3 << 20, 'x');
    const QByteArray undecoded = "WeatherManager: Weather JSON decode error or empty data";
    struct {
        QByteArray said;
        QByteArray line; ///< how the log's line begins
    } const cases[] = {
        {"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 15\r\n\r\n<p>Sign in.</p>", undecoded},
        {"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", undecoded},
        {"HTTP/1.1 200 OK\r\nContent-Length: 13\r\n\r\n{\"current\":1}", undecoded},
        {"HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" + reading, "WeatherManager: Weather API error: "},
        {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\nabcd", "WeatherManager: Weather "},
        {"HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n", "WeatherManager: Weather API HTTP 503"},
        {"HTTP/1.1 304 Not Modified\r\n\r\n", "WeatherManager: Weather API HTTP 304"},
        {"SSH-2.0-OpenSSH_9.2\r\n", "WeatherManager: Weather API error: "},
        {endless, "WeatherManager: Weather API error: "},
    };
    for (const auto &each : cases) {
        LogCapture log;
        server.says("/v1/forecast", each.said);
        clock.advance(1s);
        int changes = 0;
        const auto counting =
            QObject::connect(&notifications, &Notifications::weatherChanged, [&changes] { ++changes; });
        weather.geocodeAndFetch();
        ASSERT_TRUE(happens([&] { return changes > 0; })) << each.said.constData();
        QObject::disconnect(counting);
        EXPECT_TRUE(weather.lastFetchFailed());
        EXPECT_EQ(weather.weatherData(), kept);
        EXPECT_EQ(log.lines().filter(QString::fromLatin1(each.line)).size(), 1)
            << log.lines().join(u'\n').toStdString();
        EXPECT_TRUE(log.lines().filter(u"127.0.0.1"_s).isEmpty()) << "addresses are not logged";
    }
    server.answers("/v1/forecast", "200 OK", reading);
    clock.advance(1s);
    weather.geocodeAndFetch();
    EXPECT_TRUE(happens([this] { return !weather.lastFetchFailed(); }));
}

TEST_F(WeatherFetchTest, ASlowServiceIsGivenUpAfterEightSeconds)
{
    server.does("/v1/forecast", [](QTcpSocket &socket) { socket.write("HTTP/1.1 200 OK\r\n"); });
    weather.setManualCity(u"Lyon"_s);
    weather.setLocationMode(WeatherLocationMode::Manual);
    ASSERT_TRUE(happens([this] { return isAsked("/v1/forecast"); }));
    LogCapture log;
    clock.advance(7s);
    QCoreApplication::processEvents();
    EXPECT_FALSE(weather.lastFetchFailed());
    clock.advance(2s);
    EXPECT_TRUE(happens([this] { return weather.lastFetchFailed(); }));
    EXPECT_EQ(log.lines().filter(u"WeatherManager: Weather API error: "_s).size(), 1);
    EXPECT_FALSE(weather.weatherData());
}

TEST_F(WeatherFetchTest, NothingGoesOutWhileOffOrAtRest)
{
    clock.advance(24h);
    weather.refreshIfNeeded();
    power.systemWakes();
    fetchesLyon();
    clock.advance(900s);
    weather.refreshIfNeeded();
    QCoreApplication::processEvents();
    EXPECT_TRUE(server.requests.isEmpty());
}

} // namespace
} // namespace orvelle::test
