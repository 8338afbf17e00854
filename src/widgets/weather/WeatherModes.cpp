#include "widgets/weather/WeatherModes.h"

#include "base/Text.h"

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

struct Mode {
    WeatherLocationMode value;
    QLatin1StringView raw;
};
constexpr std::array<Mode, 3> modes{{
    {WeatherLocationMode::Disabled, "disabled"_L1},
    {WeatherLocationMode::Automatic, "automatic"_L1},
    {WeatherLocationMode::Manual, "manual"_L1},
}};

struct Style {
    WeatherDisplayStyle value;
    QLatin1StringView raw;
    TextKey label;
};
constexpr std::array<Style, 5> styles{{
    {WeatherDisplayStyle::Aurora, "aurora"_L1, "weather.style.aurora"_text},
    {WeatherDisplayStyle::Brume, "brume"_L1, "weather.style.brume"_text},
    {WeatherDisplayStyle::Horizon, "horizon"_L1, "weather.style.horizon"_text},
    {WeatherDisplayStyle::Cristal, "cristal"_L1, "weather.style.cristal"_text},
    {WeatherDisplayStyle::Zephyr, "zephyr"_L1, "weather.style.zephyr"_text},
}};

/// The tables are in the order of their enumerations.
template<typename Table, typename T>
const auto &entryOf(const Table &table, T value)
{
    return table.at(static_cast<std::size_t>(value));
}

template<typename Table>
auto valueOf(const Table &table, QStringView raw) -> std::optional<decltype(table[0].value)>
{
    for (const auto &each : table) {
        if (raw == each.raw)
            return each.value;
    }
    return std::nullopt;
}

} // namespace

QString rawValue(WeatherLocationMode mode)
{
    return entryOf(modes, mode).raw;
}

QString rawValue(WeatherDisplayStyle style)
{
    return entryOf(styles, style).raw;
}

std::optional<WeatherLocationMode> weatherLocationModeFromRawValue(QStringView raw)
{
    return valueOf(modes, raw);
}

std::optional<WeatherDisplayStyle> weatherDisplayStyleFromRawValue(QStringView raw)
{
    return valueOf(styles, raw);
}

QList<WeatherDisplayStyle> weatherDisplayStyles()
{
    QList<WeatherDisplayStyle> all;
    for (const Style &each : styles)
        all += each.value;
    return all;
}

QString weatherStyleLabel(WeatherDisplayStyle style)
{
    return text(entryOf(styles, style).label);
}

} // namespace orvelle
