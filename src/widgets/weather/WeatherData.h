#pragma once

#include "base/Timestamp.h"
#include "platform/LocationService.h"
#include "widgets/weather/WeatherModes.h"

#include <QByteArray>

namespace orvelle {

/// One reading. Temperatures are in degrees Celsius, as served.
struct WeatherData {
    double temperatureCurrent = 0;
    double temperatureMin = 0; ///< of today
    double temperatureMax = 0;
    qint64 weatherCode = 0; ///< WMO code table 4677, as the service gives it
    bool isDay = true;
    QString cityName;
    Timestamp fetchDate; ///< when the reading was published
    std::optional<Coordinates> location;

    /// The condition in words.
    QString conditionDescription() const;
    /// The name of the condition's symbol.
    QString conditionIcon() const;

    friend bool operator==(const WeatherData &, const WeatherData &) = default;
};

/// The stored form: JSON in the order of the fields, dates as seconds since
/// 2001-01-01 UTC.
QByteArray encodeWeather(const WeatherData &data);
/// Absent for anything but a whole record with believable numbers.
std::optional<WeatherData> decodeWeather(const QByteArray &json);

/// Whether a temperature in degrees Celsius could be measured on the earth,
/// with a wide margin. False for NaN.
constexpr bool isTemperature(double celsius)
{
    return celsius >= -150 && celsius <= 150;
}

/// Degrees Celsius in the unit, rounded to a whole number, halves away from
/// zero: "21°", "70°F".
QString temperatureText(double celsius, WeatherTemperatureUnit unit);

} // namespace orvelle
