#include "ui/common/LinkIconView.h"

#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QPainter>

#include <cmath>

namespace orvelle {

namespace {

constexpr double symbolShare = 0.75;
constexpr double badgeShare = 0.5;
constexpr double discShare = 0.55;
constexpr double badgeShift = 0.15;

int shareOf(int side, double share)
{
    return static_cast<int>(std::lround(side * share));
}

bool isLocal(const LinkItem &item)
{
    return item.type == LinkType::File || item.type == LinkType::Folder;
}

QRect centred(const QRect &square, int side)
{
    QRect inner(0, 0, side, side);
    inner.moveTopLeft(square.topLeft() + QPoint((square.width() - side) / 2, (square.height() - side) / 2));
    return inner;
}

void paintBadge(QPainter &painter, const QRect &square, const LinkIconStyle &style)
{
    const int side = square.width();
    const bool toTheLeft = painter.layoutDirection() == Qt::RightToLeft;
    const double shift = side * badgeShift;
    // The middle of a badge that lies in the corner, then moved outward.
    const double inset = side * badgeShare / 2 - shift;
    const QPointF middle(toTheLeft ? square.left() + inset : square.left() + side - inset, square.top() + side - inset);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.palette.color(style.selected ? QPalette::Highlight : style.ground));
    painter.drawEllipse(middle, side * discShare / 2, side * discShare / 2);
    const int badge = shareOf(side, badgeShare);
    const auto orange = nsColor(QStringLiteral("orange"));
    painter.drawPixmap(middle - QPointF(badge, badge) / 2,
                       symbolPixmap(QStringLiteral("exclamationmark.circle.fill"), badge,
                                    toQColor(orange.value_or(LinkColor{}), style.palette),
                                    painter.device()->devicePixelRatio()));
    painter.restore();
}

} // namespace

QColor linkIconColor(const LinkItem &item, const QPalette &palette, QPalette::ColorRole ground)
{
    const QPalette::ColorRole textRole = ground == QPalette::Base ? QPalette::Text : QPalette::WindowText;
    return readable(toQColor(displayColor(item), palette), palette.color(ground), palette.color(textRole),
                    textContrast(palette));
}

void paintLinkIcon(QPainter &painter, const QRect &square, const LinkItem &item, const LinkIconStyle &style)
{
    const int side = square.width();
    const qreal ratio = painter.device()->devicePixelRatio();
    const QColor color = style.selected ? style.palette.color(QPalette::HighlightedText)
                                        : linkIconColor(item, style.palette, style.ground);
    const QString symbol = item.sfSymbolName();
    QPixmap pixmap = ownPixmap({item.faviconData.value_or(QByteArray()), isLocal(item) ? item.path : QString(), symbol},
                               side, ratio);
    QRect place = square;
    if (pixmap.isNull()) {
        place = centred(square, shareOf(side, symbolShare));
        pixmap = symbolPixmap(symbol, place.width(), color, ratio);
    }
    painter.drawPixmap(place.topLeft(), pixmap);
    if (style.broken)
        paintBadge(painter, square, style);
}

QPixmap linkRowPixmap(const LinkItem &item, int side, const QPalette &palette, qreal ratio)
{
    const QColor text = palette.color(QPalette::Text);
    const auto own = item.customIconColor ? nsColor(*item.customIconColor) : std::nullopt;
    return linkPixmap(
        {item.faviconData.value_or(QByteArray()), isLocal(item) && !item.customIconName ? item.path : QString(),
         item.sfSymbolName()},
        side,
        readable(own ? toQColor(*own, palette) : text, palette.color(QPalette::Base), text, textContrast(palette)),
        ratio);
}

LinkIconView::LinkIconView(int size, QWidget *parent) : QWidget(parent), m_size(size)
{
    const int margin = static_cast<int>(std::ceil(size * badgeShift));
    setFixedSize(size + 2 * margin, size + 2 * margin);
}

void LinkIconView::setLink(const LinkItem &link, bool broken)
{
    m_link = link;
    m_broken = broken;
    update();
}

void LinkIconView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintLinkIcon(painter, centred(rect(), m_size), m_link, {palette(), QPalette::Window, m_broken, false});
}

} // namespace orvelle
