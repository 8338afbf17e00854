#include "ui/common/Colors.h"

#include <algorithm>
#include <cmath>

namespace orvelle {
namespace {

constexpr double ordinaryText = 4.5;
constexpr double ordinaryEdge = 3;
constexpr double highContrast = 7;
/// Between text and ground of a palette of high contrast; black on the light
/// greys of ordinary ones has less.
constexpr double leastOfHighContrast = 18.5;
constexpr float separatorOpacity = 0.18F;
constexpr int strongestTint = 34; // per cent
constexpr int blendStep = 2;

double linear(float channel)
{
    const auto value = static_cast<double>(channel);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) + 0.0722 * linear(rgb.blueF());
}

QColor blend(const QColor &from, const QColor &to, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    const QColor a = from.toRgb();
    const QColor b = to.toRgb();
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

} // namespace

double contrastRatio(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool isDark(const QPalette &palette)
{
    return luminance(palette.color(QPalette::WindowText)) > luminance(palette.color(QPalette::Window));
}

bool isHighContrast(const QPalette &palette)
{
    const QColor ground = palette.color(QPalette::Window);
    return contrastRatio(palette.color(QPalette::WindowText), ground) >= leastOfHighContrast &&
           contrastRatio(palette.color(QPalette::Mid), ground) >= highContrast;
}

double textContrast(const QPalette &palette)
{
    return isHighContrast(palette) ? highContrast : ordinaryText;
}

double edgeContrast(const QPalette &palette)
{
    return isHighContrast(palette) ? highContrast : ordinaryEdge;
}

QColor quiet(const QColor &color, const QColor &ground, double share, const QPalette &palette)
{
    return readable(blend(color, ground, share), ground, color, textContrast(palette));
}

QColor faint(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor accent(const QPalette &palette, const QColor &ground)
{
    return readable(palette.color(QPalette::Highlight), ground, palette.color(QPalette::WindowText),
                    edgeContrast(palette));
}

QColor separatorColor(const QPalette &palette)
{
    QColor line = palette.color(QPalette::WindowText);
    if (!isHighContrast(palette))
        line.setAlphaF(separatorOpacity);
    return line;
}

QColor toQColor(const LinkColor &color, const QPalette &palette)
{
    return QColor::fromRgb(isDark(palette) ? color.dark : color.light);
}

QColor readable(const QColor &color, const QColor &ground, const QColor &towards, double ratio)
{
    for (int percent = 0; percent < 100; percent += blendStep) {
        const QColor candidate = blend(color, towards, percent / 100.0);
        if (contrastRatio(candidate, ground) >= ratio)
            return candidate;
    }
    return towards;
}

Tint softTint(const QColor &tint, const QColor &ground, const QColor &text, double ratio)
{
    for (int percent = strongestTint; percent > 0; percent -= blendStep) {
        const QColor tinted = blend(ground, tint, percent / 100.0);
        if (contrastRatio(tinted, text) >= ratio)
            return {tinted, text};
    }
    const QColor tinted = blend(ground, tint, strongestTint / 100.0);
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return {tinted, contrastRatio(tinted, black) >= contrastRatio(tinted, white) ? black : white};
}

} // namespace orvelle
