#pragma once

#include <QLoggingCategory>

namespace orvelle {

Q_DECLARE_LOGGING_CATEGORY(lcWeather)

/// The stored keys of the weather widget, before debug mode.
namespace weatherkeys {

inline constexpr const char *locationMode = "WeatherLocationMode";
inline constexpr const char *widgetEnabled = "WeatherWidgetEnabled"; ///< of versions without modes
inline constexpr const char *manualCity = "WeatherManualCity";
inline constexpr const char *menuBarOnly = "WeatherMenuBarOnly";
inline constexpr const char *displayStyle = "WeatherDisplayStyle";
inline constexpr const char *cache = "WeatherCache";

// Set by hand: where the services are, and what a click on the row opens.
inline constexpr const char *serviceHost = "WeatherServiceHost";
inline constexpr const char *geocoderHost = "WeatherGeocoderHost";
inline constexpr const char *reverseGeocoderHost = "WeatherReverseGeocoderHost";
inline constexpr const char *openCommand = "WeatherOpenCommand";

} // namespace weatherkeys

} // namespace orvelle
