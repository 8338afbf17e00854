#include "platform/freedesktop/log/LogRepeats.h"

#include <limits>
#include <utility>

namespace orvelle {

std::optional<int> LogRepeats::admit(const QString &line, double now)
{
    constexpr double never = -std::numeric_limits<double>::infinity();
    if (m_written.size() >= mostKnown)
        m_written.removeIf([now](const auto &each) { return now - each.value().last >= span; });
    const auto known = m_written.find(line);
    if (known == m_written.end()) {
        m_written.insert(line, {now, never});
        return 0;
    }
    if (now - known->before < span) {
        ++known->keptBack;
        return std::nullopt;
    }
    known->before = std::exchange(known->last, now);
    return std::exchange(known->keptBack, 0);
}

} // namespace orvelle
