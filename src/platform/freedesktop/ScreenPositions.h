#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

namespace orvelle {

/// A monitor as the toolkit lays it out: its corner is the native one, its size
/// is divided by the scale.
struct ScreenLayout {
    QRect geometry;
    double scale = 1.0;

    QRect nativeGeometry() const { return {geometry.topLeft(), (QSizeF(geometry.size()) * scale).toSize()}; }
    bool operator==(const ScreenLayout &) const = default;
};

/// The monitors of the running application; empty without a display.
QList<ScreenLayout> currentScreens();

/// A point in the display's pixels as global position of the toolkit; nothing
/// when it lies on none of the screens.
///
///     {400, 20} on a screen at (0, 0) with scale 2 is {200, 10}
std::optional<QPoint> fromNative(const QPoint &native, const QList<ScreenLayout> &screens);

/// Where a menu of an icon belongs: the middle of the edge that faces the
/// centre of the icon's screen, above or below. All in the display's pixels.
QPoint menuAnchor(const QRect &icon, const QList<ScreenLayout> &screens);

} // namespace orvelle
