#pragma once

#include <QDateTime>

#include <algorithm>

namespace orvelle {

/// A moment: seconds since 2001-01-01 00:00:00 UTC as a double, the form in
/// which the store keeps dates. A plain value; survives a round trip through
/// the store bit for bit, which a millisecond clock type does not.
struct Timestamp {
    double seconds = 0;

    /// Seconds from 1970-01-01 to 2001-01-01, both UTC.
    static constexpr double unixEpochOffset = 978307200.0;

    /// The earliest representable date, 0001-01-01 00:00:00 UTC.
    static constexpr Timestamp distantPast() { return {-63114076800.0}; }

    /// The last second of year 9999, UTC.
    static constexpr Timestamp distantFuture() { return {252423993599.0}; }

    static constexpr Timestamp fromUnixSeconds(double unixSeconds) { return {unixSeconds - unixEpochOffset}; }
    static Timestamp fromDateTime(const QDateTime &dateTime)
    {
        return fromUnixSeconds(static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0);
    }

    constexpr double unixSeconds() const { return seconds + unixEpochOffset; }

    /// Rounded to whole milliseconds, in UTC. What lies beyond the distant past
    /// or future, which a document may hold, becomes that.
    QDateTime toDateTime() const
    {
        const Timestamp within = *this > distantPast() ? std::min(*this, distantFuture()) : distantPast();
        return QDateTime::fromMSecsSinceEpoch(qRound64(within.unixSeconds() * 1000.0), Qt::UTC);
    }

    friend constexpr auto operator<=>(const Timestamp &, const Timestamp &) = default;

    /// Difference in seconds.
    friend constexpr double operator-(Timestamp a, Timestamp b) { return a.seconds - b.seconds; }
    friend constexpr Timestamp operator+(Timestamp t, double secondsLater) { return {t.seconds + secondsLater}; }
};

} // namespace orvelle
