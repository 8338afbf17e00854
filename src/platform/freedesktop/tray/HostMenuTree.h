#pragma once

#include "platform/HostMenuSource.h"
#include "platform/freedesktop/tray/HostMenuTypes.h"

#include <QHash>

#include <functional>
#include <optional>

namespace orvelle {

/// The rows of a host's menu with the numbers by which the host knows them. A
/// row keeps its number while it is there, and no number is given twice, so
/// that a click meant for a row that has gone meets nothing. Levels are made
/// when they are first looked at.
class HostMenuTree
{
public:
    static constexpr int rootId = 0;
    /// How many rows a question for everything makes at most. Larger submenus
    /// are made when the host opens them.
    static constexpr qsizetype unaskedRows = 300;

    /// What a host has to be told after a change.
    struct Changes {
        QList<int> layouts; ///< rows whose children are others now
        QList<HostMenuProperties> updated;
        QList<HostMenuRemovals> removed;
        bool isEmpty() const { return layouts.isEmpty() && updated.isEmpty() && removed.isEmpty(); }
    };

    /// The top level. What was there stays, as far as it still is; levels that
    /// have been looked at are made again.
    Changes setItems(const QList<HostMenuItem> &items);

    bool exists(int id) const { return id == rootId || m_rows.contains(id); }
    /// Null for the root and what is not there.
    const HostMenuItem *item(int id) const;
    /// Makes the children of a submenu that nobody has looked at yet; false
    /// when there is nothing to be made.
    bool expand(int id);

    /// `depth` levels below `id`, or with -1 all that is not too much; the
    /// first level always. With names only those properties.
    HostMenuNode layout(int id, int depth, const QStringList &names);
    QVariantMap properties(int id, const QStringList &names) const;
    /// Rows that have been made, the root among them.
    QList<int> ids() const;

private:
    struct Row {
        HostMenuItem item;
        QList<int> children;
        bool isExpanded = false;
    };

    void merge(int parent, const QList<HostMenuItem> &items, Changes *changes);
    void mergeRow(int id, const HostMenuItem &item, Changes *changes);
    QList<int> childrenOf(int id) const;
    void drop(int id);
    void fill(HostMenuNode &node, int depth, const QStringList &names, qsizetype &room);

    Row m_root{{}, {}, true};
    QHash<int, Row> m_rows;
    int m_lastId = rootId;
};

} // namespace orvelle
