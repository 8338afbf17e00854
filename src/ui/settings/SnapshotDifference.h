#pragma once

#include "links/LinkItem.h"

#include <QHash>

namespace orvelle {

/// What becomes of the items of a snapshot when it takes the place of the
/// tree. Items are told apart by their stable ids.
struct SnapshotDifference {
    enum class Fate { Same, ComesBack, Changes, Moves };

    qint64 comeBack = 0;   ///< only in the snapshot
    qint64 go = 0;         ///< only in the tree
    qint64 change = 0;     ///< in both, with another content
    qint64 move = 0;       ///< in both and alike, but in another group
    bool reorders = false; ///< some list holds what it held, in another order
    /// Of the snapshot's items, by stable id; absent is Same.
    QHash<QString, Fate> fates;

    bool isEmpty() const { return comeBack == 0 && go == 0 && change == 0 && move == 0 && !reorders; }
};

SnapshotDifference snapshotDifference(const LinkList &tree, const LinkList &snapshot);

} // namespace orvelle
