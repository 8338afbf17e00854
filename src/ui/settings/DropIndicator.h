#pragma once

#include <QColor>
#include <QRect>

class QPainter;

namespace orvelle {

/// The line that shows where a drop lands: indented by the level it lands at,
/// with a dot at its beginning.
class DropIndicator
{
public:
    /// `indentation`: pixels for each level.
    DropIndicator(int level, int indentation, const QColor &color);

    /// Draws the line at height `y` across `area`, from its leading edge.
    void paint(QPainter &painter, const QRect &area, int y) const;

private:
    int m_inset;
    QColor m_color;
};

} // namespace orvelle
