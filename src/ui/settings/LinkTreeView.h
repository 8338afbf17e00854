#pragma once

#include "links/LinkItem.h"
#include "ui/settings/LinkDropDelegate.h"

#include <QSet>
#include <QTimer>
#include <QTreeView>

#include <optional>

class QMimeData;

namespace orvelle {

class LinkRowDelegate;
class LinkStore;
class LinkTreeModel;

/// The list of all links. Keeps its selection, its open groups and its place
/// when the tree changes. Rows are dragged to other places; files, addresses
/// and texts from elsewhere are handed on with the place they were dropped at.
class LinkTreeView : public QTreeView
{
    Q_OBJECT

public:
    /// Both outlive the view.
    LinkTreeView(LinkTreeModel &model, LinkStore &links, QWidget *parent = nullptr);

    /// Null unless exactly one item is selected. Valid until the tree changes.
    const LinkItem *selectedItem() const;
    /// The selected items in display order, without those inside another
    /// selected group when `outermost`.
    QList<QUuid> selectedIds(bool outermost = false) const;
    /// The selected group, or the group that holds the selected item; absent
    /// for the top level.
    std::optional<QUuid> selectedGroup() const;
    /// Selects just these, opens the groups around them and shows the first.
    void selectItems(const QList<QUuid> &ids);
    void selectItem(const QUuid &id) { selectItems({id}); }

    /// Shows what matches with its groups open; an empty text shows all again,
    /// opened as it was.
    void setSearch(const QString &search);
    bool isSearching() const;

    /// The open groups, by stable id. A search does not change them.
    QStringList openGroups() const;
    void setOpenGroups(const QStringList &stableIds);

signals:
    void selectedItemChanged();
    void openRequested();
    void openGroupsChanged();
    /// Something from elsewhere was dropped: into the group (absent: the top
    /// level), before the place `at` there (absent: at the end).
    void dropped(const QMimeData *data, const std::optional<QUuid> &group, const std::optional<qsizetype> &at);
    /// Rows were dropped where they cannot go.
    void moveRefused(orvelle::EditRefusal refusal);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    void followFont();
    void noteExpansion(const QModelIndex &index, bool open);
    void restoreExpansion();

    QModelIndex rowAt(const QPoint &position) const;
    bool isBeingDragged(const QModelIndex &row) const;
    LinkDropDelegate delegateFor(const QModelIndex &row);
    double heightWithin(const QModelIndex &row, const QPoint &position) const;
    void endDrag();
    void openHoveredGroup();
    void dropRows(const QPoint &position, const QByteArray &payload);
    void dropForeign(const QPoint &position, const QMimeData *data);
    void paintDropTarget(QPainter &painter) const;
    /// Where the line lies that shows the landing, and the level it is at.
    struct Landing {
        int y = 0;
        int level = 0;
    };
    Landing landing(const QModelIndex &target) const;
    int bottomOf(const QModelIndex &row) const;

    LinkTreeModel &m_model;
    LinkStore &m_links;
    LinkRowDelegate *m_rows;
    QSet<QString> m_open;
    bool m_restoring = false;
    DropState m_drop;
    bool m_dropAtEnd = false; ///< below the last row
    QList<QUuid> m_dragged;   ///< by a drag that began here
    QTimer m_hover;           ///< opens the group under a drag that rests
};

} // namespace orvelle
