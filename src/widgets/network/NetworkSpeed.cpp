#include "widgets/network/NetworkSpeed.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<std::pair<NetworkDisplayMode, QLatin1StringView>, 3> modes{{
    {NetworkDisplayMode::Disabled, "disabled"_L1},
    {NetworkDisplayMode::Graph, "graph"_L1},
    {NetworkDisplayMode::Discreet, "discreet"_L1},
}};

constexpr std::array hardwareNames{"en"_L1, "eth"_L1, "wl"_L1, "ww"_L1};
constexpr std::array bridgeNames{"br"_L1}; // bridge* among them

using ByIndex = QHash<int, InterfaceCounters>;

/// No chain of masters is longer; one that goes round ends here.
constexpr int longestChain = 8;

template<typename Names>
bool beginsWithOneOf(const QString &name, const Names &names)
{
    return std::ranges::any_of(names, [&](QLatin1StringView each) { return name.startsWith(each); });
}

bool isHardware(const InterfaceCounters &each)
{
    if (!beginsWithOneOf(each.name, hardwareNames))
        return false;
    // Modems are created on request. In a container the way out is one end of
    // a pair of virtual cards, named like a real one; the end outside is not.
    return each.kind.isEmpty() || each.kind == "wwan"_L1 || (each.kind == "veth"_L1 && each.master == 0);
}

/// Calls `visit` with each interface that `each` is a port of, directly or
/// through a bond, until it says true. Whether it did.
template<typename Visit>
bool anyMaster(const ByIndex &all, InterfaceCounters each, const Visit &visit)
{
    for (int i = 0; i < longestChain && each.master != 0; ++i) {
        const auto master = all.constFind(each.master);
        if (master == all.constEnd())
            return false;
        if (visit(*master))
            return true;
        each = *master;
    }
    return false;
}

/// The bridges with hardware among their ports. Others connect containers or
/// virtual machines with this one, which passes their bytes on.
QSet<int> countedBridges(const ByIndex &all)
{
    QSet<int> bridges;
    for (const InterfaceCounters &each : all) {
        if (!isHardware(each))
            continue;
        anyMaster(all, each, [&](const InterfaceCounters &master) {
            if (master.kind == "bridge"_L1 && beginsWithOneOf(master.name, bridgeNames))
                bridges.insert(master.index);
            return false;
        });
    }
    return bridges;
}

quint64 increase(quint64 before, quint64 now, bool wrapsAt32Bits)
{
    if (now >= before)
        return now - before;
    constexpr quint64 largest = 4'294'967'295;
    if (wrapsAt32Bits && before <= largest)
        return (largest - before) + now;
    return now;
}

} // namespace

QString rawValue(NetworkDisplayMode mode)
{
    for (const auto &[each, raw] : modes) {
        if (each == mode)
            return raw;
    }
    Q_UNREACHABLE();
}

std::optional<NetworkDisplayMode> networkDisplayModeFromRawValue(QStringView raw)
{
    for (const auto &[mode, each] : modes) {
        if (each == raw)
            return mode;
    }
    return std::nullopt;
}

QList<InterfaceCounters> countedInterfaces(const QList<InterfaceCounters> &all)
{
    ByIndex byIndex;
    for (const InterfaceCounters &each : all)
        byIndex.insert(each.index, each);
    const QSet<int> bridges = countedBridges(byIndex);
    const auto isCountedBridge = [&](const InterfaceCounters &each) { return bridges.contains(each.index); };
    QList<InterfaceCounters> counted;
    for (const InterfaceCounters &each : all) {
        if ((isHardware(each) || isCountedBridge(each)) && !anyMaster(byIndex, each, isCountedBridge))
            counted += each;
    }
    return counted;
}

NetworkSpeed networkSpeed(const NetworkReading &before, const NetworkReading &now, double seconds)
{
    quint64 in = 0;
    quint64 out = 0;
    for (const InterfaceCounters &each : countedInterfaces(now.interfaces)) {
        // Also those that did not count then: a port that leaves its bridge
        // brings its past along.
        const auto known = std::ranges::find_if(before.interfaces, [&](const InterfaceCounters &other) {
            return other.index == each.index && other.name == each.name;
        });
        const InterfaceCounters start = known == before.interfaces.end() ? InterfaceCounters() : *known;
        in += increase(start.bytesIn, each.bytesIn, now.wrapsAt32Bits);
        out += increase(start.bytesOut, each.bytesOut, now.wrapsAt32Bits);
    }
    return {static_cast<double>(in) / seconds, static_cast<double>(out) / seconds};
}

QString formatSpeed(double bytesPerSecond)
{
    constexpr double kilo = 1024;
    constexpr double mega = kilo * 1024;
    constexpr double giga = mega * 1024;
    if (bytesPerSecond >= giga)
        return QString::asprintf("%.1f GB/s", bytesPerSecond / giga);
    if (bytesPerSecond >= mega)
        return QString::asprintf("%.1f MB/s", bytesPerSecond / mega);
    if (bytesPerSecond >= kilo)
        return QString::asprintf("%.0f KB/s", bytesPerSecond / kilo);
    return QString::asprintf("%.0f B/s", bytesPerSecond);
}

} // namespace orvelle
