#include "ui/quickadd/ClipboardOffer.h"

#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/PlainToolTip.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

namespace orvelle {

namespace {

constexpr int iconSide = 16;
constexpr int gap = 6;
constexpr int padding = 6;
constexpr qreal radius = 5;

// A button has a text() of its own.
QString offerText(const QString &link)
{
    return text("quickAdd.offer %@"_text, link);
}

QString keyText()
{
    return text("quickAdd.offerKey"_text);
}

} // namespace

ClipboardOffer::ClipboardOffer(QWidget *parent) : QAbstractButton(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    hide();
}

void ClipboardOffer::setLink(const QString &link)
{
    m_link = link;
    setAccessibleName(offerText(link));
    setToolTip(plainToolTip(link));
    setVisible(!link.isEmpty());
    update();
}

QSize ClipboardOffer::sizeHint() const
{
    return {0, std::max(iconSide, fontMetrics().height()) + 2 * padding};
}

void ClipboardOffer::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    setCursor(Qt::PointingHandCursor);
}

void ClipboardOffer::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    unsetCursor();
}

void ClipboardOffer::paintEvent(QPaintEvent *)
{
    const QColor ground = palette().color(QPalette::Window);
    const QColor textColor = palette().color(QPalette::WindowText);
    const QColor quiet = readable(palette().color(QPalette::Mid), ground, textColor, textContrast(palette()));
    const QColor highlight = palette().color(QPalette::Highlight);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = highlight;
    fill.setAlphaF(isDown() ? 0.28F : underMouse() || hasFocus() ? 0.18F : 0.10F);
    painter.setPen(hasFocus() ? QPen(accent(palette(), ground), 1) : QPen(Qt::NoPen));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const Qt::LayoutDirection direction = layoutDirection();
    const QRect inside = rect().adjusted(padding, 0, -padding, 0);
    const QRect iconRect =
        QStyle::alignedRect(direction, Qt::AlignLeft | Qt::AlignVCenter, {iconSide, iconSide}, inside);
    painter.drawPixmap(iconRect.topLeft(),
                       symbolPixmap(QStringLiteral("doc.on.clipboard"), iconSide, textColor, devicePixelRatioF()));
    const QString key = keyText();
    const int keyWidth = fontMetrics().horizontalAdvance(key);
    const QRect keyRect =
        QStyle::alignedRect(direction, Qt::AlignRight | Qt::AlignVCenter, {keyWidth, height()}, inside);
    painter.setPen(quiet);
    painter.drawText(keyRect, Qt::AlignCenter, key);

    const bool leftToRight = direction == Qt::LeftToRight;
    const QRect textRect = leftToRight ? inside.adjusted(iconSide + gap, 0, -keyWidth - 2 * gap, 0)
                                       : inside.adjusted(keyWidth + 2 * gap, 0, -iconSide - gap, 0);
    painter.setPen(textColor);
    const QString offer = offerText(m_link);
    painter.drawText(textRect, Qt::AlignVCenter | (leftToRight ? Qt::AlignLeft : Qt::AlignRight),
                     fontMetrics().elidedText(offer, Qt::ElideRight, textRect.width()));
}

} // namespace orvelle
