#include "app/WeatherServices.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "services/DebugModeManager.h"
#include "ui/menu/rows/WeatherRowView.h"
#include "ui/settings/WeatherSection.h"
#include "widgets/weather/OpenMeteo.h"
#include "widgets/weather/WeatherCommand.h"
#include "widgets/weather/WeatherKeys.h"

#include <QProcess>

namespace orvelle {

using namespace Qt::StringLiterals;

WeatherServices::WeatherServices(const Surroundings &surroundings)
    : m_surroundings(surroundings),
      m_location(surroundings.clock),
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

std::optional<Coordinates> WeatherServices::place() const
{
    const auto &data = m_weather.weatherData();
    return data && data->location ? data->location : m_weather.lastLocation();
}

void WeatherServices::openForecast()
{
    m_surroundings.closeMenu();
    const QString key = m_surroundings.debugMode.key(QString::fromLatin1(weatherkeys::openCommand));
    const QString command = m_surroundings.defaults.get<QString>(key).value_or(QString()).trimmed();
    if (openByCommand(command) || openInApplication())
        return;
    const auto page = filledIn(u"https://www.yr.no/en/forecast/daily-table/{latitude},{longitude}"_s, place());
    m_surroundings.workspace.openUrl(QUrl(page.value_or(u"https://www.yr.no/en"_s)));
}

/// False when there is nothing that could be opened.
bool WeatherServices::openByCommand(const QString &pattern)
{
    const auto command = filledIn(pattern, place());
    if (!command)
        return false;
    if (command->startsWith(u"http://"_s) || command->startsWith(u"https://"_s)) {
        m_surroundings.workspace.openUrl(QUrl(*command));
        return true;
    }
    QStringList words = QProcess::splitCommand(*command);
    if (words.isEmpty())
        return false;
    const QString program = words.takeFirst();
    const bool isStarted = QProcess::startDetached(program, words);
    if (!isStarted)
        qCWarning(lcWeather, "The weather command could not be started");
    return isStarted;
}

bool WeatherServices::openInApplication()
{
    for (const QString &id : {u"org.gnome.Weather.desktop"_s, u"org.kde.kweather.desktop"_s}) {
        if (const auto application = m_applications.find({}, id)) {
            m_applications.launch(application->path, id);
            return true;
        }
    }
    return false;
}

} // namespace orvelle
