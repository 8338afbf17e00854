#pragma once

#include <QByteArray>
#include <QHash>

#include <memory>

namespace orvelle {

/// Seconds of a clock on the wall, counted as if it showed UTC.
using WallSeconds = qint64;

/// Turns the wall clocks of a place into UTC and back. Any one thread at a time.
class IcsZone
{
public:
    virtual ~IcsZone() = default;
    /// Seconds since 1970. A time that the clocks skip is that much later, one
    /// that comes twice is the first.
    virtual qint64 toUtc(WallSeconds wall) const = 0;
    virtual WallSeconds fromUtc(qint64 utc) const = 0;
};
using IcsZonePointer = std::shared_ptr<const IcsZone>;

/// The zones of one iCalendar file (RFC 5545): by a name of the system's
/// database, also at the end of a longer name and in Windows' manner, else as
/// the file defines them. An unknown zone is the present local one.
class IcsZones
{
public:
    /// `definition` is a VTIMEZONE. One that would take too long to work out is
    /// ignored.
    void define(const QByteArray &definition);
    IcsZonePointer named(const QByteArray &tzid) const;
    static IcsZonePointer local();

private:
    QHash<QByteArray, IcsZonePointer> m_defined;
    mutable QHash<QByteArray, IcsZonePointer> m_known;
};

} // namespace orvelle
