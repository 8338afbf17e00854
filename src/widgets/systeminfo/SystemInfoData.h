#pragma once

#include <QString>

#include <optional>

namespace orvelle {

/// How the system row looks; Disabled means that the widget is off.
enum class SystemInfoDisplayMode { Disabled, Terminal, Discreet };

QString rawValue(SystemInfoDisplayMode mode);
/// Absent for a text that names no mode.
std::optional<SystemInfoDisplayMode> systemInfoDisplayModeFromRawValue(QStringView raw);

/// One sample of the machine. All amounts in bytes.
struct SystemInfoData {
    double cpuUsage = 0; ///< load of all processors together, 0 to 100
    quint64 freeRAM = 0;
    quint64 totalRAM = 0;
    quint64 freeDisk = 0; ///< on the volume of "/"
    quint64 totalDisk = 0;
    friend bool operator==(const SystemInfoData &, const SystemInfoData &) = default;
};

/// Bytes as binary gigabytes: "8.0G", "18G", and from 100 on the whole part
/// ("250G" for 250.9).
QString formatBytes(quint64 bytes);

} // namespace orvelle
