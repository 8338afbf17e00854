#include "ui/menu/rows/WidgetRowView.h"

#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/menu/MenuPanel.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <tuple>

namespace orvelle {
namespace {

/// How far a label's colour is on its way from the text's to the ground's.
constexpr double labelShare = 0.4;
constexpr double focusRadius = 5;

} // namespace

WidgetRowView::WidgetRowView(QWidget *parent) : QWidget(parent), m_look(*this)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    // The pointer or a key went to another row of the menu.
    if (const auto *panel = qobject_cast<MenuPanel *>(parent)) {
        connect(panel, &MenuPanel::currentChanged, this, [this, panel] {
            if (panel->rowWidget(panel->currentRow()) != this)
                letFocusGo();
        });
    }
}

QRect WidgetRowView::iconRect(int line) const
{
    const int top = line * lineHeight() + (lineHeight() - MenuLook::iconSide) / 2;
    return mirrored({MenuLook::margin, top, MenuLook::iconSide, MenuLook::iconSide});
}

QRect WidgetRowView::contentRect() const
{
    const int left = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap;
    return {left, 0, width() - left - MenuLook::margin, height()};
}

QRect WidgetRowView::mirrored(const QRect &rect) const
{
    return QStyle::visualRect(layoutDirection(), this->rect(), rect);
}

QColor WidgetRowView::textColor() const
{
    return palette().color(QPalette::WindowText);
}

QColor WidgetRowView::labelColor() const
{
    return quiet(textColor(), m_look.ground(), labelShare, palette());
}

void WidgetRowView::paintSymbol(QPainter &painter, const QString &symbol, const QRect &square,
                                const QColor &color) const
{
    painter.drawPixmap(square.topLeft(), symbolPixmap(symbol, square.width(), color, devicePixelRatioF()));
}

void WidgetRowView::paintIcon(QPainter &painter, const QString &symbol) const
{
    paintSymbol(painter, symbol, iconRect(), textColor());
}

void WidgetRowView::paintFocus(QPainter &painter) const
{
    if (!hasFocus())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent(palette(), m_look.ground()), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(3, 1, -3, -1), focusRadius, focusRadius);
    painter.restore();
}

void WidgetRowView::describe(const QString &name, const QString &description)
{
    setAccessibleName(name);
    if (description == accessibleDescription())
        return;
    setAccessibleDescription(description);
}

QList<MenuRowButton *> WidgetRowView::shownButtons() const
{
    QList<MenuRowButton *> buttons = findChildren<MenuRowButton *>();
    erase_if(buttons, [](const MenuRowButton *each) { return each->isHidden() || !each->isEnabled(); });
    // As one reads: line by line, and a button before one that is within it.
    const int direction = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    const auto place = [this, direction](const MenuRowButton *each) {
        const QRect area(each->mapTo(this, QPoint()), each->size());
        return std::tuple(area.center().y() / lineHeight(), direction * (direction < 0 ? area.right() : area.left()),
                          -area.width());
    };
    std::ranges::sort(buttons, {}, place);
    return buttons;
}

bool WidgetRowView::hasFocusInside() const
{
    return hasFocus() || std::ranges::any_of(findChildren<MenuRowButton *>(), &QWidget::hasFocus);
}

bool WidgetRowView::focusButton(bool last)
{
    const QList<MenuRowButton *> buttons = shownButtons();
    if (buttons.isEmpty())
        return false;
    (last ? buttons.last() : buttons.first())->setFocus(Qt::TabFocusReason);
    return true;
}

void WidgetRowView::letFocusGo()
{
    if (hasFocusInside() && parentWidget())
        parentWidget()->setFocus(Qt::OtherFocusReason);
}

/// The popup decides where the focus goes.
bool WidgetRowView::focusNextPrevChild(bool)
{
    return false;
}

bool WidgetRowView::moveAmongButtons(int step)
{
    const QList<MenuRowButton *> buttons = shownButtons();
    const auto current = std::ranges::find_if(buttons, &QWidget::hasFocus);
    const qsizetype wanted = (current - buttons.begin()) + step;
    if (current == buttons.end() || wanted < 0 || wanted >= buttons.size())
        return false;
    buttons.at(wanted)->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

/// Keys that the buttons do not want; what is not accepted goes to the popup.
void WidgetRowView::keyPressEvent(QKeyEvent *event)
{
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const bool isBack = event->key() == Qt::Key_Backtab || event->modifiers().testFlag(Qt::ShiftModifier);
    bool done = false;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        moveAmongButtons((event->key() == Qt::Key_Right) != rightToLeft ? 1 : -1);
        done = true;
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        done = moveAmongButtons(isBack ? -1 : 1);
        break;
    default:
        break;
    }
    event->setAccepted(done);
}

void WidgetRowView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusWithin(event->reason() == Qt::BacktabFocusReason);
    update();
}

void WidgetRowView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
}

} // namespace orvelle
