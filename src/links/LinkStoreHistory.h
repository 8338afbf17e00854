#pragma once

#include "links/LinkStore.h"

namespace orvelle {

/// Trees before and after; they share what they have in common.
struct LinkStore::History {
    static constexpr qsizetype maxSteps = 200;

    QList<LinkList> undo;
    QList<LinkList> redo;

    static void push(QList<LinkList> &trees, const LinkList &tree)
    {
        if (trees.size() == maxSteps)
            trees.removeFirst();
        trees.append(tree);
    }

    void clear()
    {
        undo.clear();
        redo.clear();
    }
};

} // namespace orvelle
