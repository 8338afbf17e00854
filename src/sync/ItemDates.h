#pragma once

#include "links/LinkItem.h"

namespace orvelle {

// The dates by which two copies of an item are compared. A missing date, and
// one that is no number, counts as the distant past.

/// `modifiedAt`, else `createdAt`.
Timestamp itemDate(const LinkItem &item);
/// When a note's text last changed: `contentModifiedAt`, else `modifiedAt`.
/// One that never had a text has no such date: renaming it must not win over a
/// text that was written elsewhere.
Timestamp contentDate(const LinkItem &note);
Timestamp creationDate(const LinkItem &item);

/// The latest item date in a tree; the distant past when it is empty.
Timestamp latestItemDate(const LinkList &links);

} // namespace orvelle
