#include "platform/freedesktop/calendars/IcsSeries.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A calendar file and what of it happens within a month.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace orvelle;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qint64 from = 1'774'000'000;
    const qint64 to = from + 31 * 86400;
    QList<CalendarEvent> events;
    for (const IcsSeries &each : parseIcs(bytes, {}, {}))
        expandIcs(each, from, to, std::chrono::steady_clock::now() + std::chrono::seconds(1), events);
    for (const CalendarEvent &each : events) {
        if (each.end < each.start || each.start >= Timestamp::fromUnixSeconds(static_cast<double>(to)))
            std::abort();
    }
    return 0;
}
