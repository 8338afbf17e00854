#include "widgets/weather/WeatherCommand.h"

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int decimals = 3;

} // namespace

std::optional<QString> filledIn(QString pattern, const std::optional<Coordinates> &place)
{
    const QString latitude = u"{latitude}"_s;
    const QString longitude = u"{longitude}"_s;
    if (!place)
        return pattern.contains(latitude) || pattern.contains(longitude) ? std::nullopt : std::optional(pattern);
    return pattern.replace(latitude, QString::number(place->latitude, 'f', decimals))
        .replace(longitude, QString::number(place->longitude, 'f', decimals));
}

} // namespace orvelle
