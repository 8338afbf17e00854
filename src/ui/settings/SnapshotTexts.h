#pragma once

#include "base/Timestamp.h"

#include <QString>

namespace orvelle {

/// The reason in a snapshot's name, in words: what was about to happen.
QString snapshotReasonText(const QString &reason);

/// Local date and time as the user writes them; today and yesterday by name.
QString momentText(Timestamp moment, Timestamp now);

/// "1 item", "340 items".
QString itemCountText(qint64 count);

} // namespace orvelle
