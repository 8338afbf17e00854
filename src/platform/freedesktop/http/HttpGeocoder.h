#pragma once

#include "platform/Geocoder.h"

#include <QUrl>

#include <deque>

namespace orvelle {

class Clock;
class HttpClient;
class Timer;

/// Look-ups by two web services: addresses by one of the form of Open-Meteo's
/// geocoding service (https://open-meteo.com/en/docs/geocoding-api), places by
/// one of the form of Nominatim (https://nominatim.org/release-docs/latest/api/Reverse/).
/// At most one request a second goes out; a place is told to about 100 m.
class HttpGeocoder : public Geocoder
{
public:
    /// Scheme and host of each service, asked at each request.
    struct Services {
        HttpClient &http;
        Clock &clock;
        std::function<QUrl()> forward;
        std::function<QUrl()> reverse;
    };
    explicit HttpGeocoder(const Services &services);
    ~HttpGeocoder() override;

    std::unique_ptr<GeocoderCall> geocode(const QString &address, Done done) override;
    std::unique_ptr<GeocoderCall> reverse(const Coordinates &place, Done done) override;

private:
    class Call;
    using Decode = std::function<std::optional<QList<Placemark>>(const QByteArray &)>;

    std::unique_ptr<GeocoderCall> enqueue(const QUrl &url, Decode decode, Done done);
    void sendNext();

    Services m_services;
    std::deque<Call *> m_waiting;
    std::unique_ptr<Timer> m_pause; ///< since the last request, and until the next may go
};

/// The places in an answer to a look-up of `address`, those first that lie in
/// what follows its first comma. Absent for what is no such answer.
std::optional<QList<Placemark>> decodeGeocoding(const QByteArray &body, const QString &address);
std::optional<QList<Placemark>> decodeReverse(const QByteArray &body);

} // namespace orvelle
