#include "ui/common/Colors.h"

#include <algorithm>
#include <cmath>

namespace orvelle {
namespace {

constexpr double minimumTextContrast = 4.5;
constexpr double strongestTint = 0.34;
constexpr double blendStep = 0.02;

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

QColor toQColor(const LinkColor &color, const QPalette &palette)
{
    return QColor::fromRgb(isDark(palette) ? color.dark : color.light);
}

QColor readable(const QColor &color, const QColor &ground, const QColor &towards, double ratio)
{
    for (double share = 0; share < 1; share += blendStep) {
        const QColor candidate = blend(color, towards, share);
        if (contrastRatio(candidate, ground) >= ratio)
            return candidate;
    }
    return towards;
}

Tint softTint(const QColor &tint, const QColor &ground, const QColor &text)
{
    for (double share = strongestTint; share > 0; share -= blendStep) {
        const QColor tinted = blend(ground, tint, share);
        if (contrastRatio(tinted, text) >= minimumTextContrast)
            return {tinted, text};
    }
    const QColor tinted = blend(ground, tint, strongestTint);
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return {tinted, contrastRatio(tinted, black) >= contrastRatio(tinted, white) ? black : white};
}

} // namespace orvelle
