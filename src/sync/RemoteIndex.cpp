#include "sync/RemoteIndex.h"

#include "links/LinkTree.h"

#include <algorithm>

namespace orvelle {

RemoteIndex::RemoteIndex(const LinkList &remote, const SaneDates &dates) : m_dates(dates)
{
    const auto count = static_cast<std::size_t>(countAll(remote));
    m_items.reserve(count);
    m_parents.reserve(count);
    m_ends.reserve(count);
    m_identities.reserve(static_cast<qsizetype>(count));
    number(remote, -1);
    std::vector<int> identities;
    identities.reserve(count);
    for (const LinkItem *item : m_items) {
        const qsizetype before = m_identities.size();
        int &identity = m_identities[item->stableId];
        if (m_identities.size() > before)
            identity = static_cast<int>(before);
        identities.push_back(identity);
    }
    sortByIdentity(identities);
    findRepeated();
}

void RemoteIndex::number(const LinkList &list, int parent)
{
    for (const LinkItem &item : list) {
        const int position = size();
        m_items.push_back(&item);
        m_parents.push_back(parent);
        m_ends.push_back(position + 1);
        if (item.children)
            number(*item.children, position);
        m_ends[at(position)] = size();
    }
}

void RemoteIndex::sortByIdentity(const std::vector<int> &identities)
{
    m_starts.assign(static_cast<std::size_t>(m_identities.size()) + 1, 0);
    for (const int identity : identities)
        ++m_starts[at(identity) + 1];
    for (std::size_t i = 1; i < m_starts.size(); ++i)
        m_starts[i] += m_starts[i - 1];
    std::vector<int> next(m_starts.begin(), m_starts.end() - 1);
    m_positions.resize(identities.size());
    for (int position = 0; position < size(); ++position)
        m_positions[at(next[at(identities[at(position)])]++)] = position;
}

void RemoteIndex::findRepeated()
{
    for (int identity = 0; identity + 1 < static_cast<int>(m_starts.size()); ++identity) {
        const int start = m_starts[at(identity)];
        const int end = m_starts[at(identity) + 1];
        if (end - start < 2)
            continue;
        CountedDate newest = m_dates.count(Timestamp::distantPast());
        for (int i = start; i < end; ++i) {
            const int position = m_positions[at(i)];
            const std::pair place{identity, m_parents[at(position)]};
            const auto best = m_repeated.find(place);
            if (best == m_repeated.end())
                m_repeated.insert(place, position);
            else if (m_dates.itemDate(item(position)) > m_dates.itemDate(item(*best)))
                *best = position;
            newest = std::max(newest, m_dates.itemDate(item(position)));
        }
        m_repeatedDates.insert(identity, newest);
    }
}

int RemoteIndex::newestIn(Level level, int identity) const
{
    if (identity < 0)
        return -1;
    const int start = m_starts[at(identity)];
    if (m_starts[at(identity) + 1] - start > 1)
        return m_repeated.value({identity, level.parent}, -1);
    const int position = m_positions[at(start)];
    return m_parents[at(position)] == level.parent ? position : -1;
}

bool RemoteIndex::isBelow(Level level, int identity) const
{
    if (identity < 0)
        return false;
    const auto begin = m_positions.begin() + m_starts[at(identity)];
    const auto end = m_positions.begin() + m_starts[at(identity) + 1];
    const auto found = std::lower_bound(begin, end, level.begin);
    return found != end && *found < level.end;
}

CountedDate RemoteIndex::newestDate(int identity) const
{
    const int start = m_starts[at(identity)];
    if (m_starts[at(identity) + 1] - start > 1)
        return m_repeatedDates.value(identity);
    return m_dates.itemDate(item(m_positions[at(start)]));
}

} // namespace orvelle
