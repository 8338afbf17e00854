#include "base/JsonReader.h"
#include "platform/freedesktop/http/HttpGeocoder.h"

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const JsonValue &record, std::string_view key)
{
    return jsonText(record.member(key)).value_or(QString());
}

/// The first of the members that has a text.
QString firstOf(const JsonValue &record, std::initializer_list<std::string_view> keys)
{
    for (const std::string_view key : keys) {
        const QString text = textOf(record, key);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

std::optional<Placemark> placeOf(const JsonValue &record)
{
    const auto latitude = record.member("latitude");
    const auto longitude = record.member("longitude");
    if (!latitude || !longitude || !latitude->asDouble() || !longitude->asDouble())
        return std::nullopt;
    const Coordinates place{*latitude->asDouble(), *longitude->asDouble()};
    if (!isValid(place))
        return std::nullopt;
    return Placemark{place, textOf(record, "name"), textOf(record, "admin1")};
}

/// Whether every part of the address names something that the place lies in.
bool liesIn(const JsonValue &record, const QStringList &parts)
{
    return std::ranges::all_of(parts, [&record](const QString &part) {
        constexpr std::array<std::string_view, 6> areas{"country", "country_code", "admin1",
                                                        "admin2",  "admin3",       "admin4"};
        return std::ranges::any_of(areas, [&](std::string_view area) {
            return textOf(record, area).compare(part.trimmed(), Qt::CaseInsensitive) == 0;
        });
    });
}

} // namespace

std::optional<QList<Placemark>> decodeGeocoding(const QByteArray &body, const QString &address)
{
    const auto document = JsonDocument::parse(body);
    if (!document || !document->root().isObject())
        return std::nullopt;
    const auto results = document->root().member("results");
    if (!results)
        return QList<Placemark>();
    const QStringList parts = address.split(u',', Qt::SkipEmptyParts).mid(1);
    QList<Placemark> within;
    QList<Placemark> others;
    const bool whole = results->forEachElement([&](const JsonValue &each) {
        const auto place = placeOf(each);
        if (place)
            (liesIn(each, parts) ? within : others) += *place;
        return place.has_value();
    });
    return whole ? std::optional(within + others) : std::nullopt;
}

std::optional<QList<Placemark>> decodeReverse(const QByteArray &body)
{
    const auto document = JsonDocument::parse(body);
    if (!document || !document->root().isObject())
        return std::nullopt;
    // In the middle of the sea there is no address.
    const auto address = document->root().member("address");
    if (!address)
        return QList<Placemark>();
    if (!address->isObject())
        return std::nullopt;
    return QList<Placemark>{{{},
                             firstOf(*address, {"city", "town", "village", "municipality", "hamlet"}),
                             firstOf(*address, {"state", "region", "county"})}};
}

} // namespace orvelle
