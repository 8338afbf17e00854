#include "platform/freedesktop/calendars/IcsZone.h"

#include <QDateTime>
#include <QTimeZone>

#include <libical/ical.h>

namespace orvelle {
namespace {

constexpr qsizetype largestDefinition = 256 * 1024;

QDateTime civil(WallSeconds wall)
{
    return QDateTime::fromSecsSinceEpoch(wall, Qt::UTC);
}

WallSeconds wallOf(const QDateTime &time)
{
    return QDateTime(time.date(), time.time(), Qt::UTC).toSecsSinceEpoch();
}

/// Follows the system's zone when that changes.
class LocalZone : public IcsZone
{
public:
    qint64 toUtc(WallSeconds wall) const override
    {
        const QDateTime time = civil(wall);
        if (time.time() == QTime(0, 0)) // not before the day's start where there is no midnight
            return time.date().startOfDay().toSecsSinceEpoch();
        return QDateTime(time.date(), time.time()).toSecsSinceEpoch();
    }
    WallSeconds fromUtc(qint64 utc) const override { return wallOf(QDateTime::fromSecsSinceEpoch(utc)); }
};

class SystemZone : public IcsZone
{
public:
    explicit SystemZone(const QTimeZone &zone) : m_zone(zone) {}
    qint64 toUtc(WallSeconds wall) const override
    {
        const QDateTime time = civil(wall);
        return QDateTime(time.date(), time.time(), m_zone).toSecsSinceEpoch();
    }
    WallSeconds fromUtc(qint64 utc) const override { return utc + m_zone.offsetFromUtc(civil(utc)); }

private:
    QTimeZone m_zone;
};

class DefinedZone : public IcsZone
{
public:
    explicit DefinedZone(icalcomponent *definition) : m_zone(icaltimezone_new())
    {
        icaltimezone_set_component(m_zone, definition);
    }
    ~DefinedZone() override { icaltimezone_free(m_zone, 1); }
    DefinedZone(const DefinedZone &) = delete;
    DefinedZone &operator=(const DefinedZone &) = delete;

    qint64 toUtc(WallSeconds wall) const override
    {
        icaltimetype time = icaltime_from_timet_with_zone(wall, 0, nullptr);
        return wall - icaltimezone_get_utc_offset(m_zone, &time, nullptr);
    }
    WallSeconds fromUtc(qint64 utc) const override
    {
        icaltimetype time = icaltime_from_timet_with_zone(utc, 0, icaltimezone_get_utc_timezone());
        return utc + icaltimezone_get_utc_offset_of_utc_time(m_zone, &time, nullptr);
    }

private:
    icaltimezone *m_zone;
};

/// Whether working out the changes of the clocks stays small.
bool isHarmless(icalcomponent *definition)
{
    for (icalcomponent *part = icalcomponent_get_first_component(definition, ICAL_ANY_COMPONENT); part;
         part = icalcomponent_get_next_component(definition, ICAL_ANY_COMPONENT)) {
        for (icalproperty *each = icalcomponent_get_first_property(part, ICAL_RRULE_PROPERTY); each;
             each = icalcomponent_get_next_property(part, ICAL_RRULE_PROPERTY)) {
            const icalrecurrencetype rule = icalproperty_get_rrule(each);
            const bool timed = rule.by_hour[0] != ICAL_RECURRENCE_ARRAY_MAX ||
                               rule.by_minute[0] != ICAL_RECURRENCE_ARRAY_MAX ||
                               rule.by_second[0] != ICAL_RECURRENCE_ARRAY_MAX;
            if (rule.freq != ICAL_YEARLY_RECURRENCE || timed)
                return false;
        }
    }
    return true;
}

QTimeZone systemZone(const QByteArray &tzid)
{
    // "/vendor.example/20240101_1/Europe/Paris" ends in a name of the database.
    for (QByteArray name = tzid; !name.isEmpty();) {
        const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' || c == '_' ||
                   c == '-' || c == '+';
        });
        if (plain && !name.startsWith('/') && QTimeZone::isTimeZoneIdAvailable(name))
            return QTimeZone(name);
        const qsizetype slash = name.indexOf('/', 1);
        name = slash < 0 ? QByteArray() : name.mid(slash + 1);
    }
    return {};
}

} // namespace

IcsZonePointer IcsZones::local()
{
    return std::make_shared<LocalZone>();
}

void IcsZones::define(const QByteArray &definition)
{
    if (definition.size() > largestDefinition)
        return;
    icalcomponent *component = icalparser_parse_string(definition.constData());
    if (!component)
        return;
    icalproperty *name = icalcomponent_isa(component) == ICAL_VTIMEZONE_COMPONENT
                             ? icalcomponent_get_first_property(component, ICAL_TZID_PROPERTY)
                             : nullptr;
    const QByteArray tzid = name ? QByteArray(icalproperty_get_tzid(name)) : QByteArray();
    if (tzid.isEmpty() || !isHarmless(component))
        return icalcomponent_free(component);
    m_defined.insert(tzid, std::make_shared<DefinedZone>(component));
}

IcsZonePointer IcsZones::named(const QByteArray &tzid) const
{
    if (const auto known = m_known.constFind(tzid); known != m_known.constEnd())
        return *known;
    QTimeZone zone = systemZone(tzid);
    IcsZonePointer found;
    if (!zone.isValid() && m_defined.contains(tzid))
        found = m_defined.value(tzid);
    if (!zone.isValid() && !found) {
        const QByteArray iana = QTimeZone::windowsIdToDefaultIanaId(tzid);
        zone = iana.isEmpty() ? QTimeZone() : QTimeZone(iana);
    }
    if (zone.isValid())
        found = std::make_shared<SystemZone>(zone);
    if (!found)
        found = local();
    m_known.insert(tzid, found);
    return found;
}

} // namespace orvelle
