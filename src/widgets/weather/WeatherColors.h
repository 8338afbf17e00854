#pragma once

#include <QtGlobal>

namespace orvelle {

/// Channels from 0 to 255.
struct WeatherColor {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const WeatherColor &, const WeatherColor &) = default;
};

struct WeatherGradient {
    WeatherColor from;
    WeatherColor to;
    friend bool operator==(const WeatherGradient &, const WeatherGradient &) = default;
};

/// The two colours of a reading: from the band of its temperature in degrees
/// Celsius, pulled towards grey or dark by its weather code.
WeatherGradient weatherGradient(double celsius, qint64 weatherCode);

} // namespace orvelle
