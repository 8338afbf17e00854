#pragma once

#include "links/LinkItem.h"

namespace orvelle {

class FileBookmarks;

/// A group that shows what Orvelle can hold: a web page, the home folder, the
/// documents where there are any, and a note that explains.
LinkItem welcomeSample(const FileBookmarks &bookmarks, Timestamp now);

} // namespace orvelle
