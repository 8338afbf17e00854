#pragma once

#include "links/LinkItem.h"

#include <QSet>

#include <functional>
#include <optional>

namespace orvelle {

// Folding the tree of another machine's document into the one here. Pure but
// for the log; any thread, as long as nobody changes the lists meanwhile.

/// Takes each line about an item that was removed from a list, also when the
/// document has it elsewhere. May be empty.
using MergeLog = std::function<void(const QString &line)>;

/// Whether a document written at `exportDate` is later than every item here.
bool prefersRemoteOrder(const LinkList &local, Timestamp exportDate);

/// What a machine knows besides the two lists.
struct MergeContext {
    Timestamp exportDate; ///< when the document was written
    /// By the clock here: dates count as SaneDates says. Without it they count
    /// as they stand.
    std::optional<Timestamp> now = {};
    /// The identities in the last document that was merged or written here;
    /// null when that is not known. What is not among them was never in the
    /// shared document, so nobody can have deleted it: it stays. What is among
    /// them can be deleted also when its date of creation is wrong.
    const QSet<QString> *shared = nullptr;
    /// As prefersRemoteOrder() when absent. False where `shared` tells better
    /// than dates what was deleted.
    std::optional<bool> preferRemoteOrder = {};
};

/// The whole merge. Items are matched by `stableId`, list by list; the newer
/// copy wins, ties stay with the local one, and so does a bookmark. An item
/// that is only in `remote` comes in. One that is only here is removed when it
/// was created before `exportDate`, unless `preferRemoteOrder` says that
/// nothing was edited here since. Each identity is in the result once.
///
/// Beyond matching by lists, three things are never lost: an item created here
/// after the document, although its group was removed there (it comes to the
/// end of the nearest group around it that is left); the newer of two copies
/// in different groups; the members of a copy that gives way to a newer one.
/// An item that is no group any more leaves its members right behind it.
///
/// "g[a b]" here with "g[b]" from there, a being old, gives "g[b]".
LinkList autoMergeLinks(const LinkList &local, const LinkList &remote, Timestamp exportDate, bool preferRemoteOrder,
                        const MergeLog &log);

/// The same with what is known here.
LinkList autoMergeLinks(const LinkList &local, const LinkList &remote, const MergeContext &context,
                        const MergeLog &log);

/// Those of all items at all levels.
QSet<QString> collectAllStableIds(const LinkList &from);

/// Keeps of each identity the newest copy, and the first of equally new ones.
/// The members of a group copy that is left out come to the end of the one
/// that is kept, where the tree has no newer copy of them. A note keeps its
/// newest text, whichever copy that was in. Without repeated identities the
/// result is `items` itself.
LinkList deduplicateByStableId(const LinkList &items);

} // namespace orvelle
