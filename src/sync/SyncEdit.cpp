#include "sync/SyncEdit.h"

#include "links/LinkStore.h"

namespace orvelle {

std::optional<SyncResult> applySync(LinkStore &links, const LinkList &imported, const SyncAnalysis &analysis,
                                    Timestamp now)
{
    // Each run of the edit starts from a fresh tree, and the last one counts.
    SyncResult result;
    bool same = false;
    const auto change = [&](LinkList &tree) {
        AppliedSync applied = applySyncChanges(tree, imported, analysis, now);
        result = applied.result;
        same = applied.links == tree;
        tree = std::move(applied.links);
        return !same;
    };
    if (links.edit(LinkStore::Step::Destructive, QStringLiteral("sync"), change) || same)
        return result;
    return std::nullopt;
}

} // namespace orvelle
