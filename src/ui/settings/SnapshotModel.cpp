#include "ui/settings/SnapshotModel.h"

#include "base/Text.h"
#include "ui/common/Icons.h"
#include "ui/settings/SnapshotTexts.h"

#include <QLocale>

#include <algorithm>
#include <array>

namespace orvelle {

void SnapshotModel::setSnapshots(const QList<SnapshotInfo> &snapshots, Timestamp now)
{
    beginResetModel();
    m_snapshots = snapshots;
    m_now = now;
    endResetModel();
}

QModelIndex SnapshotModel::indexOf(const QString &name) const
{
    const auto found = std::find_if(m_snapshots.cbegin(), m_snapshots.cend(),
                                    [&name](const SnapshotInfo &snapshot) { return snapshot.name == name; });
    return found == m_snapshots.cend() ? QModelIndex() : index(static_cast<int>(found - m_snapshots.cbegin()), 0);
}

int SnapshotModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_snapshots.size());
}

int SnapshotModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString SnapshotModel::display(const SnapshotInfo &snapshot, int column) const
{
    switch (column) {
    case DateColumn:
        return momentText(snapshot.takenAt, m_now);
    case ReasonColumn:
        return snapshotReasonText(snapshot);
    case CountColumn:
        return QLocale().toString(snapshot.itemCount);
    default:
        return {};
    }
}

QVariant SnapshotModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const SnapshotInfo &snapshot = m_snapshots.at(index.row());
    if (role == Qt::DisplayRole)
        return display(snapshot, index.column());
    if (role == Qt::TextAlignmentRole && index.column() == CountColumn)
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::AccessibleTextRole && index.column() == DateColumn)
        return QStringList{display(snapshot, DateColumn), display(snapshot, ReasonColumn),
                           itemCountText(snapshot.itemCount)}
            .join(QStringLiteral(", "));
    return {};
}

QVariant SnapshotModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const std::array<TextKey, ColumnCount> titles{"snapshot.column.date"_text, "snapshot.column.reason"_text,
                                                         "snapshot.column.items"_text};
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return text(titles.at(static_cast<std::size_t>(section)));
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((section == CountColumn ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return {};
}

} // namespace orvelle
