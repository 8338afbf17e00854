#include "ui/common/Colors.h"
#include "ui/common/WeatherPainter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvelle {

namespace {

/// More than what is asked for, as a gradient between two colours of the same
/// contrast is nearer to the text in its middle.
constexpr double slack = 1.12;

/// How much of the weather's colours each part takes, 0 to 1; the rest is the
/// ground of the menu.
struct Share {
    double ground;
    double chip;
    double pill;
};
/// In the order of WeatherDisplayStyle.
constexpr std::array<Share, 5> shares{{
    {1.0, 1.0, 1.0},    // aurora: the sky's own colours
    {0.16, 0.16, 0.16}, // brume: a breath of them
    {0.42, 0.42, 0.42}, // horizon: dusk
    {0.0, 1.0, 1.0},    // cristal: only its two stones
    {0.0, 0.0, 0.0},    // zephyr: none but the symbol's and the stroke's
}};

QColor toQColor(const WeatherColor &color)
{
    return {color.red, color.green, color.blue};
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

/// Two grounds and what is written on them.
struct Pair {
    QColor from;
    QColor to;
    QColor text;
};

/// White or near black, whichever stands out more; the grounds give way until
/// it stands out enough.
Pair legible(const QColor &from, const QColor &to, double ratio)
{
    const QColor dark(0x10, 0x14, 0x1a);
    const auto worst = [&](const QColor &text) { return std::min(contrastRatio(text, from), contrastRatio(text, to)); };
    const bool onDark = worst(Qt::white) + 1.5 >= worst(dark);
    const QColor text = onDark ? QColor(Qt::white) : dark;
    const QColor away = onDark ? QColor(Qt::black) : QColor(Qt::white);
    return {readable(from, text, away, ratio), readable(to, text, away, ratio), text};
}

Pair onShare(const WeatherGradient &colors, double share, const QPalette &palette, const QColor &ground)
{
    const double ratio = textContrast(palette) * slack;
    const QColor from = mixed(ground, toQColor(colors.from), share);
    const QColor to = mixed(ground, toQColor(colors.to), share);
    if (share >= 1)
        return legible(from, to, ratio);
    const QColor text = palette.color(QPalette::WindowText);
    return {readable(from, text, ground, ratio), readable(to, text, ground, ratio), text};
}

/// `color` moved towards the text until it can be told from both grounds.
QColor onBoth(const QColor &color, const Pair &pair, double ratio)
{
    const QColor once = readable(color, pair.from, pair.text, ratio);
    return readable(once, pair.to, pair.text, ratio);
}

} // namespace

WeatherInk weatherInk(WeatherDisplayStyle style, const WeatherGradient &colors, const QPalette &palette,
                      const QColor &ground)
{
    // Colours behind the text are what high contrast is to be free of.
    const Share share = isHighContrast(palette) ? Share{} : shares.at(static_cast<std::size_t>(style));
    const double ratio = textContrast(palette) * slack;
    const Pair row = onShare(colors, share.ground, palette, ground);
    const Pair chip = onShare(colors, share.chip, palette, ground);
    const Pair pill = onShare(colors, share.pill, palette, ground);
    const bool hasColoredSymbol = share.chip < 1;
    WeatherInk ink;
    ink.groundFrom = row.from;
    ink.groundTo = row.to;
    ink.text = row.text;
    ink.quietText = onBoth(mixed(row.text, mixed(row.from, row.to, 0.5), 0.3), row, ratio);
    ink.chipFrom = chip.from;
    ink.chipTo = chip.to;
    ink.symbol = onBoth(hasColoredSymbol ? toQColor(colors.from) : chip.text, chip, ratio);
    ink.pillFrom = pill.from;
    ink.pillTo = pill.to;
    ink.temperature = pill.text;
    return ink;
}

} // namespace orvelle
