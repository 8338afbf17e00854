#pragma once

#include "links/SnapshotStore.h"
#include "ui/settings/SnapshotDifference.h"

#include <QDialog>

class QTreeWidget;
class QTreeWidgetItem;

namespace orvelle {

/// The tree of a snapshot, to look at, with what restoring it would change.
/// Accepted when the user wants it restored. Deletes itself when closed.
class SnapshotPreview : public QDialog
{
    Q_OBJECT

public:
    /// `links` is what the snapshot holds, `current` the tree as it is.
    SnapshotPreview(const SnapshotInfo &info, const LinkList &links, const LinkList &current, Timestamp now,
                    QWidget *parent = nullptr);

private:
    QWidget *makeHead(const SnapshotInfo &info, Timestamp now);
    QStringList changes() const;
    QTreeWidget *makeTree(const LinkList &links);
    void addItems(const LinkList &links, QTreeWidgetItem *parent);
    void fill(QTreeWidgetItem *group);

    SnapshotDifference m_difference;
    QHash<QTreeWidgetItem *, LinkList> m_unfilled; ///< groups not opened so far
};

} // namespace orvelle
