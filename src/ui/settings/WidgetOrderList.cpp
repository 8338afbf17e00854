#include "ui/settings/WidgetOrderList.h"

#include "base/Text.h"
#include "menubar/WidgetOrderManager.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/KeptWindow.h"
#include "ui/settings/WidgetSection.h"

#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

namespace orvelle {

namespace {

WidgetType widgetOf(const QListWidgetItem &item)
{
    return static_cast<WidgetType>(item.data(Qt::UserRole).toInt());
}

} // namespace

WidgetOrderList::WidgetOrderList(WidgetOrderManager &order, QWidget *parent) : QListWidget(parent), m_order(order)
{
    setObjectName(QStringLiteral("widgetOrder"));
    setAccessibleName(text("settings.widgetOrder"_text));
    setDragDropMode(QAbstractItemView::InternalMove);
    setDropIndicatorShown(false);
    setIconSize({16, 16});
    setSpacing(2);
    setUniformItemSizes(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&m_order, &WidgetOrderManager::orderChanged, this, &WidgetOrderList::refresh);
    followSelection(this);
    refresh();
    setCurrentRow(0);
}

std::optional<WidgetType> WidgetOrderList::selectedWidget() const
{
    const QListWidgetItem *item = currentItem();
    return item ? std::optional(widgetOf(*item)) : std::nullopt;
}

int WidgetOrderList::rowHeight() const
{
    return fontMetrics().height() + 14;
}

QSize WidgetOrderList::sizeHint() const
{
    const int rows = static_cast<int>(m_order.order().size());
    return {QListWidget::sizeHint().width(), rows * (rowHeight() + 2 * spacing()) + 2 * frameWidth()};
}

void WidgetOrderList::refresh()
{
    const auto selected = selectedWidget();
    // A button for the selected row that is disabled for a moment loses the focus.
    const QSignalBlocker untilSelected(this);
    clear();
    for (const WidgetType widget : m_order.order()) {
        const WidgetPresentation &shown = presentationOf(widget);
        auto *item = new QListWidgetItem(symbolIcon(QString::fromLatin1(shown.symbol)), text(shown.title), this);
        item->setData(Qt::UserRole, static_cast<int>(widget));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled);
        item->setSizeHint({0, rowHeight()});
    }
    if (selected)
        select(*selected);
}

void WidgetOrderList::select(WidgetType widget)
{
    for (int row = 0; row < count(); ++row) {
        if (widgetOf(*item(row)) == widget) {
            setCurrentRow(row);
            return;
        }
    }
}

void WidgetOrderList::moveSelectedUp()
{
    if (const auto widget = selectedWidget())
        m_order.moveUp(*widget);
}

void WidgetOrderList::moveSelectedDown()
{
    if (const auto widget = selectedWidget())
        m_order.moveDown(*widget);
}

void WidgetOrderList::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_Up)
        moveSelectedUp();
    else if (event->modifiers() == Qt::AltModifier && event->key() == Qt::Key_Down)
        moveSelectedDown();
    else
        QListWidget::keyPressEvent(event);
}

QPixmap WidgetOrderList::pictureOfSelected()
{
    const QPixmap row = viewport()->grab(visualItemRect(currentItem()));
    QPixmap picture(row.size());
    picture.setDevicePixelRatio(row.devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    // What lies below shows where the widget would land.
    painter.setOpacity(0.6);
    painter.drawPixmap(0, 0, row);
    return picture;
}

/// The manager does the moving; the view's own drag would take the row away
/// once more after the drop.
void WidgetOrderList::startDrag(Qt::DropActions)
{
    if (!currentItem())
        return;
    const QPoint pointer = viewport()->mapFromGlobal(QCursor::pos());
    auto *drag = new QDrag(this);
    drag->setMimeData(model()->mimeData({currentIndex()}));
    drag->setPixmap(pictureOfSelected());
    drag->setHotSpot(pointer - visualItemRect(currentItem()).topLeft());
    const KeptWindow kept(*this);
    drag->exec(Qt::MoveAction);
}

void WidgetOrderList::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->source() == this)
        event->acceptProposedAction();
    else
        event->ignore();
}

void WidgetOrderList::dragMoveEvent(QDragMoveEvent *event)
{
    const QListWidgetItem *target = itemAt(event->position().toPoint());
    const bool fits = event->source() == this && target && target != currentItem();
    setDropRow(fits ? row(target) : -1);
    event->setAccepted(fits);
}

void WidgetOrderList::dragLeaveEvent(QDragLeaveEvent *event)
{
    setDropRow(-1);
    QListWidget::dragLeaveEvent(event);
}

void WidgetOrderList::dropEvent(QDropEvent *event)
{
    setDropRow(-1);
    event->acceptProposedAction();
    if (event->source() == this)
        dropSelectedAt(event->position().toPoint());
}

void WidgetOrderList::dropSelectedAt(const QPoint &position)
{
    const QListWidgetItem *target = itemAt(position);
    const auto dragged = selectedWidget();
    if (target && dragged)
        m_order.move(*dragged, widgetOf(*target));
}

void WidgetOrderList::setDropRow(int row)
{
    if (m_dropRow == row)
        return;
    m_dropRow = row;
    viewport()->update();
}

void WidgetOrderList::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    const QListWidgetItem *target = item(m_dropRow);
    if (!target)
        return;
    // Always above: that is where the widget will stand.
    const QRect row = visualItemRect(target);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor highlight = accent(palette(), palette().color(QPalette::Base));
    painter.setPen(QPen(highlight, 2));
    painter.setBrush(highlight);
    const int y = row.top() - 1;
    painter.drawEllipse(QPointF(row.left() + 4, y), 2.5, 2.5);
    painter.drawLine(row.left() + 7, y, row.right(), y);
}

void WidgetOrderList::changeEvent(QEvent *event)
{
    QListWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        refresh();
}

} // namespace orvelle
