#pragma once

#include "links/SnapshotStore.h"

#include <QString>

namespace orvelle {

/// The reason in a snapshot's name, in words: what was about to happen.
QString snapshotReasonText(const QString &reason);

/// The same, with the machine whose change was about to be taken in.
QString snapshotReasonText(const SnapshotInfo &snapshot);

/// Local date and time as the user writes them; today and yesterday by name.
QString momentText(Timestamp moment, Timestamp now);

/// "1 item", "340 items".
QString itemCountText(qint64 count);

} // namespace orvelle
