#pragma once

#include "platform/Geocoder.h"
#include "platform/HttpClient.h"
#include "platform/LocationService.h"
#include "widgets/weather/WeatherData.h"

#include <QObject>
#include <QUrl>

#include <variant>

namespace orvelle {

class Clock;
class DebugModeManager;
class Notifications;
class PowerEvents;
class Timer;
class UserDefaults;
struct OpenMeteoResponse;

/// The weather widget: its settings, and the last reading with its cache. A
/// reading is fetched hourly while the widget is on, after the machine woke,
/// and when the menu opens and the last one is older than a quarter of an
/// hour. No failure clears a reading. Main thread.
class WeatherManager : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Clock &clock;
        const PowerEvents &powerEvents;
        HttpClient &http;
        LocationService &location;
        Geocoder &geocoder;
    };
    /// Reads the settings and the cache; fetches nothing before
    /// startMonitoring() or refreshIfNeeded().
    explicit WeatherManager(const Services &services, QObject *parent = nullptr);
    ~WeatherManager() override;

    /// What became of the typed city.
    enum class CitySearch { None, Searching, Found, NotFound, Failed };

    const std::optional<WeatherData> &weatherData() const { return m_weatherData; }
    bool lastFetchFailed() const { return m_lastFetchFailed; }
    bool isGeocodingCity() const { return m_citySearch == CitySearch::Searching; }
    CitySearch citySearch() const { return m_citySearch; }
    const std::optional<Coordinates> &lastLocation() const { return m_lastLocation; }
    /// The position is wanted, and the system does not give it.
    bool isLocationRefused() const;
    LocationService::Authorization authorization() const { return m_services.location.authorization(); }

    WeatherLocationMode locationMode() const { return m_settings.mode; }
    /// Clears the reading, which was for another place.
    void setLocationMode(WeatherLocationMode mode);
    const QString &manualCity() const { return m_settings.city; }
    /// Looks nothing up; geocodeAndFetch() does.
    void setManualCity(const QString &city);
    bool menuBarOnly() const { return m_settings.menuBarOnly; }
    void setMenuBarOnly(bool only);
    WeatherDisplayStyle displayStyle() const { return m_settings.style; }
    void setDisplayStyle(WeatherDisplayStyle style);
    bool isEnabled() const { return locationMode() != WeatherLocationMode::Disabled; }
    /// By the locale's system of measures.
    static WeatherTemperatureUnit temperatureUnit();

    void startMonitoring();
    void stopMonitoring();
    void refreshIfNeeded();
    bool isCacheStale() const;
    /// The reading is so old that the hourly pace was missed.
    bool isReadingOld() const;
    /// Looks `manualCity` up, then fetches.
    void geocodeAndFetch();

signals:
    /// Any of the values above changed that weatherChanged does not tell of.
    void stateChanged();

private:
    struct Settings {
        WeatherLocationMode mode = WeatherLocationMode::Disabled;
        QString city;
        bool menuBarOnly = false;
        WeatherDisplayStyle style = WeatherDisplayStyle::Aurora;
        friend bool operator==(const Settings &, const Settings &) = default;
    };
    struct NamedPlace {
        Coordinates place;
        QString city;
    };

    QString key(const char *base) const;
    Settings readSettings() const;
    void store(const char *base, const std::variant<bool, QString> &value);
    void adoptStored();
    void debugModeChanged();
    void modeChanged();
    void loadCache();
    void saveCache();
    void dropCalls();

    void refreshLocation();
    void askForLocation();
    void authorizationChanged();
    void located(const Coordinates &place);
    void locationFailed(const QString &reason);
    void geocoded(const QString &city, const Result<QList<Placemark>, QString> &found);
    void fetch(const Coordinates &place, const std::optional<QString> &name);
    void answered(const Coordinates &place, const std::optional<QString> &name,
                  const Result<HttpResponse, HttpError> &answer);
    void findName(const OpenMeteoResponse &reply, const Coordinates &place, const std::optional<QString> &name);
    void publish(const OpenMeteoResponse &reply, const NamedPlace &named);
    void reportFailure();
    void setCitySearch(CitySearch search);

    Services m_services;
    Settings m_settings; ///< as they hold now
    Settings m_seen;     ///< as the store had them when it was last looked at
    std::optional<WeatherData> m_weatherData;
    std::optional<Coordinates> m_lastLocation;
    QString m_locationError; ///< the last one, until there is a location
    std::optional<NamedPlace> m_cachedReverseGeocode;
    bool m_lastFetchFailed = false;
    CitySearch m_citySearch = CitySearch::None;
    std::unique_ptr<Timer> m_refreshTimer;
    std::unique_ptr<HttpCall> m_forecast;
    std::unique_ptr<GeocoderCall> m_geocoding;
    std::unique_ptr<GeocoderCall> m_naming;
};

} // namespace orvelle
