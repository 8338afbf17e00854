#pragma once

#include "platform/NetworkCounters.h"

#include <QString>

#include <optional>

namespace orvelle {

/// How the network row looks; Disabled means that the widget is off.
enum class NetworkDisplayMode { Disabled, Graph, Discreet };

QString rawValue(NetworkDisplayMode mode);
/// Absent for a text that names no mode.
std::optional<NetworkDisplayMode> networkDisplayModeFromRawValue(QStringView raw);

struct NetworkSpeed {
    double bytesInPerSec = 0;
    double bytesOutPerSec = 0;
    friend bool operator==(const NetworkSpeed &, const NetworkSpeed &) = default;
};

/// The interfaces of `all` whose bytes count: wired, wireless and mobile
/// hardware by name (en*, eth*, wl*, ww*) and bridges that lead out through
/// such hardware (bridge*, br*), whose ports then do not count again. VPNs,
/// VLANs and what containers and virtual machines use among themselves carry
/// the same bytes once more and do not count.
QList<InterfaceCounters> countedInterfaces(const QList<InterfaceCounters> &all);

/// The speed between two readings, `seconds` > 0 apart. An interface that the
/// earlier one does not know began at zero. A counter that went backwards has
/// wrapped where counters have 32 bits; else its interface began anew and
/// counts from zero.
NetworkSpeed networkSpeed(const NetworkReading &before, const NetworkReading &now, double seconds);

/// "1023 B/s", "1 KB/s", "1.0 MB/s": steps of 1024.
QString formatSpeed(double bytesPerSecond);

} // namespace orvelle
