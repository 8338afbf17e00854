#include "platform/freedesktop/http/HttpGeocoder.h"
#include "widgets/weather/OpenMeteo.h"
#include "widgets/weather/WeatherData.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// What is taken from a service's answer is believable, and a kept reading
/// comes back from its own written form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto reply = decodeOpenMeteo(bytes);
    if (reply && !isTemperature(reply->current.temperature_2m))
        std::abort();
    const auto reading = decodeWeather(bytes);
    if (reading && decodeWeather(encodeWeather(*reading)) != reading)
        std::abort();
    for (const Placemark &each : decodeGeocoding(bytes, QStringLiteral("a, b")).value_or(QList<Placemark>())) {
        if (each.location && !isValid(*each.location))
            std::abort();
    }
    static_cast<void>(decodeReverse(bytes));
    return 0;
}
