#pragma once

#include "platform/Alerts.h"
#include "sync/SyncAnalysis.h"

namespace orvelle {

// What is said of a synchronisation that somebody started by hand.

/// How much a document would change: a line for each kind of change that there
/// is, or that there is none.
QString buildSyncSummary(const SyncAnalysis &analysis);

/// The message at the end, in lines like those of the summary.
Alert syncResultAlert(const SyncResult &result);
void showSyncResult(Alerts &alerts, const SyncResult &result);

/// The same on a single line: what was removed and which duplicates were
/// resolved; empty when nothing was.
QString syncLossLine(const SyncResult &result);

/// What differs in an updated item, for the keys in SyncChange::details.
QString syncDetailsText(const SyncChange &change);

} // namespace orvelle
