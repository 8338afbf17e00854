#pragma once

#include "links/LinkItem.h"

namespace orvelle {

class FileBookmarks;

/// Gives a file or folder a bookmark; why it has none is logged.
bool addBookmark(LinkItem &item, const FileBookmarks &bookmarks);

/// Brings items of older versions up to date: bookmarks of files and folders,
/// stable ids, creation time `now`, modification time in the distant past (so
/// that any other copy of the item counts as newer in a merge). True when
/// anything changed; a second run changes nothing.
bool migrateItems(LinkList &links, const FileBookmarks &bookmarks, Timestamp now);

} // namespace orvelle
