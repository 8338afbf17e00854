#include "ui/settings/DropIndicator.h"

#include <QPainter>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int thickness = 2;
constexpr double dotRadius = 3;

} // namespace

DropIndicator::DropIndicator(int level, int indentation, const QColor &color)
    : m_inset(level * indentation), m_color(color)
{
}

void DropIndicator::paint(QPainter &painter, const QRect &area, int y) const
{
    const bool toTheLeft = painter.layoutDirection() == Qt::RightToLeft;
    // Wholly visible at the upper and the lower edge too.
    const int height = std::clamp(y, area.top() + 4, area.bottom() - 4);
    const int start = toTheLeft ? area.right() - m_inset - 6 : area.left() + m_inset + 6;
    const int end = toTheLeft ? area.left() + 4 : area.right() - 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_color, thickness, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(start + (toTheLeft ? -4 : 4), height, end, height);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(start, height), dotRadius, dotRadius);
    painter.restore();
}

} // namespace orvelle
