#pragma once

#include "links/LinkItem.h"
#include "ui/settings/LinkSearch.h"

#include <QHash>
#include <QList>

namespace orvelle {

/// The rows of one state of the tree under one search, by number: row 0 is the
/// invisible root, members of a group stand side by side, a group before its
/// members. A value; holds on to the tree that its items lie in.
class LinkRows
{
public:
    struct Row {
        const LinkItem *item = nullptr; ///< null for the root
        int parent = 0;
        int position = 0;        ///< among the parent's rows
        int first = 0;           ///< number of the first member's row
        int count = 0;           ///< members that have a row
        bool holdsMatch = false; ///< something below it is what the search asks for
    };

    LinkRows() = default;
    explicit LinkRows(const LinkList &links);

    /// The rows that the search leaves: what matches, the groups around it, and
    /// everything in a group that matches. `folded` has a text for each row.
    LinkRows filtered(const LinkSearch &search, const QStringList &folded) const;
    /// The text of each row as the search compares it.
    QStringList foldedTexts() const;

    int count() const { return static_cast<int>(m_rows.size()); }
    const Row &at(int number) const { return m_rows[number]; }
    /// 0 for an item without a row.
    int numberOf(const QUuid &id) const { return m_numbers.value(id); }

    /// The same items at the same places, whatever has changed about them.
    bool hasSameShape(const LinkRows &other) const;

private:
    void addMembers(const LinkList &members, int parent);

    LinkList m_links;
    QList<Row> m_rows{Row{}};
    QHash<QUuid, int> m_numbers;
};

} // namespace orvelle
