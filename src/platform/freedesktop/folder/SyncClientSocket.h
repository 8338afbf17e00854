#pragma once

#include <QString>

namespace orvelle {

/// Asks the sync client that put a stand-in at `path` for the content: by the
/// socket over which file managers' extensions ask, below XDG_RUNTIME_DIR, of
/// the Nextcloud and the ownCloud client. False when none took the request. Any
/// thread; may block for a moment. Whether and when the file comes is the
/// client's affair.
bool askSyncClientToDownload(const QString &path);

} // namespace orvelle
