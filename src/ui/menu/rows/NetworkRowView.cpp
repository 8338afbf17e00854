#include "ui/menu/rows/NetworkRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/LineText.h"
#include "widgets/network/NetworkManager.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int arrowSide = 11;
constexpr int arrowGap = 4;
constexpr int cellGap = 12;
constexpr int graphHeight = 20;
constexpr int graphBottom = 5; ///< below the graph
constexpr double lineWidth = 1.5;
constexpr float fillOpacity = 0.22F;

// Blue and orange of the palette of Okabe and Ito, which people of every
// colour vision tell apart; on dark grounds its lighter pair.
constexpr QColor downloadOnLight(0x00, 0x72, 0xb2);
constexpr QColor uploadOnLight(0xd5, 0x5e, 0x00);
constexpr QColor downloadOnDark(0x56, 0xb4, 0xe9);
constexpr QColor uploadOnDark(0xe6, 0x9f, 0x00);

} // namespace

NetworkRowView::NetworkRowView(const NetworkManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetRowView(parent), m_manager(manager)
{
    connect(&notifications, &Notifications::networkChanged, this, &NetworkRowView::refresh);
    refresh();
}

void NetworkRowView::refresh()
{
    const auto mode = m_manager.displayMode();
    if (mode != m_mode)
        updateGeometry();
    else if (m_manager.currentSpeed() == m_speed && m_manager.speedHistory() == m_history)
        return;
    m_mode = mode;
    m_speed = m_manager.currentSpeed();
    m_history = m_manager.speedHistory();
    describe(text("network.title"_text), text("network.download %@"_text, rateText(Download)) + u", "_s +
                                             text("network.upload %@"_text, rateText(Upload)));
    update();
}

QString NetworkRowView::rateText(Direction direction) const
{
    if (!m_speed)
        return u"–"_s;
    return formatSpeed(direction == Download ? m_speed->bytesInPerSec : m_speed->bytesOutPerSec);
}

QSize NetworkRowView::sizeHint() const
{
    const int cell = arrowSide + arrowGap + QFontMetrics(font()).horizontalAdvance(u"1023.9 MB/s"_s) + 1;
    const int width = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + 2 * cell + cellGap + MenuLook::margin;
    return {width, lineHeight() + (m_mode == NetworkDisplayMode::Graph ? graphHeight + graphBottom : 0)};
}

QRect NetworkRowView::cellRect(Direction direction) const
{
    const QRect content = contentRect();
    const int width = (content.width() - cellGap) / 2;
    return {content.x() + (direction == Download ? 0 : width + cellGap), 0, width, content.height()};
}

QColor NetworkRowView::color(Direction direction) const
{
    const bool dark = isDark(palette());
    const QColor wanted =
        direction == Download ? (dark ? downloadOnDark : downloadOnLight) : (dark ? uploadOnDark : uploadOnLight);
    return readable(wanted, look().ground(), textColor(), edgeContrast(palette()));
}

void NetworkRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintFocus(painter);
    paintIcon(painter, u"network"_s);
    for (const Direction direction : {Download, Upload}) {
        paintRate(painter, direction);
        if (m_mode == NetworkDisplayMode::Graph)
            paintGraph(painter, direction);
    }
}

void NetworkRowView::paintRate(QPainter &painter, Direction direction) const
{
    const QRect cell = cellRect(direction);
    const QRect arrow(cell.x(), (lineHeight() - arrowSide) / 2, arrowSide, arrowSide);
    paintSymbol(painter, direction == Download ? u"arrow.down"_s : u"arrow.up"_s, mirrored(arrow), color(direction));
    const int before = arrowSide + arrowGap;
    painter.setFont(font());
    painter.setPen(m_speed ? textColor() : labelColor());
    drawLine(painter, mirrored({cell.x() + before, 0, cell.width() - before, lineHeight()}), rateText(direction),
             layoutDirection());
}

QRect NetworkRowView::graphRect(Direction direction) const
{
    const QRect cell = cellRect(direction);
    return mirrored({cell.x(), lineHeight(), cell.width(), graphHeight});
}

/// The newest value at the right end, also where one reads from the right:
/// time runs that way in graphs.
void NetworkRowView::paintGraph(QPainter &painter, Direction direction) const
{
    const QRect rect = graphRect(direction);
    painter.fillRect(QRect(rect.x(), rect.y() + rect.height() - 1, rect.width(), 1), separatorColor(palette()));
    if (m_history.isEmpty())
        return;
    const auto value = [direction](const NetworkSpeed &speed) {
        return direction == Download ? speed.bytesInPerSec : speed.bytesOutPerSec;
    };
    double largest = 0;
    for (const NetworkSpeed &each : m_history)
        largest = std::max(largest, value(each));
    const double bottom = rect.y() + rect.height() - 1;
    const double scale = largest > 0 ? (rect.height() - 1 - lineWidth) / largest : 0;
    const double step = static_cast<double>(rect.width()) / (NetworkManager::maxHistoryCount - 1);
    const double right = rect.x() + rect.width();
    QPolygonF curve;
    for (qsizetype i = 0; i < m_history.size(); ++i) {
        const double x = right - static_cast<double>(m_history.size() - 1 - i) * step;
        curve += QPointF(x, bottom - value(m_history[i]) * scale);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(rect);
    QPolygonF area = curve;
    area << QPointF(curve.last().x(), bottom) << QPointF(curve.first().x(), bottom);
    QColor fill = color(direction);
    fill.setAlphaF(fillOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPolygon(area);
    painter.setPen(QPen(color(direction), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(curve);
    painter.restore();
}

} // namespace orvelle
