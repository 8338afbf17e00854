#pragma once

#include "links/LinkColors.h"

#include <QColor>
#include <QPalette>

namespace orvelle {

/// Contrast ratio of two opaque colours, 1 to 21, by the definition of relative
/// luminance in the Web Content Accessibility Guidelines 2.1.
double contrastRatio(const QColor &a, const QColor &b);

/// Whether the palette is one with light text on a dark ground.
bool isDark(const QPalette &palette);

/// The colour's value for the palette's lightness.
QColor toQColor(const LinkColor &color, const QPalette &palette);

/// `color` moved towards `towards` just as far as it takes to stand out from
/// `ground` by at least `ratio`; `towards` itself when nothing less does.
QColor readable(const QColor &color, const QColor &ground, const QColor &towards, double ratio);

/// A tinted row: the soft ground and the text colour on it.
struct Tint {
    QColor ground;
    QColor text;
};

/// The tint of a row on `ground` with text in `text`. The two colours of the
/// result have a contrast of at least 4.5 : 1, also where those given have not.
Tint softTint(const QColor &tint, const QColor &ground, const QColor &text);

} // namespace orvelle
