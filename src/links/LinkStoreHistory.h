#pragma once

#include "links/LinkStore.h"
#include "links/TreeDifference.h"

namespace orvelle {

/// What leads from the tree as it is to the one before and the one after, from
/// there to the next, and so on; the nearest is the last.
struct LinkStore::History {
    static constexpr qsizetype maxSteps = 200;
    /// The oldest steps go first when they take more, but never these.
    static constexpr qsizetype maxBytes = qsizetype(16) << 20;
    static constexpr qsizetype fewestSteps = 10;

    QList<TreeDifference> undo;
    QList<TreeDifference> redo;

    static void push(QList<TreeDifference> &steps, const TreeDifference &step)
    {
        steps.append(step);
        qsizetype bytes = 0;
        for (const TreeDifference &each : std::as_const(steps))
            bytes += each.bytes();
        while (steps.size() > maxSteps || (bytes > maxBytes && steps.size() > fewestSteps))
            bytes -= steps.takeFirst().bytes();
    }

    void clear()
    {
        undo.clear();
        redo.clear();
    }
};

} // namespace orvelle
