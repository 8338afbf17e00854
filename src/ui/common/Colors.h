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

/// Whether the palette is one for people who need strong contrasts: text and
/// ground are all but black and white, and so are its lines.
bool isHighContrast(const QPalette &palette);

/// The least contrast of texts and symbols with this palette: 4.5, or 7 where
/// the contrast is high (WCAG 2.1, 1.4.3 and 1.4.6).
double textContrast(const QPalette &palette);

/// The same of edges, bars and strokes: 3 (WCAG 2.1, 1.4.11) or 7.
double edgeContrast(const QPalette &palette);

/// `color` on its way to `ground` by `share` (0 to 1), as far as it stays
/// readable there: for what is quieter than the text around it.
QColor quiet(const QColor &color, const QColor &ground, double share, const QPalette &palette);

/// `color` with this opacity, 0 to 1.
QColor faint(QColor color, double opacity);

/// The palette's highlight as an edge, a bar or a stroke on `ground`.
QColor accent(const QPalette &palette, const QColor &ground);

/// Lines that part things: faint, and as strong as text in high contrast.
QColor separatorColor(const QPalette &palette);

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
/// result have a contrast of at least `ratio`, also where those given have not.
Tint softTint(const QColor &tint, const QColor &ground, const QColor &text, double ratio = 4.5);

} // namespace orvelle
