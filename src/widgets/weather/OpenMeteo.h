#pragma once

#include "platform/HttpClient.h"
#include "platform/LocationService.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace orvelle {

/// The members that are used of a reply of the Open-Meteo forecast service
/// (https://open-meteo.com/en/docs). Temperatures in degrees Celsius.
struct OpenMeteoResponse {
    struct Current {
        double temperature_2m = 0;
        qint64 weather_code = 0;
        qint64 is_day = 0;
    };
    struct Daily {
        QList<double> temperature_2m_min;
        QList<double> temperature_2m_max;
    };
    Current current;
    Daily daily;
};

/// Absent when a member is missing or of another type, or a temperature is
/// none that could be. Other members are ignored.
std::optional<OpenMeteoResponse> decodeOpenMeteo(const QByteArray &body);

/// The request for the weather at a place. `service` is the service's scheme
/// and host.
HttpRequest forecastRequest(const QUrl &service, const Coordinates &place);

/// A number in its shortest decimal form that reads back to the same bits,
/// always with a fraction or an exponent: "48.8566", "2.0", "1e-05".
QByteArray shortestText(double number);

/// The address of a service that a setting names: "host", "host:port", or with
/// "http://" or "https://" before it; https where nothing is said. The same of
/// `fallback` for a text that names no host.
QUrl serviceAddress(const QString &setting, const QString &fallback);

} // namespace orvelle
