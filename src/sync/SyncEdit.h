#pragma once

#include "sync/SyncAnalysis.h"

#include <optional>

namespace orvelle {

class LinkStore;

/// The selected changes as one edit of the store, after a snapshot. Absent
/// when that snapshot could not be kept; nothing was changed then.
std::optional<SyncResult> applySync(LinkStore &links, const LinkList &imported, const SyncAnalysis &analysis,
                                    Timestamp now);

} // namespace orvelle
