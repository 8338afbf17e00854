#pragma once

#include "sync/SyncControl.h"

namespace orvelle {

/// A document was found at the new place; the answer is what to do about it.
using AskAboutExisting = std::function<void(const std::function<void(ConfigureCloudSyncResult)> &answer)>;
using Configured = std::function<void(const Result<ConfigureCloudSyncResult, QString> &)>;

/// Begins with a place: takes it, looks whether a document is there, asks if
/// so, makes one side like the other, and switches the synchronisation on. The
/// error is one sentence for the user; nothing is switched on then, and a place
/// that could be taken stays the choice, so that it can be tried again. After
/// Cancelled all is as before. Without a place everything is switched off.
///
/// `ask` may answer later, but from the main thread. `sync` outlives all that.
void configureCloudSync(SyncControl &sync, const SyncPlace &place, const std::optional<QString> &password,
                        const AskAboutExisting &ask, const Configured &completion);

} // namespace orvelle
