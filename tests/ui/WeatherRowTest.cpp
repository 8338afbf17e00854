#include "base/Text.h"
#include "support/FakeHttp.h"
#include "support/FakePlaces.h"
#include "ui/UiWorld.h"
#include "ui/common/Colors.h"
#include "ui/common/Theme.h"
#include "ui/menu/MenuPanel.h"
#include "ui/menu/rows/WeatherRowView.h"
#include "ui/settings/WeatherSection.h"
#include "widgets/weather/WeatherManager.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// The worst contrast of `text` along the way from one ground to the other.
double worstContrast(const QColor &text, const QColor &from, const QColor &to)
{
    double worst = 21;
    for (int i = 0; i <= 32; ++i) {
        const auto mix = [i](int a, int b) { return a + (b - a) * i / 32; };
        worst = std::min(worst, contrastRatio(text, {mix(from.red(), to.red()), mix(from.green(), to.green()),
                                                     mix(from.blue(), to.blue())}));
    }
    return worst;
}

TEST(WeatherInk, IsReadableInEveryWeatherAndTheme)
{
    const QPalette light(QColor(0xef, 0xef, 0xef), QColor(0xfa, 0xfa, 0xfa));
    for (const QPalette &palette : {light, Theme::darkPalette()}) {
        const QColor ground = palette.color(QPalette::Window);
        for (const WeatherDisplayStyle style : weatherDisplayStyles()) {
            for (const int celsius : {-30, -15, -5, 3, 8, 12, 18, 22, 28, 33, 40}) {
                for (const int code : {0, 61, 63, 65, 71, 95}) {
                    const WeatherInk ink = weatherInk(style, weatherGradient(celsius, code), palette, ground);
                    const std::string where =
                        rawValue(style).toStdString() + " at " + std::to_string(celsius) + ", " + std::to_string(code);
                    EXPECT_GE(worstContrast(ink.text, ink.groundFrom, ink.groundTo), 4.5) << where;
                    EXPECT_GE(worstContrast(ink.quietText, ink.groundFrom, ink.groundTo), 4.5) << where;
                    EXPECT_GE(worstContrast(ink.temperature, ink.pillFrom, ink.pillTo), 4.5) << where;
                    EXPECT_GE(worstContrast(ink.symbol, ink.chipFrom, ink.chipTo), 3) << where;
                }
            }
        }
    }
}

struct WeatherUi : UiWorld {
    FakeHttp http;
    FakeLocationService location;
    FakeGeocoder geocoder;
    WeatherManager weather{{defaults, debugMode, notifications, clock, powerEvents, http, location, geocoder}};

    WeatherUi()
    {
        http.answers(u"*"_s, 200,
                     R"({"current":{"temperature_2m":20.5,"weather_code":2,"is_day":1},)"
                     R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})");
        geocoder.places.insert(u"Paris"_s, QList<Placemark>{{Coordinates{48.8566, 2.3522}, u"Paris"_s, {}}});
    }
    void answer()
    {
        geocoder.deliver();
        http.deliverAll();
    }
};

TEST(WeatherRow, SaysWhatThereIs)
{
    WeatherUi world;
    int opened = 0;
    QWidget menu;
    auto *row = new WeatherRowView(
        world.weather, world.notifications, world.clock, [&opened] { ++opened; }, &menu);
    const auto said = [row] { return row->accessibleDescription(); };
    world.weather.setLocationMode(WeatherLocationMode::Manual);
    EXPECT_EQ(said(), text("weather.noCity"_text));
    world.weather.setManualCity(u"Atlantis"_s);
    world.weather.geocodeAndFetch();
    EXPECT_EQ(said(), text("weather.locationPending"_text));
    world.answer();
    EXPECT_EQ(said(), text("weather.unavailable"_text));
    world.weather.setManualCity(u"Paris"_s);
    world.weather.geocodeAndFetch();
    world.answer();
    EXPECT_TRUE(said().contains(text("weather.condition.partlyCloudy"_text)));
    EXPECT_FALSE(said().contains(text("weather.minutesAgo %lld"_text, 1)));
    world.http.answers(u"*"_s, 500);
    world.clock.setNow(world.clock.now() + 7300);
    world.weather.geocodeAndFetch();
    world.answer();
    EXPECT_TRUE(said().contains(text("weather.hoursAgo %lld"_text, 2)));
    world.location.allowed = LocationService::Authorization::Denied;
    world.weather.setLocationMode(WeatherLocationMode::Automatic);
    EXPECT_EQ(said(), text("weather.locationDenied"_text));
    QTest::keyClick(row, Qt::Key_Return);
    QTest::mouseClick(row, Qt::LeftButton);
    EXPECT_EQ(opened, 2);
}

TEST(WeatherRow, GrowsOldAndChangesStyleWhileItIsShown)
{
    WeatherUi world;
    const WidgetRowFactory factory = [&world](WidgetType, QWidget *parent) -> QWidget * {
        return new WeatherRowView(
            world.weather, world.notifications, world.clock, [] {}, parent);
    };
    world.weather.setManualCity(u"Paris"_s);
    world.weather.setLocationMode(WeatherLocationMode::Manual);
    world.answer();
    world.http.answers(u"*"_s, 500);
    world.weather.geocodeAndFetch();
    world.answer();
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Widget;
    entry.widget = WidgetType::Weather;
    const std::size_t before = world.clock.pending();
    {
        MenuPanel panel({entry}, factory);
        panel.resize(panel.wantedSize());
        panel.show();
        const auto *row = panel.findChild<WeatherRowView *>();
        EXPECT_TRUE(row->accessibleDescription().contains(text("weather.minutesAgo %lld"_text, 1)));
        world.clock.advance(std::chrono::minutes(5));
        EXPECT_TRUE(row->accessibleDescription().contains(text("weather.minutesAgo %lld"_text, 5)));
        for (const WeatherDisplayStyle style : weatherDisplayStyles()) {
            world.weather.setDisplayStyle(style);
            QCoreApplication::sendPostedEvents();
            EXPECT_EQ(row->height(), row->sizeHint().height()) << rawValue(style).toStdString();
        }
    }
    EXPECT_EQ(world.clock.pending(), before);
}

TEST(WeatherSettings, SearchTheTypedCityAndChooseAStyle)
{
    WeatherUi world;
    WeatherSection section(world.weather, world.notifications, nullptr);
    auto *city = section.findChild<QLineEdit *>(u"city"_s);
    auto *state = section.findChild<QLabel *>(u"cityState"_s);
    EXPECT_FALSE(city->isEnabled());
    section.findChild<QRadioButton *>(u"mode.2"_s)->click();
    EXPECT_TRUE(city->isEnabled());
    QTest::keyClicks(city, u"Paris"_s);
    section.refresh();
    EXPECT_EQ(city->text(), u"Paris"_s) << "what is being typed stays";
    EXPECT_TRUE(world.weather.manualCity().isEmpty());
    section.findChild<QPushButton *>(u"search"_s)->click();
    EXPECT_EQ(state->text(), text("weather.searching"_text));
    world.answer();
    EXPECT_EQ(state->text(), text("weather.cityFound %@"_text, u"Paris"_s));
    section.findChild<QRadioButton *>(u"style.zephyr"_s)->click();
    EXPECT_EQ(world.weather.displayStyle(), WeatherDisplayStyle::Zephyr);
}

} // namespace
} // namespace orvelle::test
