#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace orvelle {

/// Where the weather is looked up for; Disabled means that the widget is off.
enum class WeatherLocationMode {
    Disabled,
    Automatic, ///< where this machine is
    Manual,    ///< the city that was typed
};

/// How the row looks.
enum class WeatherDisplayStyle { Aurora, Brume, Horizon, Cristal, Zephyr };

enum class WeatherTemperatureUnit { Celsius, Fahrenheit };

QString rawValue(WeatherLocationMode mode);
QString rawValue(WeatherDisplayStyle style);
/// Absent for a text that names none.
std::optional<WeatherLocationMode> weatherLocationModeFromRawValue(QStringView raw);
std::optional<WeatherDisplayStyle> weatherDisplayStyleFromRawValue(QStringView raw);

/// Every style, in the order in which they are offered.
QList<WeatherDisplayStyle> weatherDisplayStyles();
/// The style's name for the user.
QString weatherStyleLabel(WeatherDisplayStyle style);

} // namespace orvelle
