#pragma once

#include "app/WidgetJobs.h"
#include "platform/freedesktop/GeoClueLocation.h"
#include "platform/freedesktop/GioApplications.h"
#include "platform/freedesktop/http/HttpGeocoder.h"
#include "ui/settings/WidgetSection.h"
#include "widgets/weather/WeatherManager.h"

namespace orvelle {

class Workspace;

/// The weather widget with what it stands on. Main thread.
class WeatherServices
{
public:
    /// All of it outlives this.
    struct Surroundings {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        const PowerEvents &powerEvents;
        Clock &clock;
        HttpClient &http;
        Workspace &workspace;
        std::function<void()> closeMenu;
    };
    explicit WeatherServices(const Surroundings &surroundings);

    void addTo(WidgetJobs &jobs, WidgetSectionTable &sections);
    /// Closes the menu, then shows the forecast: what the "WeatherOpenCommand"
    /// setting says (an address or a command, in which {latitude} and
    /// {longitude} are filled in; passed over while it wants a place and none
    /// is known), else an installed weather application, else a page in the
    /// browser.
    void openForecast();

private:
    QUrl host(const char *key, const char *fallback) const;
    std::optional<Coordinates> place() const;
    bool openByCommand(const QString &pattern);
    bool openInApplication();

    Surroundings m_surroundings;
    GeoClueLocation m_location;
    HttpGeocoder m_geocoder;
    GioApplications m_applications;
    WeatherManager m_weather;
};

} // namespace orvelle
