#pragma once

#include "links/SnapshotStore.h"

#include <QAbstractTableModel>

namespace orvelle {

/// The list of snapshots: date, what they were taken before, number of items.
/// All of it comes from the names; no snapshot is read.
class SnapshotModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { DateColumn, ReasonColumn, CountColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// Newest first. `now` tells today from earlier days.
    void setSnapshots(const QList<SnapshotInfo> &snapshots, Timestamp now);
    const SnapshotInfo &snapshot(const QModelIndex &index) const { return m_snapshots.at(index.row()); }
    /// Invalid when there is none of that name.
    QModelIndex indexOf(const QString &name) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString display(const SnapshotInfo &snapshot, int column) const;

    QList<SnapshotInfo> m_snapshots;
    Timestamp m_now;
};

} // namespace orvelle
