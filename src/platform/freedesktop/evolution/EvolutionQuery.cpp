#include "platform/freedesktop/evolution/EvolutionQuery.h"

#include <QLoggingCategory>
#include <QSet>
#include <QTimeZone>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcEvolutionQuery, "EvolutionCalendars", QtInfoMsg)

constexpr qsizetype mostEvents = 5'000; ///< in the days that are asked for
constexpr qsizetype mostText = 32 * 1024 * 1024;

struct FreeComponents {
    void operator()(GSList *components) const { g_slist_free_full(components, g_object_unref); }
};
using Components = std::unique_ptr<GSList, FreeComponents>;

QString calendarsAddress(ECalClient *client, GCancellable *cancellable)
{
    char *raw = nullptr;
    e_client_get_backend_property_sync(reinterpret_cast<EClient *>(client), E_CAL_BACKEND_PROPERTY_CAL_EMAIL_ADDRESS,
                                       &raw, cancellable, nullptr);
    const GText address(raw);
    return QString::fromUtf8(address.get()).toLower();
}

/// With the definitions of its time zones.
void append(QByteArray &text, ECalClient *client, ICalComponent *event)
{
    const GText own(e_cal_client_get_component_as_string(client, event));
    if (own && text.size() < mostText)
        text += own.get();
}

bool isOfSeries(ICalComponent *event)
{
    return e_cal_util_component_has_recurrences(event) || e_cal_util_component_is_instance(event);
}

/// The whole series, as an occurrence of these days may have moved to others.
/// libecal's own expansion overlooks changed occurrences where the calendar
/// does not define the time zone that they name.
bool appendSeries(QByteArray &text, ECalClient *client, const char *uid, GCancellable *cancellable)
{
    GSList *found = nullptr;
    GFailure failure;
    e_cal_client_get_objects_for_uid_sync(client, uid, &found, cancellable, failure.out());
    const Components series(found);
    for (GSList *each = series.get(); each; each = each->next)
        append(text, client, e_cal_component_get_icalcomponent(static_cast<ECalComponent *>(each->data)));
    if (failure && !failure.isCancellation())
        qCInfo(lcEvolutionQuery, "A series cannot be read whole: %s", failure.kind().constData());
    return series != nullptr;
}

} // namespace

GText daysExpression(qint64 from, qint64 to)
{
    const GText begin(isodate_from_time_t(from));
    const GText end(isodate_from_time_t(to));
    return GText(g_strdup_printf("(occur-in-time-range? (make-time \"%s\") (make-time \"%s\") \"%s\")", begin.get(),
                                 end.get(), QTimeZone::systemTimeZoneId().constData()));
}

std::optional<EvolutionEvents> evolutionEvents(ECalClient *client, EvolutionEvents about, GCancellable *cancellable)
{
    if (const QString address = calendarsAddress(client, cancellable); !address.isEmpty())
        about.own += address;
    GSList *found = nullptr;
    GFailure failure;
    const GText days = daysExpression(about.from, about.to);
    e_cal_client_get_object_list_sync(client, days.get(), &found, cancellable, failure.out());
    const Components events(found);
    QSet<QByteArray> whole;
    qsizetype count = 0;
    for (GSList *each = events.get(); each && ++count <= mostEvents; each = each->next) {
        auto *event = static_cast<ICalComponent *>(each->data);
        const QByteArray uid = i_cal_component_get_uid(event);
        if (isOfSeries(event) && whole.contains(uid))
            continue;
        if (isOfSeries(event) && appendSeries(about.text, client, uid.constData(), cancellable))
            whole.insert(uid);
        else
            append(about.text, client, event);
    }
    if (count > mostEvents)
        qCWarning(lcEvolutionQuery, "A calendar has too many events to be shown whole");
    if (failure && !failure.isCancellation())
        qCWarning(lcEvolutionQuery, "A calendar does not answer: %s", failure.kind().constData());
    return failure || g_cancellable_is_cancelled(cancellable) ? std::nullopt : std::optional(about);
}

} // namespace orvelle
