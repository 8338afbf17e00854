#include "platform/freedesktop/calendars/IcsSeries.h"

#include <QMap>
#include <QSet>

#include <libical/ical.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace orvelle {
namespace {

using Deadline = std::chrono::steady_clock::time_point;

constexpr qint64 day = 86400;
constexpr int mostSteps = 50'000;      ///< of a rule
constexpr int mostOccurrences = 5'000; ///< of a series, in what is asked for
constexpr int mostTimesOfDay = 96;

struct FreeIterator {
    void operator()(icalrecur_iterator *iterator) const { icalrecur_iterator_free(iterator); }
};

template<std::size_t size>
int countOf(const short (&list)[size])
{
    return static_cast<int>(std::find(list, list + size, ICAL_RECURRENCE_ARRAY_MAX) - list);
}

/// In days.
int longestPeriod(icalrecurrencetype_frequency frequency)
{
    switch (frequency) {
    case ICAL_YEARLY_RECURRENCE:
        return 366;
    case ICAL_MONTHLY_RECURRENCE:
        return 31;
    case ICAL_WEEKLY_RECURRENCE:
        return 7;
    default:
        return 1;
    }
}

/// Rules that would be searched for long, possibly in vain, are none that
/// people make.
bool isReasonable(const icalrecurrencetype &rule)
{
    if (rule.freq == ICAL_NO_RECURRENCE || rule.interval < 1)
        return false;
    const int times = std::max(1, countOf(rule.by_hour)) * std::max(1, countOf(rule.by_minute)) *
                      std::max(1, countOf(rule.by_second));
    const bool days = countOf(rule.by_day) || countOf(rule.by_month_day) || countOf(rule.by_year_day) ||
                      countOf(rule.by_week_no) || countOf(rule.by_month);
    const bool timed = countOf(rule.by_hour) || countOf(rule.by_minute) || countOf(rule.by_second);
    const int positions = countOf(rule.by_set_pos);
    if (positions > 0 && !days && !timed)
        return false;
    // Positions that no period has are looked for in all that follow.
    const auto isThere = [most = longestPeriod(rule.freq) * times](short position) {
        return position != 0 && std::abs(int(position)) <= most;
    };
    if (!std::all_of(rule.by_set_pos, rule.by_set_pos + positions, isThere))
        return false;
    switch (rule.freq) {
    case ICAL_SECONDLY_RECURRENCE:
        return false;
    case ICAL_MINUTELY_RECURRENCE:
    case ICAL_HOURLY_RECURRENCE:
        return !days && positions == 0 && times == 1;
    default:
        return times <= mostTimesOfDay;
    }
}

icaltimetype plainTime(WallSeconds wall, bool isDate)
{
    return icaltime_from_timet_with_zone(wall, isDate ? 1 : 0, nullptr);
}

/// The end of a rule in the wall clock of its event.
void bringUntilHome(icalrecurrencetype &rule, const IcsMoment &start)
{
    if (icaltime_is_null_time(rule.until))
        return;
    const bool isUtc = icaltime_is_utc(rule.until);
    const bool wholeDay = rule.until.is_date && !start.isDate;
    rule.until.zone = nullptr;
    WallSeconds wall = icaltime_as_timet(rule.until) + (wholeDay ? day - 1 : 0);
    if (isUtc && !start.isDate)
        wall = start.zone->fromUtc(wall);
    rule.until = plainTime(wall, start.isDate);
}

/// Occurrences by the moment at which they begin.
using Occurrences = QMap<qint64, IcsMoment>;

/// Occurrences as a file names them: by their moment, or by the day alone.
class NamedOccurrences
{
public:
    void add(const IcsMoment &named)
    {
        (named.isDate ? m_days : m_daysOfMoments) += named.wall / day;
        if (!named.isDate)
            m_moments += named.utc();
    }
    bool contains(const IcsMoment &occurrence) const
    {
        const WallSeconds on = occurrence.wall / day;
        if (m_days.contains(on))
            return true;
        return occurrence.isDate ? m_daysOfMoments.contains(on)
                                 : !m_moments.isEmpty() && m_moments.contains(occurrence.utc());
    }

private:
    QSet<WallSeconds> m_days;
    QSet<WallSeconds> m_daysOfMoments;
    QSet<qint64> m_moments;
};

class Expansion
{
public:
    Expansion(const IcsSeries &series, qint64 from, qint64 to, Deadline deadline, QList<CalendarEvent> &events)
        : m_series(series), m_master(series.master), m_from(from), m_to(to), m_deadline(deadline), m_events(events)
    {
        for (const IcsMoment &each : m_master.excluded)
            m_excluded.add(each);
        for (const IcsEvent &each : series.changes) {
            m_changed.add(*each.original);
            if (each.following)
                follows(each);
            m_longest = std::max(m_longest, each.span.days * day + each.span.seconds);
        }
        m_longest = std::max(m_longest, m_master.span.days * day + m_master.span.seconds) + day;
    }

    bool run()
    {
        add(m_master.start);
        for (const QByteArray &rule : m_master.rules)
            follow(rule);
        for (const IcsMoment &date : m_master.dates)
            add(date);
        for (auto each = m_found.cbegin(); each != m_found.cend(); ++each) {
            if (!m_excluded.contains(*each) && !m_changed.contains(*each))
                emitOccurrence(*each);
        }
        for (const IcsEvent &change : m_series.changes) {
            if (!m_excluded.contains(*change.original))
                emitEvent(change, change.start);
        }
        return m_complete;
    }

private:
    void add(const IcsMoment &moment)
    {
        if (m_found.size() < mostOccurrences)
            m_found.insert(moment.utc(), moment);
        else
            m_complete = false;
    }

    void follow(const QByteArray &text)
    {
        icalrecurrencetype rule = icalrecurrencetype_from_string(text.constData());
        if (!isReasonable(rule) || std::chrono::steady_clock::now() > m_deadline) {
            m_complete = false;
            return;
        }
        const IcsMoment &start = m_master.start;
        bringUntilHome(rule, start);
        const std::unique_ptr<icalrecur_iterator, FreeIterator> iterator(
            icalrecur_iterator_new(rule, plainTime(start.wall, start.isDate)));
        if (!iterator)
            return;
        // Times of day differ by less than a day and a bit wherever one is.
        const WallSeconds first = m_from - m_longest - m_shift - 2 * day;
        const WallSeconds last = m_to + m_shift + 2 * day;
        if (rule.count == 0 && first > start.wall)
            icalrecur_iterator_set_start(iterator.get(), plainTime(first, start.isDate));
        for (int step = 0;; ++step) {
            const icaltimetype time = icalrecur_iterator_next(iterator.get());
            const WallSeconds wall = icaltime_as_timet(time);
            if (icaltime_is_null_time(time) || wall > last)
                return;
            if (wall >= first)
                add({wall, start.isDate, start.zone});
            if (step >= mostSteps || m_found.size() >= mostOccurrences) {
                m_complete = false;
                return;
            }
        }
    }

    /// A change of one occurrence and all after it.
    void follows(const IcsEvent &change)
    {
        const qint64 original = change.original->utc();
        m_shift = std::max(m_shift, std::abs(change.start.utc() - original));
        if (!m_following.contains(original))
            m_following.insert(original, &change);
    }

    /// By the last change to this and following ones that came before.
    void emitOccurrence(const IcsMoment &occurrence)
    {
        const auto after = m_following.upperBound(occurrence.utc());
        if (after == m_following.cbegin())
            return emitEvent(m_master, occurrence);
        const auto last = std::prev(after);
        IcsMoment moment = occurrence;
        moment.wall += (*last)->start.utc() - last.key();
        moment.isDate = (*last)->start.isDate;
        emitEvent(**last, moment);
    }

    void emitEvent(const IcsEvent &as, const IcsMoment &moment)
    {
        const qint64 begin = moment.utc();
        const qint64 end = std::max(begin, moment.zone->toUtc(moment.wall + as.span.days * day) + as.span.seconds);
        const bool within = begin < m_to && (end > m_from || (begin == end && begin >= m_from));
        if (!within)
            return;
        CalendarEvent event = as.details;
        event.start = Timestamp::fromUnixSeconds(static_cast<double>(begin));
        event.end = Timestamp::fromUnixSeconds(static_cast<double>(end));
        m_events += event;
    }

    const IcsSeries &m_series;
    const IcsEvent &m_master;
    qint64 m_from;
    qint64 m_to;
    Deadline m_deadline;
    QList<CalendarEvent> &m_events;
    qint64 m_shift = 0;   ///< how far a change moves the following ones
    qint64 m_longest = 0; ///< how long an occurrence lasts
    NamedOccurrences m_excluded;
    NamedOccurrences m_changed;
    QMap<qint64, const IcsEvent *> m_following; ///< by the first occurrence that each changes
    Occurrences m_found;
    bool m_complete = true;
};

qint64 endOf(const IcsEvent &event)
{
    return event.start.wall + event.span.days * day + event.span.seconds + 2 * day;
}

} // namespace

bool expandIcs(const IcsSeries &series, qint64 from, qint64 to, Deadline deadline, QList<CalendarEvent> &events)
{
    return Expansion(series, from, to, deadline, events).run();
}

bool isOverBefore(const IcsSeries &series, qint64 moment)
{
    const auto isOver = [moment](const IcsEvent &each) {
        return each.rules.isEmpty() && each.dates.isEmpty() && endOf(each) < moment;
    };
    return isOver(series.master) && std::ranges::all_of(series.changes, isOver);
}

} // namespace orvelle
