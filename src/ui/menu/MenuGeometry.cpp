#include "ui/menu/MenuGeometry.h"

#include <QPolygonF>

#include <algorithm>

namespace orvelle {
namespace {

/// Submenus lie over the edge of their parent by this much.
constexpr int overlap = 2;

int clampedStart(int wanted, int length, int start, int end)
{
    return std::max(start, std::min(wanted, end - length));
}

int right(const QRect &rect)
{
    return rect.x() + rect.width();
}

int bottom(const QRect &rect)
{
    return rect.y() + rect.height();
}

int besideX(const QPoint &at, int width, const QRect &available, bool rightToLeft)
{
    return clampedStart(rightToLeft ? at.x() - width : at.x(), width, available.x(), right(available));
}

} // namespace

MenuFrame menuGeometry(const QSize &size, const MenuPlacement &placement, const QRect &available, bool rightToLeft)
{
    const QPoint at = placement.position;
    const int width = std::min(size.width(), available.width());
    const int x = besideX(at, width, available, rightToLeft);

    const bool sidePanel = placement.atIcon && (at.x() < available.x() || at.x() >= right(available)) &&
                           at.y() >= available.y() && at.y() < bottom(available);
    if (sidePanel) {
        const int height = std::min(size.height(), available.height());
        return {{x, clampedStart(at.y(), height, available.y(), bottom(available)), width, height}, false};
    }
    const int anchor = std::clamp(at.y(), available.y(), bottom(available));
    const int below = bottom(available) - anchor;
    const int above = anchor - available.y();
    // At the pointer a menu opens downwards as long as it can; at an icon it
    // opens towards the middle of the screen.
    const bool upwards = placement.atIcon ? above > below : size.height() > below && above > below;
    if (!placement.atIcon && size.height() > std::max(above, below)) {
        const int height = std::min(size.height(), available.height());
        return {{x, clampedStart(anchor, height, available.y(), bottom(available)), width, height}, upwards};
    }
    const int height = std::min(size.height(), upwards ? above : below);
    return {{x, upwards ? anchor - height : anchor, width, height}, upwards};
}

QRect submenuGeometry(const QSize &size, const QRect &parent, const QRect &row, int inset, const QRect &available,
                      bool rightToLeft)
{
    const int width = std::min(size.width(), available.width());
    const int height = std::min(size.height(), available.height());
    const int after = right(available) - right(parent) + overlap;
    const int before = parent.x() - available.x() + overlap;
    const bool fitsAfter = width <= after;
    const bool fitsBefore = width <= before;
    const bool toTheRight =
        rightToLeft ? !fitsBefore && (fitsAfter || after > before) : fitsAfter || (!fitsBefore && after >= before);
    const int x = toTheRight ? right(parent) - overlap : parent.x() + overlap - width;
    return {clampedStart(x, width, available.x(), right(available)),
            clampedStart(row.y() - inset, height, available.y(), bottom(available)), width, height};
}

QRect resizedGeometry(const MenuFrame &frame, int height, const QRect &available)
{
    const int fitting = std::min(height, available.height());
    const int wanted = frame.upwards ? bottom(frame.rect) - fitting : frame.rect.y();
    return {frame.rect.x(), clampedStart(wanted, fitting, available.y(), bottom(available)), frame.rect.width(),
            fitting};
}

bool movesTowards(const QPoint &from, const QPoint &to, const QRect &submenu)
{
    if (from == to || submenu.contains(to))
        return false;
    const bool toTheRight = submenu.center().x() > from.x();
    const int edge = toTheRight ? submenu.x() : right(submenu);
    // Standing still sideways is moving along the rows.
    if (toTheRight ? to.x() <= from.x() : to.x() >= from.x())
        return false;
    const QPolygonF way({QPointF(from), QPointF(edge, submenu.y()), QPointF(edge, bottom(submenu))});
    return way.containsPoint(to, Qt::OddEvenFill);
}

} // namespace orvelle
