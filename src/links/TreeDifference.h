#pragma once

#include "links/LinkItem.h"

#include <memory>

namespace orvelle {

/// What makes one tree of another: the items that differ, not the trees. Items
/// that were only moved over others differ from where they were to where they
/// are.
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
    qsizetype m_at = 0;
    QList<QUuid> m_before; ///< the items that stand there
    LinkList m_after;      ///< those that are to stand there instead
    /// When both are one and the same group: what differs below it, in place of
    /// the members, which `m_after` has not.
    std::shared_ptr<const TreeDifference> m_below;
    qsizetype m_bytes = 0;
};

} // namespace orvelle
