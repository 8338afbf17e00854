#include "base/Text.h"
#include "links/LinkStore.h"
#include "ui/common/Colors.h"
#include "ui/common/KeptWindow.h"
#include "ui/settings/DropIndicator.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

#include <algorithm>

namespace orvelle {

namespace {

/// A group at the last level takes nothing inside.
constexpr int levels = 3;
constexpr int pictureRows = 5;
constexpr int pictureWidth = 240;
constexpr QPoint pictureOffset{16, 12};

QString payloadType()
{
    return QStringLiteral("application/x-orvelle-link-ids");
}

bool isOurs(const QMimeData *data)
{
    return data->hasFormat(payloadType());
}

/// Whether all that is dragged are exported documents: the window takes them
/// in, wherever they are dropped.
bool areDocuments(const QList<QUrl> &urls)
{
    return std::all_of(urls.begin(), urls.end(), [](const QUrl &url) {
        return url.isLocalFile() && url.path().endsWith(QStringLiteral(".ovexport"), Qt::CaseInsensitive);
    });
}

bool isForeign(const QMimeData *data)
{
    return data->hasUrls() ? !areDocuments(data->urls()) : data->hasText();
}

/// What other programs get of a drag: addresses and files.
QList<QUrl> addressesOf(const LinkStore &links, const QList<QUuid> &ids)
{
    QList<QUrl> addresses;
    for (const QUuid &id : ids) {
        const auto item = links.find(id);
        if (!item || item->path.isEmpty() || item->type == LinkType::Note)
            continue;
        addresses +=
            item->type == LinkType::Url ? QUrl(item->path, QUrl::TolerantMode) : QUrl::fromLocalFile(item->path);
    }
    return addresses;
}

} // namespace

void LinkTreeView::startDrag(Qt::DropActions)
{
    const QList<QUuid> ids = selectedIds(true);
    if (ids.isEmpty())
        return;
    auto *mime = new QMimeData;
    mime->setData(payloadType(), LinkDropDelegate::payload(ids));
    if (const QList<QUrl> addresses = addressesOf(m_links, ids); !addresses.isEmpty())
        mime->setUrls(addresses);

    QRect region;
    int rows = 0;
    for (const QUuid &id : ids) {
        const QRect row = visualRect(m_model.indexOf(id));
        if (row.intersects(viewport()->rect()) && rows++ < pictureRows)
            region |= row.intersected(QRect(row.left(), row.top(), pictureWidth, row.height()));
    }
    auto *drag = new QDrag(this);
    drag->setMimeData(mime);
    if (!region.isEmpty()) {
        const QPixmap shot = viewport()->grab(region);
        QPixmap picture(shot.size());
        picture.setDevicePixelRatio(shot.devicePixelRatio());
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setOpacity(0.6); // what lies below shows where it would land
        painter.drawPixmap(0, 0, shot);
        painter.end();
        drag->setPixmap(picture);
        drag->setHotSpot(-pictureOffset); // the line under the pointer stays in view
    }
    m_dragged = ids;
    m_drop.draggedLinkId = m_model.item(currentIndex()) ? m_model.item(currentIndex())->id : ids.constFirst();
    const KeptWindow kept(*this);
    drag->exec(Qt::MoveAction | Qt::CopyAction | Qt::LinkAction, Qt::MoveAction);
    endDrag();
}

QModelIndex LinkTreeView::rowAt(const QPoint &position) const
{
    return indexAt(position).siblingAtColumn(LinkTreeModel::NameColumn);
}

bool LinkTreeView::isBeingDragged(const QModelIndex &row) const
{
    return m_dragged.contains(m_model.item(row)->id);
}

LinkDropDelegate LinkTreeView::delegateFor(const QModelIndex &row)
{
    return LinkDropDelegate(*m_model.item(row), m_model.levelOf(row), levels, m_links, visualRect(row).height(),
                            m_drop);
}

double LinkTreeView::heightWithin(const QModelIndex &row, const QPoint &position) const
{
    return position.y() - visualRect(row).top();
}

void LinkTreeView::dragEnterEvent(QDragEnterEvent *event)
{
    const QMimeData *mime = event->mimeData();
    if (!isOurs(mime) && !isForeign(mime)) {
        event->ignore();
        return;
    }
    setState(DraggingState);
    if (isOurs(mime))
        event->setDropAction(Qt::MoveAction);
    else
        event->setDropAction(event->possibleActions().testFlag(Qt::CopyAction) ? Qt::CopyAction : Qt::LinkAction);
    event->accept();
}

void LinkTreeView::dragMoveEvent(QDragMoveEvent *event)
{
    const QPoint position = event->position().toPoint();
    const QModelIndex row = rowAt(position);
    const DropState before = m_drop;
    const bool wasAtEnd = m_dropAtEnd;
    m_dropAtEnd = !row.isValid();
    if (row.isValid() && !isBeingDragged(row)) {
        delegateFor(row).dropUpdated(heightWithin(row, position));
    } else {
        m_drop.dropTargetId.reset();
        m_drop.dropTargetPosition = DropPosition::None;
    }
    if (m_drop != before || m_dropAtEnd != wasAtEnd) {
        m_hover.start();
        viewport()->update();
    }
    // Scrolls by itself near the upper and the lower edge.
    const QRect middle = viewport()->rect().adjusted(0, autoScrollMargin(), 0, -autoScrollMargin());
    if (!middle.contains(position))
        startAutoScroll();
    event->setDropAction(isOurs(event->mimeData()) ? Qt::MoveAction : event->dropAction());
    event->accept();
}

void LinkTreeView::dragLeaveEvent(QDragLeaveEvent *)
{
    const auto dragged = m_drop.draggedLinkId;
    const QList<QUuid> ids = m_dragged;
    endDrag();
    // It may come back.
    m_drop.draggedLinkId = dragged;
    m_dragged = ids;
}

void LinkTreeView::endDrag()
{
    m_drop = {};
    m_dropAtEnd = false;
    m_dragged.clear();
    m_hover.stop();
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
}

void LinkTreeView::openHoveredGroup()
{
    if (m_drop.dropTargetPosition != DropPosition::Inside)
        return;
    const QModelIndex row = m_model.indexOf(*m_drop.dropTargetId);
    if (row.isValid() && m_model.item(row)->id != m_drop.draggedLinkId)
        expand(row);
}

void LinkTreeView::dropEvent(QDropEvent *event)
{
    const QPoint position = event->position().toPoint();
    const QMimeData *mime = event->mimeData();
    if (isOurs(mime)) {
        // Whoever began the drag has nothing left to take away.
        event->setDropAction(Qt::CopyAction);
        event->accept();
        dropRows(position, mime->data(payloadType()));
    } else if (isForeign(mime)) {
        event->accept();
        dropForeign(position, mime);
    } else {
        event->ignore();
    }
    endDrag();
}

void LinkTreeView::dropRows(const QPoint &position, const QByteArray &payload)
{
    const QList<QUuid> ids = LinkDropDelegate::draggedIds(payload);
    const QModelIndex row = rowAt(position);
    if (row.isValid() && ids.contains(m_model.item(row)->id))
        return; // on itself: it stays where it is
    const auto refusal = row.isValid() ? delegateFor(row).performDrop(heightWithin(row, position), payload)
                                       : m_links.moveLinks(ids, std::nullopt);
    if (refusal)
        emit moveRefused(*refusal);
    else
        selectItems(ids);
}

void LinkTreeView::dropForeign(const QPoint &position, const QMimeData *mime)
{
    const QModelIndex row = rowAt(position);
    if (!row.isValid()) {
        emit dropped(mime, std::nullopt, std::nullopt);
        return;
    }
    const QUuid id = m_model.item(row)->id;
    const DropPosition landing = delegateFor(row).position(heightWithin(row, position));
    if (landing == DropPosition::Inside) {
        emit dropped(mime, id, std::nullopt);
        return;
    }
    const auto location = findLinkLocation(m_links.links(), id);
    if (!location)
        return;
    emit dropped(mime, location->parent ? std::optional(location->parent->id) : std::nullopt,
                 location->index + (landing == DropPosition::After ? 1 : 0));
}

int LinkTreeView::bottomOf(const QModelIndex &row) const
{
    QModelIndex last = row;
    while (isExpanded(last) && m_model.rowCount(last) > 0)
        last = m_model.index(m_model.rowCount(last) - 1, 0, last);
    const QRect place = visualRect(last);
    // A group that reaches below what is visible has no place for its last row.
    return place.isValid() ? place.bottom() + 1 : viewport()->height();
}

LinkTreeView::Landing LinkTreeView::landing(const QModelIndex &target) const
{
    const int level = m_model.levelOf(target);
    const bool after = m_drop.dropTargetPosition == DropPosition::After;
    const QModelIndex dragged = m_dragged.size() == 1 ? m_model.indexOf(m_dragged.constFirst()) : QModelIndex();
    // Taken out above the target, a single row comes to stand one place lower.
    if (dragged.isValid() && dragged.parent() == target.parent() && dragged.row() < target.row()) {
        const QModelIndex next = m_model.index(target.row() + 1, 0, target.parent());
        return {bottomOf(after && next.isValid() ? next : target), level};
    }
    return {after ? bottomOf(target) : visualRect(target).top(), level};
}

void LinkTreeView::paintDropTarget(QPainter &painter) const
{
    const QColor color = accent(palette(), palette().color(QPalette::Base));
    const QRect area = viewport()->rect();
    if (m_dropAtEnd) {
        const QModelIndex last = m_model.index(m_model.rowCount() - 1, 0);
        DropIndicator(0, indentation(), color).paint(painter, area, last.isValid() ? bottomOf(last) : 0);
        return;
    }
    const QModelIndex target = m_drop.dropTargetId ? m_model.indexOf(*m_drop.dropTargetId) : QModelIndex();
    if (!target.isValid() || m_drop.dropTargetPosition == DropPosition::None)
        return;
    if (m_drop.dropTargetPosition != DropPosition::Inside) {
        const Landing line = landing(target);
        DropIndicator(line.level, indentation(), color).paint(painter, area, line.y);
        return;
    }
    QColor ground = color;
    ground.setAlphaF(0.2F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 2));
    painter.setBrush(ground);
    const QRect row = visualRect(target);
    painter.drawRoundedRect(
        QRectF(row.left(), row.top(), area.width() - row.left(), row.height()).adjusted(1, 1, -2, -1), 5, 5);
}

void LinkTreeView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    QPainter painter(viewport());
    paintDropTarget(painter);
}

} // namespace orvelle
