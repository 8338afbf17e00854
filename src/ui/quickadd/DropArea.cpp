#include "ui/quickadd/DropArea.h"

#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QPainter>

namespace orvelle {

namespace {

constexpr int pictureSide = 24;
constexpr int padding = 14;
constexpr int gap = 6;
constexpr qreal radius = 8;

} // namespace

DropArea::DropArea(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(text("quickAdd.dropHint"_text));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void DropArea::setDropTargeted(bool targeted)
{
    m_isDropTargeted = targeted;
    update();
}

QSize DropArea::sizeHint() const
{
    const int textWidth = fontMetrics().horizontalAdvance(text("quickAdd.dropHint"_text));
    return {textWidth + 2 * padding, pictureSide + gap + fontMetrics().height() + 2 * padding};
}

void DropArea::paintEvent(QPaintEvent *)
{
    const QColor ground = palette().color(QPalette::Window);
    const QColor textColor = palette().color(QPalette::WindowText);
    const QColor quiet = readable(palette().color(QPalette::Mid), ground, textColor, textContrast(palette()));
    const QColor highlight = palette().color(QPalette::Highlight);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_isDropTargeted ? accent(palette(), ground) : quiet, m_isDropTargeted ? 2 : 1, Qt::DashLine));
    QColor fill = highlight;
    fill.setAlphaF(m_isDropTargeted ? 0.15F : 0.0F);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);

    const int contentHeight = pictureSide + gap + fontMetrics().height();
    const int top = (height() - contentHeight) / 2;
    const QColor content = m_isDropTargeted ? textColor : quiet;
    painter.drawPixmap((width() - pictureSide) / 2, top,
                       symbolPixmap(QStringLiteral("tray.full.fill"), pictureSide, content, devicePixelRatioF()));
    painter.setPen(content);
    painter.drawText(QRect(0, top + pictureSide + gap, width(), fontMetrics().height()), Qt::AlignCenter,
                     text("quickAdd.dropHint"_text));
}

} // namespace orvelle
