#pragma once

#include "base/Result.h"

#include <QList>
#include <QString>

namespace orvelle {

/// One network interface and the bytes it has carried since it exists.
struct InterfaceCounters {
    int index = 0;
    QString name;
    QString kind;   ///< what created it ("bridge", "veth", "tun", ...); empty for hardware
    int master = 0; ///< index of the bridge or bond that it is a port of; 0 for none
    quint64 bytesIn = 0;
    quint64 bytesOut = 0;
    friend bool operator==(const InterfaceCounters &, const InterfaceCounters &) = default;
};

struct NetworkReading {
    QList<InterfaceCounters> interfaces;
    /// The counters are 32 bits wide and begin again at 0 after 4 GiB.
    bool wrapsAt32Bits = false;
};

/// The byte counters of all interfaces. Any thread, one at a time. An error is
/// the system's number (errno).
class NetworkCounters
{
public:
    virtual ~NetworkCounters() = default;

    virtual Result<NetworkReading, int> read() = 0;
};

} // namespace orvelle
