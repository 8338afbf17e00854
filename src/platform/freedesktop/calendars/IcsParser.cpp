#include "platform/freedesktop/calendars/IcsSeries.h"

#include <QHash>

#include <libical/ical.h>

#include <algorithm>
#include <memory>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype largestEvent = 1024 * 1024;
constexpr qsizetype mostEvents = 200'000; ///< of one file
constexpr qsizetype longestText = 8 * 1024;
constexpr int mostDates = 10'000; ///< of one event

struct FreeComponent {
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

/// What is of interest in a file, in the order in which it stands there.
struct Blocks {
    QByteArrayList zones;
    QByteArrayList events;
    QString color;
};

/// Cuts the text at the lines that begin and end a VEVENT or VTIMEZONE, so that
/// a file never has to be held as a tree, and one broken event stays alone.
Blocks blocksOf(const QByteArray &bytes)
{
    Blocks blocks;
    qsizetype begin = -1;
    QByteArray closing;
    for (qsizetype at = 0; at < bytes.size() && blocks.events.size() < mostEvents;) {
        const qsizetype newline = bytes.indexOf('\n', at);
        const qsizetype next = newline < 0 ? bytes.size() : newline + 1;
        const QByteArrayView line = QByteArrayView(bytes).sliced(at, next - at).trimmed();
        const auto is = [&](const char *text) { return line.compare(text, Qt::CaseInsensitive) == 0; };
        if (begin < 0 && (is("BEGIN:VEVENT") || is("BEGIN:VTIMEZONE"))) {
            begin = at;
            closing = "END:" + line.sliced(6).toByteArray();
        } else if (begin >= 0 && is(closing.constData())) {
            if (next - begin <= largestEvent)
                (is("END:VEVENT") ? blocks.events : blocks.zones) += bytes.mid(begin, next - begin);
            begin = -1;
        } else if (begin < 0 && line.size() < 64 && line.startsWith("X-APPLE-CALENDAR-COLOR:")) {
            blocks.color = QString::fromLatin1(line.sliced(23)).left(7); // without the opacity
        } else if (begin < 0 && line.size() < 64 && line.startsWith("COLOR:")) {
            blocks.color = QString::fromLatin1(line.sliced(6));
        }
        at = next;
    }
    return blocks;
}

/// Components within an event are alarms; deeper ones are an attack on the stack.
bool isFlat(const QByteArray &block)
{
    return block.count("\nBEGIN:") + block.count("\nbegin:") <= 100;
}

bool isPlausible(const icaltimetype &time)
{
    const bool isDay = time.month >= 1 && time.month <= 12 && time.day >= 1 &&
                       time.day <= icaltime_days_in_month(time.month, time.year);
    const bool isTime = time.is_date || (time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 &&
                                         time.second >= 0 && time.second <= 60); // a leap second
    return !icaltime_is_null_time(time) && time.year >= 1600 && time.year <= 2500 && isDay && isTime;
}

class EventReader
{
public:
    EventReader(const IcsZones &zones, const IcsAddresses &own) : m_zones(zones), m_own(own) {}

    std::optional<IcsEvent> read(icalcomponent *component)
    {
        for (icalproperty *each = icalcomponent_get_first_property(component, ICAL_ANY_PROPERTY); each;
             each = icalcomponent_get_next_property(component, ICAL_ANY_PROPERTY))
            take(each);
        if (!m_start)
            return std::nullopt;
        m_event.start = *m_start;
        m_event.details.isAllDay = m_start->isDate;
        m_event.details.isDeclined = isDeclined();
        m_event.span = span();
        return m_event;
    }

private:
    void take(icalproperty *property)
    {
        switch (icalproperty_isa(property)) {
        case ICAL_DTSTART_PROPERTY:
            m_start = moment(property);
            break;
        case ICAL_DTEND_PROPERTY:
            m_end = moment(property);
            break;
        case ICAL_DURATION_PROPERTY:
            m_duration = icalproperty_get_duration(property);
            break;
        case ICAL_RRULE_PROPERTY:
            if (m_event.rules.size() < 8)
                m_event.rules += icalproperty_get_value_as_string(property);
            break;
        case ICAL_RDATE_PROPERTY:
            addDate(m_event.dates, property);
            break;
        case ICAL_EXDATE_PROPERTY:
            addDate(m_event.excluded, property);
            break;
        case ICAL_RECURRENCEID_PROPERTY: {
            m_event.original = moment(property);
            icalparameter *range = icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER);
            m_event.following = range && icalparameter_get_range(range) == ICAL_RANGE_THISANDFUTURE;
            break;
        }
        case ICAL_STATUS_PROPERTY:
            m_event.details.isCancelled = icalproperty_get_status(property) == ICAL_STATUS_CANCELLED;
            break;
        case ICAL_ATTENDEE_PROPERTY:
            takeAttendee(property);
            break;
        case ICAL_ORGANIZER_PROPERTY:
            m_organizer = address(icalproperty_get_organizer(property));
            break;
        default:
            takeText(property);
        }
    }

    void takeText(icalproperty *property)
    {
        const QByteArrayView name(icalproperty_get_property_name(property));
        CalendarEvent &details = m_event.details;
        const auto is = [&](const char *other) { return name.compare(other, Qt::CaseInsensitive) == 0; };
        if (is("SUMMARY"))
            details.title = textOf(property);
        else if (is("LOCATION"))
            details.location = textOf(property);
        else if (is("DESCRIPTION"))
            details.description = textOf(property);
        else if (is("URL"))
            details.url = textOf(property);
        else if (is("UID"))
            details.externalIdentifier = textOf(property);
        else if (is("COLOR"))
            details.calendarColor = textOf(property);
        else if ((is("CONFERENCE") || is("X-GOOGLE-CONFERENCE") || is("X-MICROSOFT-SKYPETEAMSMEETINGURL")) &&
                 details.conferences.size() < 8)
            details.conferences += textOf(property);
    }

    static QString textOf(icalproperty *property)
    {
        icalvalue *value = icalproperty_get_value(property);
        const bool isText = value && icalvalue_isa(value) == ICAL_TEXT_VALUE;
        const char *text = isText ? icalvalue_get_text(value) : icalproperty_get_value_as_string(property);
        return QString::fromUtf8(QByteArrayView(text).first(std::min<qsizetype>(qstrlen(text), 4 * longestText)))
            .left(longestText);
    }

    static QString address(const char *value)
    {
        QString text = QString::fromUtf8(value).trimmed();
        return text.startsWith("mailto:"_L1, Qt::CaseInsensitive) ? text.mid(7).toLower() : text.toLower();
    }

    void takeAttendee(icalproperty *property)
    {
        if (m_attendees.size() >= mostDates)
            return;
        icalparameter *answer = icalproperty_get_first_parameter(property, ICAL_PARTSTAT_PARAMETER);
        m_attendees.append({address(icalproperty_get_attendee(property)),
                            answer && icalparameter_get_partstat(answer) == ICAL_PARTSTAT_DECLINED});
    }

    /// By whom is known from the user's addresses. Without these the user is
    /// the only one invited beside the organiser, if there is only one.
    bool isDeclined() const
    {
        qsizetype others = 0;
        bool onlyOneDeclined = false;
        for (const auto &[who, declined] : m_attendees) {
            if (m_own.contains(who))
                return declined;
            if (who != m_organizer) {
                ++others;
                onlyOneDeclined = declined;
            }
        }
        return others == 1 && onlyOneDeclined && m_own.isEmpty();
    }

    std::optional<IcsMoment> momentOf(icalproperty *property, const icaltimetype &time) const
    {
        if (!isPlausible(time))
            return std::nullopt;
        const bool isDate = time.is_date != 0;
        icaltimetype plain = time;
        plain.zone = nullptr;
        const WallSeconds wall = icaltime_as_timet(plain);
        if (isDate)
            return IcsMoment{wall, true, IcsZones::local()};
        if (icaltime_is_utc(time))
            return IcsMoment{wall, false, m_zones.named("UTC")};
        icalparameter *zone = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
        return IcsMoment{wall, false, zone ? m_zones.named(icalparameter_get_tzid(zone)) : IcsZones::local()};
    }

    std::optional<IcsMoment> moment(icalproperty *property) const
    {
        icalvalue *value = icalproperty_get_value(property);
        if (!value)
            return std::nullopt;
        switch (icalvalue_isa(value)) {
        case ICAL_DATE_VALUE:
            return momentOf(property, icalvalue_get_date(value));
        case ICAL_DATETIME_VALUE:
            return momentOf(property, icalvalue_get_datetime(value));
        case ICAL_DATETIMEPERIOD_VALUE:
        case ICAL_PERIOD_VALUE: {
            const icaldatetimeperiodtype either = icalvalue_get_datetimeperiod(value);
            return momentOf(property, icaltime_is_null_time(either.time) ? either.period.start : either.time);
        }
        default:
            return std::nullopt;
        }
    }

    void addDate(QList<IcsMoment> &dates, icalproperty *property) const
    {
        const auto date = moment(property);
        if (date && dates.size() < mostDates)
            dates += *date;
    }

    IcsSpan span() const
    {
        constexpr qint64 day = 86400;
        if (m_end && m_start->isDate)
            return {std::max<qint64>(1, (m_end->wall - m_start->wall) / day), 0};
        if (m_end)
            return {0, std::max<qint64>(0, m_end->utc() - m_start->utc())};
        if (m_duration && !m_duration->is_neg) {
            const icaldurationtype &d = *m_duration;
            return {std::min<qint64>(36500, d.days + 7 * qint64(d.weeks)),
                    d.hours * qint64(3600) + d.minutes * qint64(60) + d.seconds};
        }
        return {m_start->isDate ? 1 : 0, 0};
    }

    const IcsZones &m_zones;
    const IcsAddresses &m_own;
    IcsEvent m_event;
    std::optional<IcsMoment> m_start;
    std::optional<IcsMoment> m_end;
    std::optional<icaldurationtype> m_duration;
    QList<std::pair<QString, bool>> m_attendees;
    QString m_organizer;
};

/// Changes go to the master of the same identifier; one whose master is not in
/// the file stands for itself.
QList<IcsSeries> grouped(QList<IcsEvent> events)
{
    QList<IcsSeries> series;
    QHash<QString, qsizetype> masters;
    for (IcsEvent &each : events) {
        if (each.original)
            continue;
        if (each.details.externalIdentifier)
            masters.insert(*each.details.externalIdentifier, series.size());
        series += IcsSeries{std::move(each), {}};
    }
    for (IcsEvent &each : events) {
        if (!each.original)
            continue;
        const auto master = masters.constFind(each.details.externalIdentifier.value_or(QString()));
        if (master == masters.constEnd())
            series += IcsSeries{std::move(each), {}};
        else if (series.at(*master).changes.size() < mostDates)
            series[*master].changes += std::move(each);
    }
    return series;
}

} // namespace

QList<IcsSeries> parseIcs(const QByteArray &bytes, const QString &color, const IcsAddresses &own)
{
    if (bytes.contains('\0'))
        return {};
    const Blocks blocks = blocksOf(bytes);
    IcsZones zones;
    for (const QByteArray &each : blocks.zones) {
        if (isFlat(each))
            zones.define(each);
    }
    QList<IcsEvent> events;
    for (const QByteArray &each : blocks.events) {
        const Component component(isFlat(each) ? icalparser_parse_string(each.constData()) : nullptr);
        if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT)
            continue;
        auto event = EventReader(zones, own).read(component.get());
        icalmemory_free_ring();
        if (!event)
            continue;
        if (event->details.calendarColor.isEmpty())
            event->details.calendarColor = blocks.color.isEmpty() ? color : blocks.color;
        events += *std::move(event);
    }
    return grouped(std::move(events));
}

} // namespace orvelle
