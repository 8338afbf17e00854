#include "ui/settings/LinkRows.h"

#include <algorithm>

namespace orvelle {

LinkRows::LinkRows(const LinkList &links) : m_links(links)
{
    addMembers(std::as_const(m_links), 0);
    // The list grows while it is walked: a group's members follow in time.
    for (int number = 1; number < count(); ++number) {
        if (const auto &children = m_rows[number].item->children)
            addMembers(*children, number);
    }
    m_numbers.reserve(m_rows.size());
    for (int number = 1; number < count(); ++number)
        m_numbers.insert(m_rows[number].item->id, number);
}

void LinkRows::addMembers(const LinkList &members, int parent)
{
    m_rows[parent].first = count();
    m_rows[parent].count = static_cast<int>(members.size());
    int position = 0;
    for (const LinkItem &item : members)
        m_rows.append(Row{&item, parent, position++, 0, 0, false});
}

QStringList LinkRows::foldedTexts() const
{
    QStringList texts;
    texts.reserve(m_rows.size());
    for (const Row &row : m_rows)
        texts.append(row.item ? foldedForSearch(*row.item) : QString());
    return texts;
}

LinkRows LinkRows::filtered(const LinkSearch &search, const QStringList &folded) const
{
    if (search.isEmpty())
        return *this;
    QList<bool> matches(m_rows.size(), false);
    QList<bool> holds(m_rows.size(), false);
    for (int number = count() - 1; number > 0; --number) {
        matches[number] = search.matches(folded[number]);
        if (matches[number] || holds[number])
            holds[m_rows[number].parent] = true;
    }
    QList<bool> inside(m_rows.size(), false); // of a group that matches
    QList<int> renumbered(m_rows.size(), 0);
    LinkRows left;
    left.m_links = m_links;
    // Parents come first, and members of one group side by side.
    for (int number = 1; number < count(); ++number) {
        const Row &row = m_rows[number];
        inside[number] = matches[row.parent] || inside[row.parent];
        if (!matches[number] && !holds[number] && !inside[number])
            continue;
        Row &parent = left.m_rows[renumbered[row.parent]];
        if (parent.count == 0)
            parent.first = left.count();
        renumbered[number] = left.count();
        const int position = parent.count++;
        left.m_rows.append(Row{row.item, renumbered[row.parent], position, 0, 0, holds[number]});
        left.m_numbers.insert(row.item->id, renumbered[number]);
    }
    return left;
}

bool LinkRows::hasSameShape(const LinkRows &other) const
{
    return std::equal(
        m_rows.begin(), m_rows.end(), other.m_rows.begin(), other.m_rows.end(), [](const Row &a, const Row &b) {
            return a.parent == b.parent && (!a.item || a.item->id == b.item->id) && a.holdsMatch == b.holdsMatch;
        });
}

} // namespace orvelle
