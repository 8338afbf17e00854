#pragma once

#include "menubar/Menu.h"

#include <QRect>
#include <QSize>

namespace orvelle {

/// A menu's place on the screen, in global logical pixels.
struct MenuFrame {
    QRect rect;
    /// The menu hangs upwards: when it grows, its lower edge stays.
    bool upwards = false;
    friend bool operator==(const MenuFrame &, const MenuFrame &) = default;
};

/// Where a menu that wants `size` opens. It never leaves `available` (the
/// screen without its panels) and is cut to what fits. At an icon it keeps
/// clear of the panel the icon sits in: below a panel at the top, above one at
/// the bottom, beside one at the left or right.
MenuFrame menuGeometry(const QSize &size, const MenuPlacement &placement, const QRect &available, bool rightToLeft);

/// Where a submenu of the row `row` of the menu `parent` opens: beside the
/// parent in reading direction, on the other side when there is no room, its
/// first row (`inset` below its upper edge) level with `row`.
QRect submenuGeometry(const QSize &size, const QRect &parent, const QRect &row, int inset, const QRect &available,
                      bool rightToLeft);

/// The frame of an open menu whose rows now want `height`: the edge it hangs
/// from stays in place as long as the screen has room.
QRect resizedGeometry(const MenuFrame &frame, int height, const QRect &available);

/// Whether a pointer that moves from `from` to `to` is on its way to the open
/// submenu, so that the rows it crosses are not meant.
bool movesTowards(const QPoint &from, const QPoint &to, const QRect &submenu);

} // namespace orvelle
