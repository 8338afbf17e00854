#include "widgets/weather/WeatherManager.h"

#include "base/Notifications.h"
#include "platform/Clock.h"
#include "platform/PowerEvents.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "widgets/weather/WeatherKeys.h"

#include <QLocale>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double staleAfter = 900;
/// An hour, and the time that a fetch may take on a slow day.
constexpr double oldAfter = 4500;
constexpr std::chrono::seconds refreshPeriod{3600};

} // namespace

WeatherManager::WeatherManager(const Services &services, QObject *parent) : QObject(parent), m_services(services)
{
    m_settings = m_seen = readSettings();
    loadCache();
    const Notifications &notifications = services.notifications;
    connect(&notifications, &Notifications::debugModeChanged, this, &WeatherManager::debugModeChanged);
    connect(&services.powerEvents, &PowerEvents::didWake, this, &WeatherManager::refreshLocation);
    connect(&services.location, &LocationService::authorizationChanged, this, &WeatherManager::authorizationChanged);
    connect(&services.location, &LocationService::located, this, &WeatherManager::located);
    connect(&services.location, &LocationService::failed, this, &WeatherManager::locationFailed);
    // Documents that are taken in and other processes write past this object.
    connect(&notifications, &Notifications::weatherChanged, this, &WeatherManager::adoptStored);
    connect(&notifications, &Notifications::syncableSettingsChanged, this, &WeatherManager::adoptStored);
    connect(&services.defaults, &UserDefaults::changedExternally, this, &WeatherManager::adoptStored);
}

WeatherManager::~WeatherManager() = default;

QString WeatherManager::key(const char *base) const
{
    return m_services.debugMode.key(QString::fromLatin1(base));
}

WeatherManager::Settings WeatherManager::readSettings() const
{
    const UserDefaults &defaults = m_services.defaults;
    const auto textOf = [&](const char *base) { return defaults.get<QString>(key(base)).value_or(QString()); };
    const auto flagOf = [&](const char *base) { return defaults.get<bool>(key(base)).value_or(false); };
    Settings settings;
    // Versions without modes only knew on and off.
    settings.mode = weatherLocationModeFromRawValue(textOf(weatherkeys::locationMode))
                        .value_or(flagOf(weatherkeys::widgetEnabled) ? WeatherLocationMode::Automatic
                                                                     : WeatherLocationMode::Disabled);
    settings.city = textOf(weatherkeys::manualCity);
    settings.menuBarOnly = flagOf(weatherkeys::menuBarOnly);
    settings.style =
        weatherDisplayStyleFromRawValue(textOf(weatherkeys::displayStyle)).value_or(WeatherDisplayStyle::Aurora);
    return settings;
}

/// A failed write is reported by the store itself; the value holds for this run.
void WeatherManager::store(const char *base, const std::variant<bool, QString> &value)
{
    std::visit([&](const auto &each) { static_cast<void>(m_services.defaults.write(key(base), each)); }, value);
    m_seen = readSettings();
}

/// Takes over what somebody else stored. What this object could not store
/// differs from the store as well, but the store has not moved.
void WeatherManager::adoptStored()
{
    const Settings now = readSettings();
    const Settings before = std::exchange(m_seen, now);
    if (now == before)
        return;
    const Settings held = m_settings;
    const auto take = [&](auto member) {
        if (now.*member != before.*member)
            m_settings.*member = now.*member;
    };
    take(&Settings::mode);
    take(&Settings::city);
    take(&Settings::menuBarOnly);
    take(&Settings::style);
    if (m_settings == held)
        return;
    if (m_settings.mode != held.mode)
        modeChanged();
    else if (m_settings.city != held.city && m_settings.mode == WeatherLocationMode::Manual)
        geocodeAndFetch();
    emit m_services.notifications.weatherChanged();
}

void WeatherManager::debugModeChanged()
{
    m_seen = readSettings();
    m_settings.menuBarOnly = m_seen.menuBarOnly;
    m_settings.style = m_seen.style;
    loadCache();
    emit m_services.notifications.weatherChanged();
}

void WeatherManager::setLocationMode(WeatherLocationMode mode)
{
    if (mode == m_settings.mode)
        return;
    m_settings.mode = mode;
    store(weatherkeys::locationMode, rawValue(mode));
    modeChanged();
    emit m_services.notifications.weatherChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

void WeatherManager::modeChanged()
{
    m_lastLocation.reset();
    dropCalls();
    m_weatherData.reset();
    if (!isEnabled())
        return stopMonitoring();
    saveCache();
    startMonitoring();
}

/// What is on its way was asked for another place.
void WeatherManager::dropCalls()
{
    m_forecast.reset();
    m_geocoding.reset();
    m_naming.reset();
    setCitySearch(CitySearch::None);
}

void WeatherManager::setManualCity(const QString &city)
{
    if (city == m_settings.city)
        return;
    m_settings.city = city;
    store(weatherkeys::manualCity, city);
    emit m_services.notifications.syncableSettingsChanged();
}

void WeatherManager::setMenuBarOnly(bool only)
{
    if (only == m_settings.menuBarOnly)
        return;
    m_settings.menuBarOnly = only;
    store(weatherkeys::menuBarOnly, only);
    emit m_services.notifications.weatherChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

void WeatherManager::setDisplayStyle(WeatherDisplayStyle style)
{
    if (style == m_settings.style)
        return;
    m_settings.style = style;
    store(weatherkeys::displayStyle, rawValue(style));
    emit m_services.notifications.weatherChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

WeatherTemperatureUnit WeatherManager::temperatureUnit()
{
    return QLocale().measurementSystem() == QLocale::MetricSystem ? WeatherTemperatureUnit::Celsius
                                                                  : WeatherTemperatureUnit::Fahrenheit;
}

void WeatherManager::startMonitoring()
{
    m_refreshTimer = m_services.clock.repeating(refreshPeriod, [this] { refreshLocation(); });
    refreshLocation();
}

void WeatherManager::stopMonitoring()
{
    m_refreshTimer.reset();
}

void WeatherManager::refreshIfNeeded()
{
    // What is on its way would be dropped and asked for anew at each opening of
    // the menu, and on a slow line never arrive.
    const bool isAsking = m_geocoding || m_forecast || m_naming;
    if (isEnabled() && isCacheStale() && !isAsking)
        refreshLocation();
}

bool WeatherManager::isCacheStale() const
{
    return !m_weatherData || m_services.clock.now() - m_weatherData->fetchDate > staleAfter;
}

bool WeatherManager::isReadingOld() const
{
    return m_weatherData && m_services.clock.now() - m_weatherData->fetchDate > oldAfter;
}

void WeatherManager::loadCache()
{
    const auto stored = m_services.defaults.get<QByteArray>(key(weatherkeys::cache));
    m_weatherData = stored ? decodeWeather(*stored) : std::nullopt;
}

void WeatherManager::saveCache()
{
    UserDefaults &defaults = m_services.defaults;
    // A failed write is reported by the store; the reading holds for this run.
    if (m_weatherData)
        static_cast<void>(defaults.write(key(weatherkeys::cache), encodeWeather(*m_weatherData)));
    else if (defaults.value(key(weatherkeys::cache)))
        static_cast<void>(defaults.remove(key(weatherkeys::cache)));
}

} // namespace orvelle
