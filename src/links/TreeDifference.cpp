#include "links/TreeDifference.h"

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

bool areOneGroup(const LinkList &before, const LinkList &after)
{
    return before.size() == 1 && after.size() == 1 && before.first().id == after.first().id &&
           before.first().children && after.first().children;
}

} // namespace

TreeDifference TreeDifference::between(const LinkList &from, const LinkList &to)
{
    TreeDifference result;
    const auto [left, right] = std::mismatch(from.cbegin(), from.cend(), to.cbegin(), to.cend());
    const auto [leftEnd, rightEnd] = std::mismatch(from.crbegin(), std::make_reverse_iterator(left), to.crbegin(),
                                                   std::make_reverse_iterator(right));
    result.m_at = left - from.cbegin();
    const LinkList before(left, leftEnd.base());
    result.m_after = LinkList(right, rightEnd.base());
    for (const LinkItem &item : before)
        result.m_before += item.id;
    if (areOneGroup(before, result.m_after)) {
        LinkItem &group = result.m_after.first();
        result.m_below = std::make_shared<const TreeDifference>(between(*before.first().children, *group.children));
        group.children->clear();
    }
    result.m_bytes = qsizetype(sizeof result) + result.m_before.size() * qsizetype(sizeof(QUuid)) +
                     bytesOf(result.m_after) + (result.m_below ? result.m_below->bytes() : 0);
    return result;
}

bool TreeDifference::applyTo(LinkList &tree) const
{
    if (m_at + m_before.size() > tree.size() ||
        !std::equal(m_before.cbegin(), m_before.cend(), tree.cbegin() + m_at,
                    [](const QUuid &id, const LinkItem &item) { return id == item.id; }))
        return false;
    LinkList after = m_after;
    if (m_below) {
        std::optional<LinkList> members = tree.at(m_at).children;
        if (!members || !m_below->applyTo(*members))
            return false;
        after.first().children = members;
    }
    tree = tree.first(m_at) + after + tree.sliced(m_at + m_before.size());
    return true;
}

} // namespace orvelle
