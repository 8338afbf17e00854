#include "widgets/calendar/CalendarEventInfo.h"

#include "base/Text.h"
#include "widgets/calendar/MeetingAddress.h"

#include <QHash>
#include <QLocale>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QDate dayOf(Timestamp moment)
{
    return moment.toDateTime().toLocalTime().date();
}

bool overlapsDay(const CalendarEvent &event, Timestamp dayWithin)
{
    const Timestamp begin = startOfDay(dayWithin);
    // One without a length may be at the day's very beginning.
    return event.start < startOfNextDay(dayWithin) && (event.end > begin || event.start == begin);
}

/// One of several copies in several calendars; a declined one is the last choice.
QList<CalendarEvent> withoutDuplicates(const QList<CalendarEvent> &events)
{
    QList<CalendarEvent> kept;
    QHash<std::pair<QString, double>, qsizetype> places;
    for (const CalendarEvent &each : events) {
        const auto key = std::pair(each.title, each.start.seconds);
        const auto known = places.constFind(key);
        if (known == places.constEnd()) {
            places.insert(key, kept.size());
            kept += each;
        } else if (kept.at(*known).isDeclined && !each.isDeclined) {
            kept[*known] = each;
        }
    }
    return kept;
}

CalendarEventInfo infoOf(const CalendarEvent &event)
{
    return {event.title,
            event.start,
            event.end,
            event.isAllDay,
            event.externalIdentifier,
            event.isDeclined,
            event.calendarColor,
            meetingAddress(event)};
}

} // namespace

Timestamp startOfDay(Timestamp moment)
{
    return Timestamp::fromDateTime(dayOf(moment).startOfDay());
}

Timestamp startOfNextDay(Timestamp moment)
{
    return Timestamp::fromDateTime(dayOf(moment).addDays(1).startOfDay());
}

Timestamp daysLater(Timestamp moment, int days)
{
    return Timestamp::fromDateTime(moment.toDateTime().toLocalTime().addDays(days));
}

QList<CalendarEventInfo> nextCalendarEvents(QList<CalendarEvent> events, Timestamp now, CalendarScope scope,
                                            qsizetype maxEvents, bool hideDeclined)
{
    events.removeIf([&](const CalendarEvent &each) {
        return each.isCancelled || each.end <= now || (hideDeclined && each.isDeclined);
    });
    QList<CalendarEvent> kept = withoutDuplicates(events);
    std::ranges::stable_sort(kept, {}, &CalendarEvent::start);
    if (scope != CalendarScope::All && !kept.isEmpty()) {
        const Timestamp day = scope == CalendarScope::Today ? now : std::max(now, kept.constFirst().start);
        kept.removeIf([&](const CalendarEvent &each) { return !overlapsDay(each, day); });
    }
    QList<CalendarEventInfo> infos;
    for (qsizetype i = 0; i < std::min(kept.size(), maxEvents); ++i)
        infos += infoOf(kept.at(i));
    return infos;
}

QString calendarEventTime(const CalendarEventInfo &event, Timestamp now)
{
    const QDateTime start = event.startDate.toDateTime().toLocalTime();
    const QDate today = dayOf(now);
    const QDate day = event.isAllDay ? std::max(start.date(), today) : start.date();
    QStringList parts;
    if (day == today.addDays(1))
        parts += text("calendar.tomorrow"_text);
    else if (day != today)
        parts += QLocale().toString(day, u"ddd"_s);
    parts += event.isAllDay ? text("calendar.allDay"_text) : start.time().toString(u"HH:mm"_s);
    return parts.join(u' ');
}

} // namespace orvelle
