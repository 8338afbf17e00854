#pragma once

#include "platform/CalendarStore.h"
#include "platform/freedesktop/calendars/IcsZone.h"

#include <chrono>

namespace orvelle {

/// A point in time as an iCalendar file (RFC 5545) writes it.
struct IcsMoment {
    WallSeconds wall = 0;
    bool isDate = false;
    IcsZonePointer zone;
    qint64 utc() const { return zone->toUtc(wall); }
};

/// How long an event lasts: first the days by the calendar, then exact seconds.
struct IcsSpan {
    qint64 days = 0;
    qint64 seconds = 0;
};

/// One VEVENT: a single event, the master of a series, or one or all following
/// occurrences that were changed.
struct IcsEvent {
    CalendarEvent details; ///< without times
    IcsMoment start;
    IcsSpan span;
    QByteArrayList rules;              ///< RRULE
    QList<IcsMoment> dates;            ///< RDATE
    QList<IcsMoment> excluded;         ///< EXDATE
    std::optional<IcsMoment> original; ///< RECURRENCE-ID: which occurrence this one replaces
    bool following = false;            ///< and all after it
};

/// An event with the changes to single occurrences of it.
struct IcsSeries {
    IcsEvent master;
    QList<IcsEvent> changes;
};

/// Who the user is in the lists of invited people, "ada@example.org".
using IcsAddresses = QStringList;

/// Reads the bytes of a file. What is not a calendar gives nothing; a broken
/// event is left out, the others are read. Any thread.
QList<IcsSeries> parseIcs(const QByteArray &bytes, const QString &color, const IcsAddresses &own);

/// The occurrences that overlap [from, to), seconds since 1970, appended to
/// `events`. Stops at `deadline` and at a bound for each series; false when
/// something may be missing for that. Any thread.
bool expandIcs(const IcsSeries &series, qint64 from, qint64 to, std::chrono::steady_clock::time_point deadline,
               QList<CalendarEvent> &events);

/// Whether no occurrence of the series ends after `moment`, as far as can be told at once.
bool isOverBefore(const IcsSeries &series, qint64 moment);

} // namespace orvelle
