#include "ui/common/LineText.h"

#include <QPainter>

namespace orvelle {

void drawLine(QPainter &painter, const QRect &place, const QString &text, Qt::LayoutDirection window, bool atEnd)
{
    const bool onTheRight = (window == Qt::RightToLeft) != atEnd;
    const Qt::Alignment side = onTheRight ? Qt::AlignRight : Qt::AlignLeft;
    const Qt::LayoutDirection before = painter.layoutDirection();
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(place, Qt::TextSingleLine | static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | side), text);
    painter.setLayoutDirection(before);
}

} // namespace orvelle
