#pragma once

#include <QString>

namespace orvelle {

/// What is left of a countdown: "01:30", "1:02:05".
QString countdown(qint64 seconds);

/// A duration in words: "45 s", "1:30", "5 min", "1 h", "1 h 30".
QString durationLabel(qint64 seconds);

/// A duration on a small button: "25m", "1h", "1h30".
QString capsuleLabel(qint64 minutes);

} // namespace orvelle
