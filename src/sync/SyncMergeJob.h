#pragma once

#include "links/LinkItem.h"
#include "sync/SyncAnalysis.h"
#include "sync/SyncBase.h"
#include "sync/SyncDocument.h"
#include "sync/SyncGuard.h"

#include <QStringList>

#include <memory>
#include <optional>

namespace orvelle {

/// What is needed to fold a document into a tree. Values only; any thread.
struct SyncMergeInput {
    LinkList local;
    std::shared_ptr<const SyncDocument> remote;
    std::shared_ptr<const SyncBase> base; ///< null when nothing is known of what was shared before
    Timestamp now;
    bool removesNothing = false; ///< the user wants to keep what is here
};

struct SyncMergeOutcome {
    LinkList tree;
    bool changesTree = false;
    QStringList removals; ///< lines for the log
    std::optional<MassRemoval> massRemoval;
    SyncResult result; ///< what came in, changed and went
};

/// The merge of a document with what is known of its past. What it takes from
/// the tree follows from that past where the document tells it:
///
/// - it grew from the version that this tree grew from: what that version had
///   and the document lacks was deleted elsewhere, unless it was edited here
///   since; what that version lacked is new here and stays;
/// - both grew side by side: nothing is taken away;
/// - it says nothing of its past: the dates decide, as in autoMergeLinks().
///
/// Afterwards each item has the run id and the picture it had here, run ids
/// are unique, and dates that no side had are the document's. Where two
/// different versions of an item have the same date to the second the local
/// one stays and becomes a second newer, so that all machines end with it.
SyncMergeOutcome mergeSyncDocument(const SyncMergeInput &input);

/// What came in, changed and went.
SyncResult countChanges(const LinkList &before, const LinkList &after);

/// Whether the tree holds anything that the document does not, or otherwise:
/// items, their content, groups and dates of change, but not their order,
/// which each machine has of its own.
bool differsFromDocument(const LinkList &tree, const SyncDocument &document);
/// Whether the items that both have stand in another order.
bool isOrderedOtherwise(const LinkList &tree, const SyncDocument &document);

} // namespace orvelle
