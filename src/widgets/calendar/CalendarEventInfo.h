#pragma once

#include "base/Timestamp.h"
#include "platform/CalendarStore.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace orvelle {

/// One event as the menu needs it.
struct CalendarEventInfo {
    QString title;
    Timestamp startDate;
    Timestamp endDate;
    bool isAllDay = false;
    std::optional<QString> externalIdentifier;
    bool isDeclined = false;
    QString calendarColor; ///< "#rrggbb" or a CSS name; empty for none
    QUrl meetingAddress;   ///< where to join; empty when the event has no such address
    friend bool operator==(const CalendarEventInfo &, const CalendarEventInfo &) = default;
};

/// Which events are listed; the numbers are stored.
enum class CalendarScope { Today = 0, OneDay = 1, All = 2 };

/// The events to list out of `events`: those not over at `now` and neither
/// cancelled nor, on request, declined; each once by title and start; sorted
/// by start; of the days that `scope` means, in the present time zone; at most
/// `maxEvents`. One day is the day of the first upcoming event, today while
/// that one is going on.
QList<CalendarEventInfo> nextCalendarEvents(QList<CalendarEvent> events, Timestamp now, CalendarScope scope,
                                            qsizetype maxEvents, bool hideDeclined);

/// When an event is: nothing for today, "Tomorrow" or the short name of the
/// weekday, and the time ("14:05") or "all day". An all-day event that began
/// before today is one of today.
QString calendarEventTime(const CalendarEventInfo &event, Timestamp now);

/// The days around a moment in the present time zone.
Timestamp startOfDay(Timestamp moment);
Timestamp startOfNextDay(Timestamp moment);
/// Also over a change of the clocks the same time of the day.
Timestamp daysLater(Timestamp moment, int days);

} // namespace orvelle
