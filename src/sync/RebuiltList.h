#pragma once

#include "links/LinkItem.h"

#include <utility>

namespace orvelle {

/// A list made by walking another one. As long as every item is kept it is
/// that list itself, so that what did not change costs no memory.
class RebuiltList
{
public:
    /// `from` outlives this.
    explicit RebuiltList(const LinkList &from) : m_from(from) {}

    // What becomes of the next item of `from`.
    void keep()
    {
        if (m_isOwn)
            m_list.append(m_from.at(m_next));
        ++m_next;
    }
    void replace(LinkItem item)
    {
        part();
        m_list.append(std::move(item));
        ++m_next;
    }
    void drop()
    {
        part();
        ++m_next;
    }

    /// An item that `from` does not have here.
    void add(const LinkItem &item)
    {
        part();
        m_list.append(item);
    }

    /// Once, after all of `from` was walked.
    LinkList take()
    {
        if (m_isOwn)
            return std::move(m_list);
        return m_from;
    }

private:
    void part()
    {
        if (m_isOwn)
            return;
        m_list.reserve(m_from.size());
        for (qsizetype i = 0; i < m_next; ++i)
            m_list.append(m_from.at(i));
        m_isOwn = true;
    }

    const LinkList &m_from;
    LinkList m_list;
    qsizetype m_next = 0;
    bool m_isOwn = false;
};

/// Whether two lists are the same memory, and so equal without a comparison.
inline bool isSameList(const LinkList &a, const LinkList &b)
{
    return a.constData() == b.constData() && a.size() == b.size();
}

} // namespace orvelle
