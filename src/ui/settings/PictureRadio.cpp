#include "ui/settings/PictureRadio.h"

#include "ui/common/AssistedInput.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QPainter>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int pictureSide = 20;
constexpr int padding = 8;
constexpr int gap = 6;
constexpr qreal radius = 6;

} // namespace

PictureRadio::PictureRadio(const QString &symbol, const QString &title, QWidget *parent)
    : QRadioButton(title, parent), m_symbol(symbol)
{
    reachWhenChecked(this);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize PictureRadio::sizeHint() const
{
    const int textWidth = fontMetrics().horizontalAdvance(text());
    return {std::max(textWidth, pictureSide) + 2 * padding, pictureSide + gap + fontMetrics().height() + 2 * padding};
}

void PictureRadio::paintGround(QPainter &painter) const
{
    const QColor highlight = accent(palette(), palette().color(QPalette::Window));
    const QRectF ground = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (isChecked()) {
        painter.setPen(QPen(highlight, hasFocus() ? 2 : 1));
        painter.setBrush(faint(highlight, 0.18));
    } else if (hasFocus()) {
        painter.setPen(QPen(highlight, 2));
        painter.setBrush(Qt::NoBrush);
    } else if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faint(palette().color(QPalette::WindowText), 0.08));
    } else {
        return;
    }
    painter.drawRoundedRect(ground, radius, radius);
}

void PictureRadio::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
    const QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
    painter.drawPixmap((width() - pictureSide) / 2, padding,
                       symbolPixmap(m_symbol, pictureSide, color, devicePixelRatioF()));
    painter.setPen(color);
    const QRect below = rect().adjusted(0, padding + pictureSide + gap, 0, -padding);
    painter.drawText(below, Qt::AlignCenter | Qt::TextSingleLine, text());
}

void PictureRadio::enterEvent(QEnterEvent *event)
{
    QRadioButton::enterEvent(event);
    update();
}

void PictureRadio::leaveEvent(QEvent *event)
{
    QRadioButton::leaveEvent(event);
    update();
}

} // namespace orvelle
