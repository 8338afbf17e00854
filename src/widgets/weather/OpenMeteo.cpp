#include "widgets/weather/OpenMeteo.h"

#include "base/HostAddress.h"
#include "base/JsonReader.h"
#include "widgets/weather/WeatherData.h"

#include <array>
#include <charconv>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds idleTime{8};
constexpr std::chrono::seconds wholeTime{12};
constexpr qint64 mostBytes = qint64(1) << 20;

std::optional<double> temperature(const JsonValue &value)
{
    const auto number = value.asDouble();
    return number && isTemperature(*number) ? number : std::nullopt;
}

std::optional<QList<double>> temperatures(const std::optional<JsonValue> &list)
{
    if (!list || !list->isArray())
        return std::nullopt;
    QList<double> all;
    const bool whole = list->forEachElement([&all](const JsonValue &each) {
        const auto number = temperature(each);
        if (number)
            all += *number;
        return number.has_value();
    });
    return whole ? std::optional(all) : std::nullopt;
}

std::optional<OpenMeteoResponse::Current> currentOf(const JsonValue &record)
{
    const auto degrees = record.member("temperature_2m");
    const auto code = record.member("weather_code");
    const auto isDay = record.member("is_day");
    if (!degrees || !temperature(*degrees) || !code || !code->asInt() || !isDay || !isDay->asInt())
        return std::nullopt;
    return OpenMeteoResponse::Current{*temperature(*degrees), *code->asInt(), *isDay->asInt()};
}

} // namespace

std::optional<OpenMeteoResponse> decodeOpenMeteo(const QByteArray &body)
{
    const auto document = JsonDocument::parse(body);
    if (!document)
        return std::nullopt;
    const auto current = document->root().member("current");
    const auto daily = document->root().member("daily");
    if (!current || !daily)
        return std::nullopt;
    const auto now = currentOf(*current);
    const auto lowest = temperatures(daily->member("temperature_2m_min"));
    const auto highest = temperatures(daily->member("temperature_2m_max"));
    if (!now || !lowest || !highest)
        return std::nullopt;
    return OpenMeteoResponse{*now, {*lowest, *highest}};
}

HttpRequest forecastRequest(const QUrl &service, const Coordinates &place)
{
    const QByteArray query = "latitude=" + shortestText(place.latitude) +
                             "&longitude=" + shortestText(place.longitude) +
                             "&daily=temperature_2m_min,temperature_2m_max&current=temperature_2m,weather_code,is_day"
                             "&timezone=auto&forecast_days=1";
    HttpRequest request;
    request.url = service;
    request.url.setPath(u"/v1/forecast"_s);
    request.url.setQuery(QString::fromLatin1(query));
    request.idleTimeout = idleTime;
    request.totalTimeout = wholeTime;
    request.maxBytes = mostBytes;
    return request;
}

QByteArray shortestText(double number)
{
    // The text conversion of many languages writes small numbers with an
    // exponent, and this is what the service's other clients send.
    constexpr double smallest = 1e-4;
    const bool plain = number == 0 || std::abs(number) >= smallest;
    std::array<char, 512> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), number,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific);
    QByteArray text(buffer.data(), end.ptr - buffer.data());
    if (plain && !text.contains('.'))
        text += ".0";
    return text;
}

QUrl serviceAddress(const QString &setting, const QString &fallback)
{
    const QUrl chosen = hostAddress(setting);
    return chosen.isEmpty() ? hostAddress(fallback) : chosen;
}

} // namespace orvelle
