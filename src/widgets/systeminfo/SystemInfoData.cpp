#include "widgets/systeminfo/SystemInfoData.h"

#include <array>
#include <utility>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<std::pair<SystemInfoDisplayMode, QLatin1StringView>, 3> modes{{
    {SystemInfoDisplayMode::Disabled, "disabled"_L1},
    {SystemInfoDisplayMode::Terminal, "terminal"_L1},
    {SystemInfoDisplayMode::Discreet, "discreet"_L1},
}};

} // namespace

QString rawValue(SystemInfoDisplayMode mode)
{
    for (const auto &[each, raw] : modes) {
        if (each == mode)
            return raw;
    }
    Q_UNREACHABLE();
}

std::optional<SystemInfoDisplayMode> systemInfoDisplayModeFromRawValue(QStringView raw)
{
    for (const auto &[mode, each] : modes) {
        if (each == raw)
            return mode;
    }
    return std::nullopt;
}

QString formatBytes(quint64 bytes)
{
    const double gigabytes = static_cast<double>(bytes) / 1'073'741'824.0;
    if (gigabytes >= 100)
        return QString::number(static_cast<quint64>(gigabytes)) + u'G';
    return QString::asprintf(gigabytes >= 10 ? "%.0fG" : "%.1fG", gigabytes);
}

} // namespace orvelle
