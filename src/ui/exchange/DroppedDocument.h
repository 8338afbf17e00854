#pragma once

#include <QString>

namespace orvelle {

/// What a dropped file or folder is to us.
enum class DroppedKind { Nothing, Document, Bookmarks, LinkFile, LinkFolder };

/// By the name, and where that does not tell, by the first bytes. A folder
/// counts when link files lie right in it. Never waits for a pipe.
DroppedKind droppedKind(const QString &path);

} // namespace orvelle
