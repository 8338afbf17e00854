#include "base/Notifications.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "widgets/weather/OpenMeteo.h"
#include "widgets/weather/WeatherKeys.h"
#include "widgets/weather/WeatherManager.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcWeather, "WeatherManager", QtInfoMsg)

namespace {

constexpr double samePlaceDegrees = 0.05;

bool isSamePlace(const Coordinates &a, const Coordinates &b)
{
    return std::abs(a.latitude - b.latitude) < samePlaceDegrees &&
           std::abs(a.longitude - b.longitude) < samePlaceDegrees;
}

QString nameOf(const Result<QList<Placemark>, QString> &found)
{
    if (!found || found->isEmpty())
        return u"—"_s;
    const Placemark &first = found->constFirst();
    if (!first.locality.isEmpty())
        return first.locality;
    return first.administrativeArea.isEmpty() ? u"—"_s : first.administrativeArea;
}

bool isDenied(LocationService::Authorization authorization)
{
    using enum LocationService::Authorization;
    return authorization == Denied || authorization == Restricted;
}

} // namespace

bool WeatherManager::isLocationRefused() const
{
    return locationMode() == WeatherLocationMode::Automatic && isDenied(authorization());
}

void WeatherManager::refreshLocation()
{
    if (locationMode() == WeatherLocationMode::Automatic)
        askForLocation();
    else if (locationMode() == WeatherLocationMode::Manual)
        geocodeAndFetch();
}

void WeatherManager::askForLocation()
{
    const auto known = authorization();
    if (known == LocationService::Authorization::NotDetermined)
        m_services.location.requestAuthorization();
    else if (known == LocationService::Authorization::Authorized)
        m_services.location.requestLocation();
}

void WeatherManager::authorizationChanged()
{
    const auto known = authorization();
    if (isDenied(known))
        qCWarning(lcWeather, "Location access denied");
    else if (known == LocationService::Authorization::Authorized && locationMode() == WeatherLocationMode::Automatic)
        m_services.location.requestLocation();
    emit stateChanged();
}

void WeatherManager::located(const Coordinates &place)
{
    // An answer to a question of before the mode was changed.
    if (locationMode() != WeatherLocationMode::Automatic)
        return;
    m_lastLocation = place;
    m_locationError.clear();
    fetch(place, std::nullopt);
}

/// Said once while it lasts: each opening of the menu asks again.
void WeatherManager::locationFailed(const QString &reason)
{
    if (reason != std::exchange(m_locationError, reason))
        qCWarning(lcWeather).noquote() << u"Location error: "_s + reason;
}

void WeatherManager::geocodeAndFetch()
{
    const QString city = m_settings.city.trimmed();
    if (city.isEmpty())
        return;
    setCitySearch(CitySearch::Searching);
    m_geocoding = m_services.geocoder.geocode(
        city, [this, city](const Result<QList<Placemark>, QString> &found) { geocoded(city, found); });
}

void WeatherManager::geocoded(const QString &city, const Result<QList<Placemark>, QString> &found)
{
    const auto ended = std::move(m_geocoding);
    if (!found) {
        qCWarning(lcWeather).noquote() << u"Geocode error for '%1': %2"_s.arg(city, found.error());
        setCitySearch(CitySearch::Failed);
        return reportFailure();
    }
    const auto placed = std::ranges::find_if(*found, [](const Placemark &each) { return each.location.has_value(); });
    if (placed == found->end()) {
        qCWarning(lcWeather).noquote() << u"No coordinates found for '%1'"_s.arg(city);
        setCitySearch(CitySearch::NotFound);
        return reportFailure();
    }
    m_lastLocation = placed->location;
    setCitySearch(CitySearch::Found);
    fetch(*placed->location, placed->locality.isEmpty() ? city : placed->locality);
}

void WeatherManager::setCitySearch(CitySearch search)
{
    if (std::exchange(m_citySearch, search) != search)
        emit stateChanged();
}

void WeatherManager::fetch(const Coordinates &place, const std::optional<QString> &name)
{
    m_naming.reset();
    const QString host = m_services.defaults.get<QString>(key(weatherkeys::serviceHost)).value_or(QString());
    const HttpRequest request = forecastRequest(serviceAddress(host, u"api.open-meteo.com"_s), place);
    m_forecast = m_services.http.send(
        request, [this, place, name](const Result<HttpResponse, HttpError> &answer) { answered(place, name, answer); });
}

void WeatherManager::answered(const Coordinates &place, const std::optional<QString> &name,
                              const Result<HttpResponse, HttpError> &answer)
{
    const auto ended = std::move(m_forecast);
    if (!answer) {
        qCWarning(lcWeather).noquote() << u"Weather API error: "_s + answer.error().detail;
        return reportFailure();
    }
    if (answer->status < 200 || answer->status > 299) {
        qCWarning(lcWeather, "Weather API HTTP %ld", static_cast<long>(answer->status));
        return reportFailure();
    }
    const auto reply = decodeOpenMeteo(answer->body);
    if (!reply) {
        qCWarning(lcWeather, "Weather JSON decode error or empty data");
        return reportFailure();
    }
    findName(*reply, place, name);
}

void WeatherManager::findName(const OpenMeteoResponse &reply, const Coordinates &place,
                              const std::optional<QString> &name)
{
    if (!name && m_cachedReverseGeocode && isSamePlace(place, m_cachedReverseGeocode->place)) {
        // The remembered place stays, so that small steps do not add up.
        return publish(reply, {place, m_cachedReverseGeocode->city});
    }
    const auto publishAs = [this, reply, place](const QString &city) {
        m_cachedReverseGeocode = NamedPlace{place, city};
        publish(reply, {place, city});
    };
    if (name)
        return publishAs(*name);
    m_naming = m_services.geocoder.reverse(place, [this, publishAs](const Result<QList<Placemark>, QString> &found) {
        const auto ended = std::move(m_naming);
        publishAs(nameOf(found));
    });
}

void WeatherManager::publish(const OpenMeteoResponse &reply, const NamedPlace &named)
{
    const auto firstOf = [](const QList<double> &list) { return list.isEmpty() ? 0.0 : list.constFirst(); };
    WeatherData data;
    data.temperatureCurrent = reply.current.temperature_2m;
    data.temperatureMin = firstOf(reply.daily.temperature_2m_min);
    data.temperatureMax = firstOf(reply.daily.temperature_2m_max);
    data.weatherCode = reply.current.weather_code;
    data.isDay = reply.current.is_day == 1;
    data.cityName = named.city;
    data.fetchDate = m_services.clock.now();
    data.location = named.place;
    m_lastFetchFailed = false;
    m_weatherData = data;
    saveCache();
    emit m_services.notifications.weatherChanged();
}

void WeatherManager::reportFailure()
{
    m_lastFetchFailed = true;
    emit m_services.notifications.weatherChanged();
}

} // namespace orvelle
