#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <gumbo.h>

#include <memory>

namespace orvelle {

struct WorkProgress;

/// A page from outside as a tree of nodes, parsed as browsers do (HTML Living
/// Standard, "Parsing HTML documents") within bounds of memory and time. The
/// tree may be nested tens of thousands deep: walk it without recursion.
class HtmlTree
{
public:
    enum class Failure {
        TooDeep,   ///< nested so that parsing it would take for ever
        TooLarge,  ///< more memory than is allowed
        Cancelled, ///< `progress` said so
    };

    /// Memory for the tree of one page.
    static constexpr qint64 maxBytes = qint64(1) << 30;
    /// Processor time for one page, in seconds. The largest page that is read
    /// takes a tenth of it.
    static constexpr int maxSeconds = 30;

    /// `utf8` is valid UTF-8. Any thread; reports 0 to 800 permille.
    static Result<std::shared_ptr<const HtmlTree>, Failure> parse(const QByteArray &utf8,
                                                                  WorkProgress *progress = nullptr);
    /// About how deep the elements of a page are nested, seen without parsing
    /// it; more when it leaves them open.
    static qint64 nestingOf(const QByteArray &utf8);
    ~HtmlTree();
    Q_DISABLE_COPY_MOVE(HtmlTree)

    const GumboNode *document() const { return m_document; }

private:
    struct Pool;
    HtmlTree();

    QByteArray m_source;
    std::unique_ptr<Pool> m_pool;
    const GumboNode *m_document = nullptr;
};

/// The next node in the order of the document; null at the end. `leave` is
/// called for each node whose members have all been visited.
template<typename Leave>
const GumboNode *nextNode(const GumboNode *node, Leave leave);

/// The members of a node; null for texts and comments.
inline const GumboVector *childrenOf(const GumboNode *node)
{
    switch (node->type) {
    case GUMBO_NODE_DOCUMENT:
        return &node->v.document.children;
    case GUMBO_NODE_ELEMENT:
    case GUMBO_NODE_TEMPLATE:
        return &node->v.element.children;
    default:
        return nullptr;
    }
}

inline const GumboNode *childAt(const GumboNode *node, std::size_t index)
{
    const GumboVector *children = childrenOf(node);
    if (!children || index >= children->length)
        return nullptr;
    return static_cast<const GumboNode *>(children->data[index]);
}

template<typename Leave>
const GumboNode *nextNode(const GumboNode *node, Leave leave)
{
    if (const GumboNode *first = childAt(node, 0))
        return first;
    while (node) {
        leave(node);
        const GumboNode *parent = node->parent;
        if (!parent)
            return nullptr;
        if (const GumboNode *sibling = childAt(parent, node->index_within_parent + 1))
            return sibling;
        node = parent;
    }
    return nullptr;
}

/// The tag of an element; GUMBO_TAG_UNKNOWN for anything else.
inline GumboTag tagOf(const GumboNode *node)
{
    const bool isElement = node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE;
    return isElement ? node->v.element.tag : GUMBO_TAG_UNKNOWN;
}

/// The attribute of an element (`name` in lower case); empty without one.
inline QByteArrayView attributeOf(const GumboNode *element, const char *name)
{
    const GumboAttribute *attribute = gumbo_get_attribute(&element->v.element.attributes, name);
    return attribute ? QByteArrayView(attribute->value) : QByteArrayView();
}

} // namespace orvelle
