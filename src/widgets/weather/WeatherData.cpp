#include "widgets/weather/WeatherData.h"

#include "base/JsonReader.h"
#include "base/JsonWriter.h"
#include "base/Text.h"

#include <array>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

struct Condition {
    std::array<int, 4> codes; ///< filled up with -1
    TextKey description;
    QLatin1StringView dayIcon;
    QLatin1StringView nightIcon = dayIcon;
};
constexpr std::array<Condition, 13> conditions{{
    {{0, -1, -1, -1}, "weather.condition.clear"_text, "sun.max.fill"_L1, "moon.fill"_L1},
    {{1, -1, -1, -1}, "weather.condition.mainlyClear"_text, "sun.min.fill"_L1, "moon.fill"_L1},
    {{2, -1, -1, -1}, "weather.condition.partlyCloudy"_text, "cloud.sun.fill"_L1, "cloud.moon.fill"_L1},
    {{3, -1, -1, -1}, "weather.condition.overcast"_text, "cloud.fill"_L1},
    {{45, 48, -1, -1}, "weather.condition.fog"_text, "cloud.fog.fill"_L1},
    {{51, 53, 55, -1}, "weather.condition.drizzle"_text, "cloud.drizzle.fill"_L1},
    {{56, 57, -1, -1}, "weather.condition.freezingDrizzle"_text, "cloud.sleet.fill"_L1},
    {{61, 63, 65, -1}, "weather.condition.rain"_text, "cloud.rain.fill"_L1},
    {{66, 67, -1, -1}, "weather.condition.freezingRain"_text, "cloud.sleet.fill"_L1},
    {{71, 73, 75, 77}, "weather.condition.snow"_text, "cloud.snow.fill"_L1},
    {{80, 81, 82, -1}, "weather.condition.showers"_text, "cloud.heavyrain.fill"_L1},
    {{85, 86, -1, -1}, "weather.condition.snowShowers"_text, "cloud.snow.fill"_L1},
    {{95, 96, 99, -1}, "weather.condition.thunderstorm"_text, "cloud.bolt.rain.fill"_L1},
}};
constexpr Condition anyOther{{-1, -1, -1, -1}, "weather.condition.cloudy"_text, "cloud.fill"_L1};

const Condition &conditionOf(qint64 code)
{
    for (const Condition &each : conditions) {
        for (const int known : each.codes) {
            if (known >= 0 && known == code)
                return each;
        }
    }
    return anyOther;
}

std::optional<double> temperature(const JsonValue &record, std::string_view key)
{
    const auto member = record.member(key);
    const auto value = member ? member->asDouble() : std::nullopt;
    return value && isTemperature(*value) ? value : std::nullopt;
}

std::optional<double> number(const JsonValue &record, std::string_view key)
{
    const auto member = record.member(key);
    return member ? member->asDouble() : std::nullopt;
}

/// Both coordinates or none; false for anything else.
bool readLocation(const JsonValue &record, std::optional<Coordinates> &location)
{
    if (!record.member("latitude") && !record.member("longitude"))
        return true;
    const auto latitude = number(record, "latitude");
    const auto longitude = number(record, "longitude");
    if (!latitude || !longitude || !isValid(Coordinates{*latitude, *longitude}))
        return false;
    location = Coordinates{*latitude, *longitude};
    return true;
}

} // namespace

QString WeatherData::conditionDescription() const
{
    return text(conditionOf(weatherCode).description);
}

QString WeatherData::conditionIcon() const
{
    const Condition &condition = conditionOf(weatherCode);
    return isDay ? condition.dayIcon : condition.nightIcon;
}

QByteArray encodeWeather(const WeatherData &data)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("temperatureCurrent");
    writer.number(data.temperatureCurrent);
    writer.key("temperatureMin");
    writer.number(data.temperatureMin);
    writer.key("temperatureMax");
    writer.number(data.temperatureMax);
    writer.key("weatherCode");
    writer.number(data.weatherCode);
    writer.key("isDay");
    writer.boolean(data.isDay);
    writer.key("cityName");
    writer.string(data.cityName);
    writer.key("fetchDate");
    writer.number(data.fetchDate.seconds);
    if (data.location) {
        writer.key("latitude");
        writer.number(data.location->latitude);
        writer.key("longitude");
        writer.number(data.location->longitude);
    }
    writer.endObject();
    return writer.take();
}

std::optional<WeatherData> decodeWeather(const QByteArray &json)
{
    const auto document = JsonDocument::parse(json);
    if (!document)
        return std::nullopt;
    const JsonValue record = document->root();
    const auto current = temperature(record, "temperatureCurrent");
    const auto lowest = temperature(record, "temperatureMin");
    const auto highest = temperature(record, "temperatureMax");
    const auto code = record.member("weatherCode");
    const auto isDay = record.member("isDay");
    const auto city = jsonText(record.member("cityName"));
    const auto date = number(record, "fetchDate");
    const bool whole =
        current && lowest && highest && code && code->asInt() && isDay && isDay->asBool() && city && date;
    WeatherData data;
    if (!whole || !readLocation(record, data.location))
        return std::nullopt;
    data.temperatureCurrent = *current;
    data.temperatureMin = *lowest;
    data.temperatureMax = *highest;
    data.weatherCode = *code->asInt();
    data.isDay = *isDay->asBool();
    data.cityName = *city;
    data.fetchDate = Timestamp{*date};
    return data;
}

QString temperatureText(double celsius, WeatherTemperatureUnit unit)
{
    const bool inFahrenheit = unit == WeatherTemperatureUnit::Fahrenheit;
    const double value = inFahrenheit ? celsius * 9 / 5 + 32 : celsius;
    const QString suffix = inFahrenheit ? u"°F"_s : u"°"_s;
    return QString::number(static_cast<qint64>(std::round(value))) + suffix;
}

} // namespace orvelle
