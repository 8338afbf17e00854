#pragma once

#include "sync/CloudSync.h"

namespace orvelle {

/// What the state is drawn as.
struct SyncStateLook {
    const char *symbol;
    const char *colorKey; ///< empty: the text's
};
SyncStateLook syncStateLook(SyncStatus::State state);

/// What goes on and, where something went wrong, why: a sentence or two.
QString syncStateText(const SyncStatus &status, Timestamp now);
/// When and from which device; empty while nothing is known of it.
QString syncHistoryText(const SyncStatus &status, Timestamp now);

} // namespace orvelle
