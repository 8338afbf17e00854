#include "widgets/weather/WeatherColors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvelle {

namespace {

struct Band {
    double atMost;
    WeatherGradient colors;
};
constexpr std::array<Band, 11> bands{{
    {-20, {{58, 47, 140}, {74, 105, 205}}},
    {-10, {{45, 74, 170}, {70, 140, 225}}},
    {0, {{38, 104, 196}, {96, 176, 238}}},
    {5, {{30, 126, 200}, {86, 196, 226}}},
    {10, {{22, 140, 178}, {88, 204, 196}}},
    {15, {{26, 148, 138}, {126, 206, 150}}},
    {20, {{70, 152, 84}, {176, 206, 92}}},
    {25, {{150, 150, 46}, {240, 196, 70}}},
    {30, {{214, 134, 30}, {250, 178, 74}}},
    {35, {{220, 92, 32}, {248, 146, 70}}},
    {std::numeric_limits<double>::infinity(), {{190, 38, 44}, {238, 98, 66}}},
}};

struct Pull {
    std::array<int, 6> codes; ///< filled up with -1
    WeatherColor target;
    double factor;
};
constexpr std::array<Pull, 5> pulls{{
    {{71, 73, 75, 77, 85, 86}, {196, 208, 222}, 0.55},
    {{95, 96, 99, -1, -1, -1}, {48, 44, 78}, 0.6},
    {{65, 82, -1, -1, -1, -1}, {58, 70, 92}, 0.55},
    {{63, 81, -1, -1, -1, -1}, {84, 98, 120}, 0.4},
    {{51, 53, 55, 61, 80, -1}, {118, 132, 150}, 0.28},
}};

WeatherColor pulled(const WeatherColor &color, const Pull &pull)
{
    const double factor = std::max(0.0, pull.factor);
    const auto channel = [factor](int from, int target) {
        return static_cast<int>(std::lround(from + (target - from) * factor));
    };
    return {channel(color.red, pull.target.red), channel(color.green, pull.target.green),
            channel(color.blue, pull.target.blue)};
}

} // namespace

WeatherGradient weatherGradient(double celsius, qint64 weatherCode)
{
    const auto band = std::ranges::find_if(bands, [celsius](const Band &each) { return celsius <= each.atMost; });
    const WeatherGradient colors = band == bands.end() ? bands.back().colors : band->colors;
    for (const Pull &pull : pulls) {
        const bool applies =
            std::ranges::any_of(pull.codes, [weatherCode](int code) { return code >= 0 && code == weatherCode; });
        if (applies)
            return {pulled(colors.from, pull), pulled(colors.to, pull)};
    }
    return colors;
}

} // namespace orvelle
