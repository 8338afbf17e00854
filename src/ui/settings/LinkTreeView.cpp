#include "ui/settings/LinkTreeView.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "ui/common/AssistedInput.h"
#include "ui/settings/LinkRowDelegate.h"
#include "ui/settings/LinkTreeModel.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int hoverDelay = 700; // milliseconds

} // namespace

LinkTreeView::LinkTreeView(LinkTreeModel &model, LinkStore &links, QWidget *parent)
    : QTreeView(parent), m_model(model), m_links(links), m_rows(new LinkRowDelegate(model, this))
{
    setObjectName(QStringLiteral("linkTree"));
    setAccessibleName(text("settings.links"_text));
    setModel(&model);
    setItemDelegate(m_rows);
    followSelection(this);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(EditKeyPressed);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false); // ours says more
    setTextElideMode(Qt::ElideMiddle);
    header()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    header()->setSectionsClickable(false);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(LinkTreeModel::NameColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(LinkTreeModel::KindColumn, QHeaderView::Fixed);
    followFont();

    m_hover.setSingleShot(true);
    m_hover.setInterval(hoverDelay);
    connect(&m_hover, &QTimer::timeout, this, &LinkTreeView::openHoveredGroup);
    connect(&model, &QAbstractItemModel::layoutChanged, this, &LinkTreeView::restoreExpansion);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) { noteExpansion(index, true); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &index) { noteExpansion(index, false); });
    connect(this, &QTreeView::activated, this, &LinkTreeView::openRequested);
}

const LinkItem *LinkTreeView::selectedItem() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.size() == 1 ? m_model.item(rows.constFirst()) : nullptr;
}

QList<QUuid> LinkTreeView::selectedIds(bool outermost) const
{
    QSet<QUuid> selected;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        selected.insert(m_model.item(row)->id);
    QList<QUuid> ids;
    const std::function<void(const LinkList &)> collect = [&](const LinkList &members) {
        for (const LinkItem &item : members) {
            const bool isSelected = selected.contains(item.id);
            if (isSelected)
                ids.append(item.id);
            if (item.children && !(outermost && isSelected))
                collect(*item.children);
        }
    };
    if (!selected.isEmpty())
        collect(m_links.links());
    return ids;
}

std::optional<QUuid> LinkTreeView::selectedGroup() const
{
    const QList<QUuid> ids = selectedIds(true);
    if (ids.isEmpty())
        return std::nullopt;
    const QModelIndex row = m_model.indexOf(ids.constFirst());
    const LinkItem *item = m_model.item(row);
    if (!item->isGroup() || ids.size() > 1)
        item = m_model.item(row.parent());
    return item ? std::optional(item->id) : std::nullopt;
}

void LinkTreeView::selectItems(const QList<QUuid> &ids)
{
    QItemSelection selection;
    QModelIndex first;
    for (const QUuid &id : ids) {
        const QModelIndex index = m_model.indexOf(id);
        if (!index.isValid())
            continue;
        for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
            expand(above);
        selection.select(index, index);
        if (!first.isValid())
            first = index;
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (first.isValid()) {
        selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
        scrollTo(first);
    }
}

/// With Alt the arrows move rows; where one cannot move it stays selected.
void LinkTreeView::keyPressEvent(QKeyEvent *event)
{
    const bool isArrow = event->key() >= Qt::Key_Left && event->key() <= Qt::Key_Down;
    if (isArrow && event->modifiers().testFlag(Qt::AltModifier))
        event->accept();
    else
        QTreeView::keyPressEvent(event);
}

void LinkTreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    emit selectedItemChanged();
}

void LinkTreeView::setSearch(const QString &search)
{
    m_model.setSearch(search);
    restoreExpansion();
    viewport()->update();
    if (m_model.search().isEmpty() && currentIndex().isValid())
        scrollTo(currentIndex());
}

bool LinkTreeView::isSearching() const
{
    return !m_model.search().isEmpty();
}

QStringList LinkTreeView::openGroups() const
{
    QStringList open(m_open.begin(), m_open.end());
    open.sort();
    return open;
}

void LinkTreeView::setOpenGroups(const QStringList &stableIds)
{
    m_open = QSet<QString>(stableIds.begin(), stableIds.end());
    restoreExpansion();
}

void LinkTreeView::noteExpansion(const QModelIndex &index, bool open)
{
    if (m_restoring || !m_model.search().isEmpty())
        return;
    const QString id = m_model.item(index)->stableId;
    if (open)
        m_open.insert(id);
    else
        m_open.remove(id);
    emit openGroupsChanged();
}

/// Under a search the groups that hold a match are open, else those that the
/// user opened. Cheap while the rows are waiting to be laid out.
void LinkTreeView::restoreExpansion()
{
    m_restoring = true;
    const bool searching = !m_model.search().isEmpty();
    for (const QModelIndex &group : m_model.groups()) {
        const bool open = searching ? m_model.holdsMatch(group) : m_open.contains(m_model.item(group)->stableId);
        if (isExpanded(group) != open)
            setExpanded(group, open);
    }
    m_restoring = false;
}

void LinkTreeView::followFont()
{
    header()->setMinimumHeight(fontMetrics().height() + 8);
    header()->resizeSection(LinkTreeModel::KindColumn, m_rows->kindWidth(*this));
}

void LinkTreeView::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        followFont();
}

} // namespace orvelle
