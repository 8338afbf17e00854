#pragma once

#include "base/Result.h"

#include <QString>

namespace orvelle {

/// How long all processors together have been doing what, in clock ticks since
/// the machine started. Only differences between two readings mean something.
struct CpuTicks {
    quint64 user = 0;
    quint64 system = 0; ///< with interrupts, and time that a host gave to others
    quint64 idle = 0;   ///< with waiting for disks
    quint64 nice = 0;
    friend bool operator==(const CpuTicks &, const CpuTicks &) = default;
};

/// An amount in bytes, and how much of it is free.
struct Capacity {
    quint64 free = 0;
    quint64 total = 0;
    friend bool operator==(const Capacity &, const Capacity &) = default;
};

/// Figures of the machine. Every function may be called from any thread and
/// may take as long as a disk takes. An error is the system's number (errno).
class HostStatistics
{
public:
    virtual ~HostStatistics() = default;

    virtual Result<CpuTicks, int> cpuTicks() const = 0;
    /// Free is what programs can get without the machine having to swap: with
    /// the caches that give way.
    virtual Result<Capacity, int> memory() const = 0;
    /// Free is what this user may still write on the volume that holds `path`.
    virtual Result<Capacity, int> volume(const QString &path) const = 0;
};

} // namespace orvelle
