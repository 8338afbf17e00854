#pragma once

#include "links/LinkItem.h"

#include <vector>

namespace orvelle {

/// Items that lost the group they were in. They get a place at the end of the
/// nearest group around them that is still in a tree, else at the end of its
/// top level.
class Orphanage
{
public:
    /// A way down the tree that the items came from: a number for the
    /// innermost group, noRoute at the top level.
    static constexpr int noRoute = -1;
    int into(int outer, const QString &stableId)
    {
        m_groups.push_back({stableId, outer});
        return static_cast<int>(m_groups.size()) - 1;
    }

    void add(const LinkItem &item, int route) { m_orphans.push_back({item, route}); }
    bool isEmpty() const { return m_orphans.empty(); }

    /// `tree` with all of them in it, in the order in which they were added.
    /// Coming into another group is an edit: with `movedAt` a dated item is
    /// newer afterwards than the same version of it at its old place, so that
    /// other machines take the new one, and not older than that moment.
    LinkList adoptInto(const LinkList &tree, std::optional<Timestamp> movedAt);

private:
    struct Group {
        QString stableId;
        int outer;
    };
    struct Orphan {
        LinkItem item;
        int route;
    };

    /// For each orphan the group that it comes into; null for the top level.
    std::vector<const QString *> findTargets(const LinkList &tree) const;

    std::vector<Group> m_groups;
    std::vector<Orphan> m_orphans;
};

} // namespace orvelle
