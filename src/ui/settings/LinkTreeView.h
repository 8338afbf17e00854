#pragma once

#include "links/LinkItem.h"

#include <QSet>
#include <QTreeView>

#include <optional>

namespace orvelle {

class LinkTreeModel;

/// The list of all links. Keeps its selection, its open groups and its place
/// when the tree changes.
class LinkTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit LinkTreeView(LinkTreeModel &model, QWidget *parent = nullptr);

    /// Null when nothing is selected. Valid until the tree changes.
    const LinkItem *selectedItem() const;
    /// The selected group, or the group that holds the selected item; absent
    /// for the top level.
    std::optional<QUuid> selectedGroup() const;
    void selectItem(const QUuid &id);

signals:
    void selectedItemChanged();
    void openRequested();

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void rememberState();
    void restoreState();
    void followScreen();

    LinkTreeModel &m_model;
    QSet<QUuid> m_expanded;
    QUuid m_selected;
    int m_scrollPosition = 0;
};

} // namespace orvelle
