#pragma once

#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QStringList>
#include <QUuid>

#include <optional>

namespace orvelle {

// What a document would change here, before it does. Pure values; any thread.

/// The raw values are "identical", "updatedRemote" and so on.
enum class SyncCategory { Identical, UpdatedRemote, UpdatedLocal, Added, Removed, Duplicate };
QString rawValue(SyncCategory category);

struct SyncChange {
    QUuid id = QUuid::createUuid();
    std::optional<LinkItem> localLink;    ///< absent for what is only in the document
    std::optional<LinkItem> importedLink; ///< absent for what is only here
    SyncCategory category = SyncCategory::Identical;
    bool isSelected = true; ///< the user keeps it
    QStringList details;    ///< keys of texts: what of path, colour and icon differs
};

/// Copies of one item.
struct DuplicateGroup {
    QUuid id = QUuid::createUuid();
    QString path; ///< their address; that of the kept one
    LinkType type = LinkType::Url;
    LinkList instances;      ///< those here before those of the document
    qsizetype keepIndex = 0; ///< the newest; of equals the first, so the local one
};

struct SyncAnalysis {
    QUuid id = QUuid::createUuid();
    QList<SyncChange> changes; ///< here in display order, then what is only in the document
    QList<DuplicateGroup> duplicateGroups;

    qint64 count(SyncCategory category) const;
};

struct SyncResult {
    qint64 updatedCount = 0;
    qint64 addedCount = 0;
    qint64 removedCount = 0;
    qint64 duplicatesResolved = 0;
    friend bool operator==(const SyncResult &, const SyncResult &) = default;
};

/// One matched pair: "identical" when nothing but dates, run ids, bookmarks
/// and pictures differs; "updatedRemote" when a merge would take anything from
/// the imported copy; else "updatedLocal". Members of groups are not looked
/// at, as they have changes of their own.
SyncChange compareSynced(const LinkItem &local, const LinkItem &imported);

/// Pairs the items by `stableId`. One that is in another group there is an
/// update of the side with the newer copy. An identity that one of the trees
/// has twice gives one change, for its newest copies, and a duplicate group.
/// Of the removed those are selected that were created before the document was
/// written at `exportDate`.
SyncAnalysis analyzeSyncChanges(const LinkList &local, const LinkList &imported, Timestamp exportDate);

struct AppliedSync {
    LinkList links;
    SyncResult result; ///< what really changed
};

/// `local` with the selected changes of an analysis of the two trees made in
/// it. `local` may have been edited since: what a change is about and is not
/// there any more is passed over. Items that are updated keep their run id,
/// bookmark and, unless the newer copy is in another group, their place; what
/// is added comes to the end of its group, or of the nearest one around it
/// that is there. A removed group leaves the members that stay in its place.
///
/// Of duplicates the instance at `keepIndex` is kept, at the place of the
/// first one here, with the members of all; where that is not the newest one
/// it is edited `now`, so that it is the newest afterwards. Each identity is
/// there once afterwards. Doing it again changes nothing.
AppliedSync applySyncChanges(const LinkList &local, const LinkList &imported, const SyncAnalysis &analysis,
                             Timestamp now);

} // namespace orvelle
