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

/// A point that a tray host gave, as global position of the toolkit. Hosts
/// disagree whether they count the display's pixels or scaled ones; of the two
/// readings it takes the one nearer to the pointer, which clicked there. A
/// point on no screen in either reading, and (0, 0), which hosts give who know
/// no place, become the pointer's position.
QPoint fromHost(const QPoint &given, const QPoint &pointer, const QList<ScreenLayout> &screens);

/// Where a menu of an icon belongs: the middle of the edge that faces the
/// centre of the icon's screen, above or below. All in the display's pixels.
QPoint menuAnchor(const QRect &icon, const QList<ScreenLayout> &screens);

} // namespace orvelle
