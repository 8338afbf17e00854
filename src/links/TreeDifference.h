#pragma once

#include "links/LinkItem.h"

#include <memory>
#include <utility>

namespace orvelle {

/// What makes one tree of another: the items that are new or changed and the
/// order of those around them, not the trees.
class TreeDifference
{
public:
    /// Leads from a tree to another one.
    static TreeDifference between(const LinkList &from, const LinkList &to);

    /// Changes a tree like `from` as it led to `to`. What differs from `from`
    /// elsewhere stays. False, and the tree is as it was, when other items
    /// stand where the difference is.
    [[nodiscard]] bool applyTo(LinkList &tree) const;

    /// About what this takes, in bytes.
    qsizetype bytes() const { return m_bytes; }

private:
    struct Change {
        LinkItem item;
        /// For a group that was there: what differs below it, in place of the
        /// members, which `item` has not.
        std::shared_ptr<const TreeDifference> below;
    };

    static Change changeOf(const LinkItem *before, const LinkItem &after);
    qsizetype measured() const;

    qsizetype m_at = 0;
    QList<QUuid> m_before;    ///< the items that stand there
    QList<qsizetype> m_after; ///< those that are to stand there: places in m_before, -1 for a new one
    QList<std::pair<qsizetype, Change>> m_changes; ///< by the place in m_after, rising; the others are as they were
    qsizetype m_bytes = 0;
};

} // namespace orvelle
