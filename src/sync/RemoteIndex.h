#pragma once

#include "links/LinkItem.h"
#include "sync/SaneDates.h"

#include <QHash>

#include <vector>

namespace orvelle {

/// Where each identity is in a tree. Items have positions: their numbers in
/// display order, groups before their members. Building takes linear time, a
/// question at most the logarithm of how often an identity repeats.
class RemoteIndex
{
public:
    /// One list of siblings with all that is below them: positions from
    /// `begin` to before `end`.
    struct Level {
        int parent; ///< the position of their group, or -1
        int begin;
        int end;
    };

    /// `remote` outlives this.
    explicit RemoteIndex(const LinkList &remote, const SaneDates &dates = {});

    int size() const { return static_cast<int>(m_items.size()); }
    Level root() const { return {-1, 0, size()}; }
    Level below(int position) const { return {position, position + 1, m_ends[at(position)]}; }
    const LinkItem &item(int position) const { return *m_items[at(position)]; }
    /// The position behind an item and all that is below it.
    int endOf(int position) const { return m_ends[at(position)]; }

    /// A number for an identity, or -1 when the tree does not have it.
    int identity(const QString &stableId) const { return m_identities.value(stableId, -1); }
    /// The newest copy, the first of equals, that is in this list itself; -1
    /// when there is none.
    int newestIn(Level level, int identity) const;
    /// Whether a copy is in this list or anywhere below it.
    bool isBelow(Level level, int identity) const;
    /// The item date of the newest copy. The identity is not -1.
    CountedDate newestDate(int identity) const;

private:
    static std::size_t at(int number) { return static_cast<std::size_t>(number); }
    void number(const LinkList &list, int parent);
    void sortByIdentity(const std::vector<int> &identities);
    void findRepeated();

    SaneDates m_dates;
    std::vector<const LinkItem *> m_items;
    std::vector<int> m_parents;
    std::vector<int> m_ends;
    QHash<QStringView, int> m_identities; ///< of texts in the items
    /// The positions of identity i are from m_starts[i] to before
    /// m_starts[i + 1], ascending.
    std::vector<int> m_positions;
    std::vector<int> m_starts;
    /// Of identities that repeat: the newest position by identity and parent.
    QHash<std::pair<int, int>, int> m_repeated;
    QHash<int, CountedDate> m_repeatedDates;
};

} // namespace orvelle
