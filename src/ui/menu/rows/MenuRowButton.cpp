#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/menu/rows/WidgetRowView.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace orvelle {
namespace {

constexpr int symbolSide = 14;
constexpr int padding = 8;
constexpr int symbolPadding = 5;
constexpr int leastHeight = 20;
constexpr float restingShade = 0.10F;

} // namespace

MenuRowButton::MenuRowButton(QWidget *row) : QAbstractButton(row)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void MenuRowButton::setSymbol(const QString &symbol, const QString &name)
{
    m_symbol = symbol;
    setAccessibleName(name);
    updateGeometry();
    update();
}

QSize MenuRowButton::sizeHint() const
{
    if (!m_symbol.isEmpty())
        return {symbolSide + 2 * symbolPadding, std::max(leastHeight, fontMetrics().height() + 2)};
    return {fontMetrics().horizontalAdvance(text()) + 2 * padding, std::max(leastHeight, fontMetrics().height() + 2)};
}

void MenuRowButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool current = hasFocus();
    QColor ground = palette().color(current ? QPalette::Highlight : QPalette::WindowText);
    if (!current)
        ground.setAlphaF(isDown() ? 2 * restingShade : restingShade);
    else if (isDown())
        ground = isDark(palette()) ? ground.lighter(120) : ground.darker(115);
    const QColor ink = palette().color(current ? QPalette::HighlightedText : QPalette::WindowText);
    const bool outlined = !current && isHighContrast(palette());
    painter.setPen(outlined ? QPen(ink, 1) : QPen(Qt::NoPen));
    painter.setBrush(ground);
    const double inset = outlined ? 0.5 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), rect().height() / 2.0,
                            rect().height() / 2.0);
    if (!m_symbol.isEmpty()) {
        QRect square(0, 0, symbolSide, symbolSide);
        square.moveTopLeft({(width() - symbolSide) / 2, (height() - symbolSide) / 2});
        painter.drawPixmap(square.topLeft(), symbolPixmap(m_symbol, symbolSide, ink, devicePixelRatioF()));
        return;
    }
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

void MenuRowButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Select:
        if (!event->isAutoRepeat())
            click();
        return;
    default:
        event->ignore();
    }
}

void MenuRowButton::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    setFocus(Qt::MouseFocusReason);
}

void MenuRowButton::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    if (hasFocus() && window())
        window()->setFocus(Qt::MouseFocusReason);
}

void MenuRowButton::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    update();
}

void MenuRowButton::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    setDown(false);
    update();
}

} // namespace orvelle
