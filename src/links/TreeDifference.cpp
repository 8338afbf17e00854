#include "links/TreeDifference.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace orvelle {

namespace {

qsizetype bytesOf(const LinkList &links);

qsizetype bytesOf(const LinkItem &item)
{
    const auto text = [](const std::optional<QString> &each) { return each ? 2 * each->size() : 0; };
    const auto data = [](const std::optional<QByteArray> &each) { return each ? each->size() : 0; };
    return qsizetype(sizeof(LinkItem)) + text(item.name) + text(item.path) + text(item.stableId) +
           text(item.noteContent) + data(item.noteRTFData) + data(item.bookmarkData) +
           (item.children ? bytesOf(*item.children) : 0);
}

qsizetype bytesOf(const LinkList &links)
{
    return std::accumulate(links.cbegin(), links.cend(), qsizetype(0),
                           [](qsizetype sum, const LinkItem &item) { return sum + bytesOf(item); });
}

/// Where the items are that differ, in both lists.
struct Middle {
    qsizetype at = 0;
    LinkList before;
    LinkList after;
};

Middle middleOf(const LinkList &from, const LinkList &to)
{
    const auto [left, right] = std::mismatch(from.cbegin(), from.cend(), to.cbegin(), to.cend());
    const auto [leftEnd, rightEnd] = std::mismatch(from.crbegin(), std::make_reverse_iterator(left), to.crbegin(),
                                                   std::make_reverse_iterator(right));
    return {left - from.cbegin(), LinkList(left, leftEnd.base()), LinkList(right, rightEnd.base())};
}

} // namespace

TreeDifference TreeDifference::between(const LinkList &from, const LinkList &to)
{
    const Middle middle = middleOf(from, to);
    TreeDifference result;
    result.m_at = middle.at;
    QHash<QUuid, qsizetype> places;
    for (const LinkItem &item : middle.before) {
        places.insert(item.id, result.m_before.size());
        result.m_before += item.id;
    }
    for (const LinkItem &item : middle.after) {
        const qsizetype place = places.value(item.id, -1);
        const LinkItem *before = place < 0 ? nullptr : &middle.before.at(place);
        if (!before || *before != item)
            result.m_changes.emplaceBack(result.m_after.size(), changeOf(before, item));
        result.m_after += place;
    }
    result.m_bytes = result.measured();
    return result;
}

TreeDifference::Change TreeDifference::changeOf(const LinkItem *before, const LinkItem &after)
{
    Change change{after, nullptr};
    if (before && before->children && after.children) {
        change.below = std::make_shared<const TreeDifference>(between(*before->children, *after.children));
        change.item.children.emplace(); // not clear(), which keeps the room for as many
    }
    return change;
}

qsizetype TreeDifference::measured() const
{
    qsizetype sum = qsizetype(sizeof *this) + m_before.size() * qsizetype(sizeof(QUuid)) +
                    m_after.size() * qsizetype(sizeof(qsizetype));
    for (const auto &[place, change] : m_changes)
        sum += bytesOf(change.item) + (change.below ? change.below->bytes() : 0);
    return sum;
}

bool TreeDifference::applyTo(LinkList &tree) const
{
    if (m_at + m_before.size() > tree.size() ||
        !std::equal(m_before.cbegin(), m_before.cend(), tree.cbegin() + m_at,
                    [](const QUuid &id, const LinkItem &item) { return id == item.id; }))
        return false;
    LinkList result = tree.first(m_at);
    auto next = m_changes.cbegin();
    for (qsizetype i = 0; i < m_after.size(); ++i) {
        if (next == m_changes.cend() || next->first != i) {
            result += tree.at(m_at + m_after.at(i));
            continue;
        }
        const Change &change = next++->second;
        result += change.item;
        if (!change.below)
            continue;
        std::optional<LinkList> members = tree.at(m_at + m_after.at(i)).children;
        if (!members || !change.below->applyTo(*members))
            return false;
        result.last().children = members;
    }
    tree = result + tree.sliced(m_at + m_before.size());
    return true;
}

} // namespace orvelle
