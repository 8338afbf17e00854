#include "ui/settings/LinkTreeView.h"

#include "base/Text.h"
#include "ui/settings/LinkTreeModel.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace orvelle {

namespace {

/// Gives the rows some air.
class RoomyDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(8, 8);
    }
};

} // namespace

LinkTreeView::LinkTreeView(LinkTreeModel &model, QWidget *parent) : QTreeView(parent), m_model(model)
{
    setObjectName(QStringLiteral("linkTree"));
    setAccessibleName(text("settings.links"_text));
    followScreen();
    setModel(&model);
    setItemDelegate(new RoomyDelegate(this));
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(false);
    setTextElideMode(Qt::ElideMiddle);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    header()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    header()->setMinimumHeight(fontMetrics().height() + 8);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(LinkTreeModel::NameColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(LinkTreeModel::KindColumn, QHeaderView::ResizeToContents);

    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, &LinkTreeView::rememberState);
    connect(&model, &QAbstractItemModel::modelReset, this, &LinkTreeView::restoreState);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &LinkTreeView::selectedItemChanged);
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex &index) { m_expanded.insert(index.data(LinkTreeModel::IdRole).toUuid()); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { m_expanded.remove(index.data(LinkTreeModel::IdRole).toUuid()); });
    connect(this, &QTreeView::activated, this, &LinkTreeView::openRequested);
}

const LinkItem *LinkTreeView::selectedItem() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : m_model.item(rows.constFirst());
}

std::optional<QUuid> LinkTreeView::selectedGroup() const
{
    const LinkItem *item = selectedItem();
    if (!item)
        return std::nullopt;
    if (!item->isGroup())
        item = m_model.item(m_model.parent(m_model.indexOf(item->id)));
    return item ? std::optional(item->id) : std::nullopt;
}

void LinkTreeView::selectItem(const QUuid &id)
{
    if (const QModelIndex index = m_model.indexOf(id); index.isValid()) {
        setCurrentIndex(index);
        scrollTo(index);
    }
}

void LinkTreeView::rememberState()
{
    const LinkItem *item = selectedItem();
    m_selected = item ? item->id : QUuid();
    m_scrollPosition = verticalScrollBar()->value();
}

void LinkTreeView::restoreState()
{
    const QSignalBlocker quiet(this);
    for (const QUuid &id : std::as_const(m_expanded))
        setExpanded(m_model.indexOf(id), true);
    if (const QModelIndex index = m_model.indexOf(m_selected); index.isValid())
        setCurrentIndex(index);
    verticalScrollBar()->setValue(m_scrollPosition);
    QMetaObject::invokeMethod(this, &LinkTreeView::selectedItemChanged, Qt::QueuedConnection);
}

void LinkTreeView::followScreen()
{
    m_model.setPixelRatio(devicePixelRatioF());
    m_model.setPalette(palette());
    viewport()->update();
}

void LinkTreeView::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        followScreen();
}

void LinkTreeView::showEvent(QShowEvent *event)
{
    QTreeView::showEvent(event);
    followScreen();
}

} // namespace orvelle
