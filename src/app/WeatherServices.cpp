#include "app/WeatherServices.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "services/DebugModeManager.h"
#include "ui/menu/rows/WeatherRowView.h"
#include "ui/settings/WeatherSection.h"
#include "widgets/weather/OpenMeteo.h"
#include "widgets/weather/WeatherKeys.h"

#include <QProcess>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int pageDecimals = 3;

} // namespace

WeatherServices::WeatherServices(const Surroundings &surroundings)
    : m_surroundings(surroundings),
      m_location(QDBusConnection::systemBus(), surroundings.clock),
      m_geocoder({surroundings.http, surroundings.clock,
                  [this] { return host(weatherkeys::geocoderHost, "geocoding-api.open-meteo.com"); },
                  [this] { return host(weatherkeys::reverseGeocoderHost, "nominatim.openstreetmap.org"); }}),
      m_weather({surroundings.defaults, surroundings.debugMode, surroundings.notifications, surroundings.clock,
                 surroundings.powerEvents, surroundings.http, m_location, m_geocoder})
{
}

void WeatherServices::addTo(WidgetJobs &jobs, WidgetSectionTable &sections)
{
    jobs.add(WidgetType::Weather, {[this] { return m_weather.isEnabled(); },
                                   [this] { return m_weather.menuBarOnly(); },
                                   [this] { m_weather.startMonitoring(); },
                                   {},
                                   {},
                                   [this](QWidget *parent) -> QWidget * {
                                       return new WeatherRowView(
                                           m_weather, m_surroundings.notifications, m_surroundings.clock,
                                           [this] { openForecast(); }, parent);
                                   },
                                   [this] { m_weather.refreshIfNeeded(); }});
    sections.insert(WidgetType::Weather, [this](QWidget *parent) {
        return new WeatherSection(m_weather, m_surroundings.notifications, parent);
    });
}

QUrl WeatherServices::host(const char *key, const char *fallback) const
{
    const QString stored = m_surroundings.debugMode.key(QString::fromLatin1(key));
    return serviceAddress(m_surroundings.defaults.get<QString>(stored).value_or(QString()),
                          QString::fromLatin1(fallback));
}

QString WeatherServices::filled(QString pattern) const
{
    const auto &data = m_weather.weatherData();
    const Coordinates place = data ? data->location.value_or(Coordinates()) : Coordinates();
    return pattern.replace(u"{latitude}"_s, QString::number(place.latitude, 'f', pageDecimals))
        .replace(u"{longitude}"_s, QString::number(place.longitude, 'f', pageDecimals));
}

void WeatherServices::openForecast()
{
    m_surroundings.closeMenu();
    const QString key = m_surroundings.debugMode.key(QString::fromLatin1(weatherkeys::openCommand));
    const QString command = m_surroundings.defaults.get<QString>(key).value_or(QString()).trimmed();
    if (command.startsWith(u"http://"_s) || command.startsWith(u"https://"_s)) {
        m_surroundings.workspace.openUrl(QUrl(filled(command)));
        return;
    }
    if (!command.isEmpty()) {
        QStringList words = QProcess::splitCommand(filled(command));
        const QString program = words.takeFirst();
        if (!QProcess::startDetached(program, words))
            qCWarning(lcWeather, "The weather command could not be started");
        return;
    }
    for (const QString &id : {u"org.gnome.Weather.desktop"_s, u"org.kde.kweather.desktop"_s}) {
        if (const auto application = m_applications.find({}, id))
            return m_applications.launch(application->path, id);
    }
    const bool hasPlace = m_weather.weatherData() && m_weather.weatherData()->location;
    const QString page = u"https://www.yr.no/en/forecast/daily-table/{latitude},{longitude}"_s;
    m_surroundings.workspace.openUrl(QUrl(hasPlace ? filled(page) : u"https://www.yr.no/en"_s));
}

} // namespace orvelle
