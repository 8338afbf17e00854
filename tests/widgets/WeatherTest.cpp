#include "base/Text.h"
#include "support/FakeHttp.h"
#include "support/FakePlaces.h"
#include "support/Hostile.h"
#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/weather/OpenMeteo.h"
#include "widgets/weather/WeatherCommand.h"
#include "widgets/weather/WeatherManager.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr Coordinates paris{48.8566, 2.0};
const char goodReply[] = R"({"elevation":38,"current":{"temperature_2m":20.5,"weather_code":2,"is_day":0},)"
                         R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})";

TEST(Weather, TemperatureTexts)
{
    using enum WeatherTemperatureUnit;
    struct {
        double celsius;
        WeatherTemperatureUnit unit;
        const char16_t *expected;
    } const cases[] = {
        {20.5, Celsius, u"21°"},   {-0.5, Celsius, u"-1°"},     {-0.4, Celsius, u"0°"},   {20.49, Celsius, u"20°"},
        {21, Fahrenheit, u"70°F"}, {-40, Fahrenheit, u"-40°F"}, {0, Fahrenheit, u"32°F"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(temperatureText(each.celsius, each.unit), QString::fromUtf16(each.expected)) << each.celsius;
}

TEST(Weather, ConditionsByCodeAndTimeOfDay)
{
    struct {
        int code;
        bool isDay;
        TextKey description;
        const char *icon;
    } const cases[] = {
        {0, true, "weather.condition.clear"_text, "sun.max.fill"},
        {0, false, "weather.condition.clear"_text, "moon.fill"},
        {1, false, "weather.condition.mainlyClear"_text, "moon.fill"},
        {2, false, "weather.condition.partlyCloudy"_text, "cloud.moon.fill"},
        {3, false, "weather.condition.overcast"_text, "cloud.fill"},
        {4, true, "weather.condition.cloudy"_text, "cloud.fill"},
        {-1, true, "weather.condition.cloudy"_text, "cloud.fill"},
        {48, true, "weather.condition.fog"_text, "cloud.fog.fill"},
        {57, true, "weather.condition.freezingDrizzle"_text, "cloud.sleet.fill"},
        {66, true, "weather.condition.freezingRain"_text, "cloud.sleet.fill"},
        {77, true, "weather.condition.snow"_text, "cloud.snow.fill"},
        {82, true, "weather.condition.showers"_text, "cloud.heavyrain.fill"},
        {86, true, "weather.condition.snowShowers"_text, "cloud.snow.fill"},
        {99, false, "weather.condition.thunderstorm"_text, "cloud.bolt.rain.fill"},
    };
    for (const auto &each : cases) {
        WeatherData data;
        data.weatherCode = each.code;
        data.isDay = each.isDay;
        EXPECT_EQ(data.conditionDescription(), text(each.description)) << each.code;
        EXPECT_EQ(data.conditionIcon(), QString::fromLatin1(each.icon)) << each.code;
    }
}

TEST(Weather, NumbersAsTheServiceIsAsked)
{
    struct {
        double number;
        const char *expected;
    } const cases[] = {{48.8566, "48.8566"},
                       {2, "2.0"},
                       {0, "0.0"},
                       {-122.4194, "-122.4194"},
                       {0.1 + 0.2, "0.30000000000000004"},
                       {0.0001, "0.0001"},
                       {0.00001, "1e-05"}};
    for (const auto &each : cases)
        EXPECT_EQ(shortestText(each.number), each.expected);
    EXPECT_EQ(forecastRequest(QUrl(u"https://api.open-meteo.com"_s), paris).url.toEncoded(),
              "https://api.open-meteo.com/v1/forecast?latitude=48.8566&longitude=2.0"
              "&daily=temperature_2m_min,temperature_2m_max&current=temperature_2m,weather_code,is_day"
              "&timezone=auto&forecast_days=1");
    for (const char16_t *wrong : {u"", u"ftp://a.example", u"a.example/path", u"u:p@a.example", u"a b", u"a?b"})
        EXPECT_EQ(serviceAddress(QString::fromUtf16(wrong), u"b.example"_s), QUrl(u"https://b.example"_s));
    EXPECT_EQ(serviceAddress(u" http://127.0.0.1:80/ "_s, u"b.example"_s), QUrl(u"http://127.0.0.1:80"_s));
}

TEST(Weather, WhatAClickOpensWantsAPlaceOrNone)
{
    const QString page = u"https://w.example/{latitude}/{longitude}"_s;
    EXPECT_EQ(filledIn(page, Coordinates{48.85661, -2}), u"https://w.example/48.857/-2.000"_s);
    EXPECT_EQ(filledIn(page, {}), std::nullopt) << "not the gulf at 0, 0";
    EXPECT_EQ(filledIn(u"weather --here"_s, {}), u"weather --here"_s);
}

TEST(Weather, HostileRepliesAreRefusedWhole)
{
    const auto files = forEachHostileFile(u"weather"_s, [](const QString &name, const QByteArray &bytes) {
        const auto reply = decodeOpenMeteo(bytes);
        EXPECT_EQ(reply.has_value(), name.startsWith(u"ok-"_s)) << name.toStdString();
        EXPECT_FALSE(decodeWeather(bytes)) << name.toStdString();
    });
    EXPECT_GE(files, 25);
}

TEST(Weather, TheCacheKeepsAReadingBitForBit)
{
    const WeatherData data{0.1, -3, 30, 71, false, u"Saint-Étienne \"42\""_s, {800000000.125}, paris};
    EXPECT_EQ(encodeWeather(data), QByteArray(R"({"temperatureCurrent":0.1,"temperatureMin":-3,"temperatureMax":30,)"
                                              R"("weatherCode":71,"isDay":false,"cityName":"Saint-Étienne \"42\"",)"
                                              R"("fetchDate":800000000.125,"latitude":48.8566,"longitude":2})"));
    EXPECT_EQ(decodeWeather(encodeWeather(data)), data);
    WeatherData nowhere = data;
    nowhere.location.reset();
    EXPECT_EQ(decodeWeather(encodeWeather(nowhere)), nowhere);
    for (const char *wrong : {"\"weatherCode\":71,", "\"longitude\":2}", "48.8566", "0.1"})
        EXPECT_FALSE(decodeWeather(encodeWeather(data).replace(wrong, "\"x\":900,"))) << wrong;
}

class WeatherTest : public testing::Test
{
protected:
    WeatherTest()
    {
        http.answers(u"*"_s, 200, goodReply);
        geocoder.places.insert(u"Paris"_s, QList<Placemark>{{{}, u"Nowhere"_s, {}}, {paris, u"Paris"_s, {}}});
        geocoder.names = QList<Placemark>{{paris, u"Lutèce"_s, u"Île-de-France"_s}};
    }
    std::unique_ptr<WeatherManager> make()
    {
        return std::make_unique<WeatherManager>(WeatherManager::Services{
            world.defaults, world.debugMode, world.notifications, world.clock, world.power, http, location, geocoder});
    }
    void set(const char *key, const DefaultsValue &value)
    {
        EXPECT_TRUE(world.defaults.write(QString::fromLatin1(key), value));
    }
    std::unique_ptr<WeatherManager> makeIn(const char *mode)
    {
        set("WeatherLocationMode", QString::fromLatin1(mode));
        return make();
    }
    void answerAll()
    {
        for (int i = 0; i < 3; ++i) {
            geocoder.deliver();
            http.deliverAll();
        }
    }

    WidgetWorld world{&Notifications::weatherChanged};
    FakeHttp http;
    FakeLocationService location;
    FakeGeocoder geocoder;
};

TEST_F(WeatherTest, SettingsReadAsStoredOrByTheirDefaults)
{
    using enum WeatherLocationMode;
    struct {
        std::optional<DefaultsValue> mode;
        std::optional<DefaultsValue> legacy;
        WeatherLocationMode expected;
    } const cases[] = {
        {{}, {}, Disabled},
        {{}, true, Automatic},
        {{}, false, Disabled},
        {{}, u"true"_s, Disabled},
        {u"manual"_s, true, Manual},
        {u"disabled"_s, true, Disabled},
        {u"Manual"_s, true, Automatic},
        {qint64(1), {}, Disabled},
    };
    for (const auto &each : cases) {
        WidgetWorld fresh(&Notifications::weatherChanged);
        if (each.mode)
            static_cast<void>(fresh.defaults.write(u"WeatherLocationMode"_s, *each.mode));
        if (each.legacy)
            static_cast<void>(fresh.defaults.write(u"WeatherWidgetEnabled"_s, *each.legacy));
        EXPECT_TRUE(fresh.defaults.write(u"WeatherDisplayStyle"_s, u"storm"_s));
        const WeatherManager manager(
            {fresh.defaults, fresh.debugMode, fresh.notifications, fresh.clock, fresh.power, http, location, geocoder});
        EXPECT_EQ(manager.locationMode(), each.expected);
        EXPECT_EQ(manager.displayStyle(), WeatherDisplayStyle::Aurora);
        EXPECT_FALSE(manager.menuBarOnly());
    }
    EXPECT_TRUE(http.requests.isEmpty());
}

TEST_F(WeatherTest, ATypedCityIsLookedUpAndFetched)
{
    const auto manager = make();
    manager->setManualCity(u"  Paris "_s);
    EXPECT_EQ(std::pair(world.changes, world.syncable), std::pair(0, 1));
    manager->setLocationMode(WeatherLocationMode::Manual);
    EXPECT_TRUE(manager->isGeocodingCity());
    geocoder.deliver();
    EXPECT_FALSE(manager->isGeocodingCity());
    ASSERT_EQ(http.requests.size(), 1);
    EXPECT_EQ(http.requests.first().maxBytes, 1 << 20);
    EXPECT_EQ(http.requests.first().idleTimeout, 8s);
    EXPECT_EQ(http.requests.first().totalTimeout, 12s);
    http.deliver();
    EXPECT_EQ(*manager->weatherData(), (WeatherData{20.5, 11.4, 24, 2, false, u"Paris"_s, world.clock.now(), paris}));
    EXPECT_EQ(make()->weatherData(), manager->weatherData()) << "from the cache";
    EXPECT_EQ(geocoder.asked, QStringList{u"Paris"_s});

    manager->setManualCity(u" \t"_s);
    world.changes = 0;
    manager->geocodeAndFetch();
    EXPECT_EQ(std::tuple(geocoder.asked.size(), http.requests.size(), world.changes), std::tuple(1, 1, 0));
}

TEST_F(WeatherTest, ThePositionIsAskedForOnceAllowed)
{
    LogCapture log;
    location.allowed = LocationService::Authorization::NotDetermined;
    const auto manager = makeIn("automatic");
    manager->startMonitoring();
    EXPECT_EQ(std::pair(location.asked, location.requested), std::pair(1, 0));
    location.userDecides(LocationService::Authorization::Authorized);
    EXPECT_EQ(location.requested, 1);
    location.findsNothing(u"no sky"_s);
    location.findsNothing(u"no sky"_s);
    EXPECT_EQ(log.lines().count(u"WeatherManager: Location error: no sky"_s), 1);
    EXPECT_FALSE(manager->lastFetchFailed());
    location.machineIsAt(paris);
    answerAll();
    EXPECT_EQ(manager->weatherData()->cityName, u"Lutèce"_s);
    location.userDecides(LocationService::Authorization::Denied);
    EXPECT_TRUE(log.contains(u"WeatherManager: Location access denied"_s));
    EXPECT_TRUE(manager->isLocationRefused());
    world.clock.advance(3600s);
    EXPECT_EQ(std::pair(location.asked, location.requested), std::pair(1, 1));
}

TEST_F(WeatherTest, ANameIsRememberedNearby)
{
    const auto manager = makeIn("automatic");
    const auto nameAt = [&](double north, double east) {
        location.machineIsAt({north, east});
        answerAll();
        return manager->weatherData()->cityName;
    };
    nameAt(0, 0);
    EXPECT_EQ(geocoder.asked.size(), 1);
    geocoder.names = QList<Placemark>{{{}, {}, u"Region"_s}};
    EXPECT_EQ(nameAt(0.049, -0.049), u"Lutèce"_s);
    EXPECT_EQ(nameAt(0.05, 0), u"Region"_s) << "from where the name was looked up";
    geocoder.names = QList<Placemark>{{}};
    EXPECT_EQ(nameAt(10, 0), u"—"_s);
    geocoder.names = u"broken"_s;
    EXPECT_EQ(nameAt(20, 0), u"—"_s);
    EXPECT_EQ(geocoder.asked.size(), 4);
}

TEST_F(WeatherTest, AFailureKeepsTheReadingAndIsSaid)
{
    LogCapture log;
    const auto manager = makeIn("automatic");
    location.machineIsAt(paris);
    answerAll();
    const auto before = manager->weatherData();
    struct {
        FakeHttp::Answer answer;
        const char16_t *line;
    } const cases[] = {
        {HttpError{HttpError::Kind::TimedOut, u"too slow"_s}, u"WeatherManager: Weather API error: too slow"},
        {HttpResponse{304, {}, goodReply, {}}, u"WeatherManager: Weather API HTTP 304"},
        {HttpResponse{500, {}, {}, {}}, u"WeatherManager: Weather API HTTP 500"},
        {HttpResponse{200, {}, {}, {}}, u"WeatherManager: Weather JSON decode error or empty data"},
    };
    for (const auto &each : cases) {
        world.changes = 0;
        http.answers(u"*"_s, each.answer);
        location.machineIsAt(paris);
        answerAll();
        EXPECT_TRUE(manager->lastFetchFailed());
        EXPECT_EQ(world.changes, 1);
        EXPECT_EQ(manager->weatherData(), before);
        EXPECT_TRUE(log.contains(QString::fromUtf16(each.line)));
    }
    http.answers(u"*"_s, 200, QByteArray(goodReply).replace("[11.4]", "[]").replace("[24]", "[]"));
    location.machineIsAt(paris);
    answerAll();
    EXPECT_FALSE(manager->lastFetchFailed());
    EXPECT_EQ(manager->weatherData()->temperatureMin, 0);
    EXPECT_EQ(manager->weatherData()->temperatureMax, 0);

    manager->setManualCity(u"Atlantis"_s);
    manager->setLocationMode(WeatherLocationMode::Manual);
    geocoder.deliver();
    EXPECT_EQ(manager->citySearch(), WeatherManager::CitySearch::NotFound);
    EXPECT_TRUE(log.contains(u"WeatherManager: No coordinates found for 'Atlantis'"_s));
    geocoder.places.insert(u"Atlantis"_s, u"no net"_s);
    manager->geocodeAndFetch();
    geocoder.deliver();
    EXPECT_TRUE(manager->lastFetchFailed());
    EXPECT_TRUE(log.contains(u"WeatherManager: Geocode error for 'Atlantis': no net"_s));
}

TEST_F(WeatherTest, RenewedHourlyAfterSleepAndWhenStale)
{
    const auto manager = makeIn("automatic");
    manager->startMonitoring();
    location.machineIsAt(paris);
    answerAll();
    EXPECT_EQ(location.requested, 1);
    world.clock.setNow(manager->weatherData()->fetchDate + 900);
    EXPECT_FALSE(manager->isCacheStale());
    manager->refreshIfNeeded();
    EXPECT_EQ(location.requested, 1);
    world.clock.setNow(manager->weatherData()->fetchDate + 900.001);
    manager->refreshIfNeeded();
    EXPECT_EQ(location.requested, 2);
    world.clock.advance(3600s);
    EXPECT_EQ(location.requested, 3);
    EXPECT_TRUE(manager->isReadingOld() && manager->isCacheStale());
    world.power.systemWakes();
    EXPECT_EQ(location.requested, 4);
    manager->setLocationMode(WeatherLocationMode::Disabled);
    world.clock.advance(24h);
    world.power.systemWakes();
    manager->refreshIfNeeded();
    EXPECT_EQ(location.requested, 4);
    EXPECT_EQ(world.clock.pending(), 0U);
}

TEST_F(WeatherTest, WhatIsOnItsWayIsNotAskedForAgain)
{
    set("WeatherManualCity", u"Paris"_s);
    const auto manager = makeIn("manual");
    for (int opening = 0; opening < 3; ++opening)
        manager->refreshIfNeeded();
    EXPECT_EQ(geocoder.asked.size(), 1);
    geocoder.deliver();
    manager->refreshIfNeeded();
    EXPECT_EQ(geocoder.asked.size(), 1);
    EXPECT_EQ(http.requests.size(), 1);
    http.fails(u"*"_s, HttpError::Kind::TimedOut);
    answerAll();
    manager->refreshIfNeeded();
    EXPECT_EQ(geocoder.asked.size(), 2) << "after a failure the next opening tries again";
}

TEST_F(WeatherTest, AnotherModeDropsWhatWasForTheOld)
{
    set("WeatherManualCity", u"Paris"_s);
    const auto manager = makeIn("automatic");
    location.machineIsAt(paris);
    answerAll();
    location.machineIsAt({1, 1});
    manager->setLocationMode(WeatherLocationMode::Manual);
    EXPECT_FALSE(manager->weatherData());
    EXPECT_FALSE(world.defaults.value(u"WeatherCache"_s));
    http.deliverAll();
    EXPECT_FALSE(manager->weatherData()) << "the answer was for the old place";
    answerAll();
    EXPECT_EQ(manager->weatherData()->cityName, u"Paris"_s);
    world.changes = world.syncable = 0;
    manager->setLocationMode(WeatherLocationMode::Disabled);
    EXPECT_EQ(std::pair(world.changes, world.syncable), std::pair(1, 1));
    location.machineIsAt(paris);
    EXPECT_EQ(http.outstanding(), 0);
}

TEST_F(WeatherTest, TakesOverWhatOthersStored)
{
    const auto manager = make();
    set("WeatherLocationMode", u"manual"_s);
    set("WeatherManualCity", u"Paris"_s);
    set("WeatherDisplayStyle", u"zephyr"_s);
    emit world.notifications.weatherChanged();
    EXPECT_EQ(world.changes, 2) << "once more, and no end of it";
    EXPECT_EQ(manager->displayStyle(), WeatherDisplayStyle::Zephyr);
    answerAll();
    EXPECT_EQ(manager->weatherData()->cityName, u"Paris"_s);
    set("WeatherManualCity", u"Rome"_s);
    emit world.notifications.syncableSettingsChanged();
    EXPECT_EQ(geocoder.asked, QStringList({u"Paris"_s, u"Rome"_s}));
    world.defaults.otherProcessWrites(u"WeatherMenuBarOnly"_s, true);
    world.defaults.announceOutsideChanges();
    EXPECT_TRUE(manager->menuBarOnly());
    world.defaults.otherProcessWrites(u"WeatherLocationMode"_s, u"disabled"_s);
    world.defaults.announceOutsideChanges();
    EXPECT_FALSE(manager->isEnabled());
    EXPECT_EQ(world.clock.pending(), 0U);
}

TEST_F(WeatherTest, DebugModeHasItsOwnLooksAndCache)
{
    set("debug_WeatherDisplayStyle", u"brume"_s);
    set("WeatherMenuBarOnly", true);
    const auto manager = makeIn("automatic");
    location.machineIsAt(paris);
    answerAll();
    world.debugMode.toggle();
    EXPECT_EQ(manager->displayStyle(), WeatherDisplayStyle::Brume);
    EXPECT_FALSE(manager->menuBarOnly());
    EXPECT_FALSE(manager->weatherData());
    EXPECT_EQ(manager->locationMode(), WeatherLocationMode::Automatic);
    emit world.notifications.syncableSettingsChanged();
    EXPECT_TRUE(manager->isEnabled()) << "the other set of values is no change of this one";
    world.debugMode.toggle();
    EXPECT_TRUE(manager->weatherData() && manager->menuBarOnly());
}

} // namespace
} // namespace orvelle::test
