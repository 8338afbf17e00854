#pragma once

#include "platform/HostStatistics.h"

namespace orvelle {

/// The kernel's figures: /proc/stat and /proc/meminfo as proc(5) describes
/// them, and statvfs(3).
class ProcHostStatistics : public HostStatistics
{
public:
    /// `procFolder` is where the proc file system is mounted.
    explicit ProcHostStatistics(const QString &procFolder = QStringLiteral("/proc"));

    /// EPROTO when the file does not look as described.
    Result<CpuTicks, int> cpuTicks() const override;
    Result<Capacity, int> memory() const override;
    Result<Capacity, int> volume(const QString &path) const override;

private:
    QByteArray m_folder;
};

} // namespace orvelle
