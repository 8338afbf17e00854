#include "platform/freedesktop/evolution/EvolutionCalendar.h"

#include <QLoggingCategory>

#include <algorithm>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcEvolutionCalendar, "EvolutionCalendars", QtInfoMsg)

constexpr qint64 day = 86400;
constexpr auto doNotWait = static_cast<guint32>(-1);

/// The view tells that something has changed; what it is, is asked for.
void startQuietly(ECalClientView *view)
{
    char uid[] = "UID";
    GSList field{uid, nullptr};
    GFailure failure;
    e_cal_client_view_set_fields_of_interest(view, &field, nullptr);
    e_cal_client_view_set_flags(view, E_CAL_CLIENT_VIEW_FLAGS_NONE, nullptr);
    e_cal_client_view_start(view, failure.out());
    if (failure)
        qCWarning(lcEvolutionCalendar, "A calendar is not watched: %s", failure.kind().constData());
}

} // namespace

EvolutionCalendar::EvolutionCalendar(EngineLoop &loop, const EvolutionHost &host, GPointer<ESource> source,
                                     Listener listener)
    : m_loop(loop), m_host(host), m_source(std::move(source)), m_listener(std::move(listener))
{
}

bool EvolutionCalendar::isPresent(const GPointer<GCancellable> &begun) const
{
    return begun == m_connection && !g_cancellable_is_cancelled(begun.get());
}

void EvolutionCalendar::open()
{
    if (m_connection)
        return;
    m_connection = owned(g_cancellable_new());
    e_cal_client_connect(
        m_source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, doNotWait, m_connection.get(), EngineLoop::finished(),
        m_loop.awaiting([self = shared_from_this(), begun = m_connection](GObject *, GAsyncResult *result) {
            GFailure failure;
            const auto client =
                owned(reinterpret_cast<ECalClient *>(e_cal_client_connect_finish(result, failure.out())));
            if (!self->isPresent(begun))
                return;
            if (client)
                return self->clientCame(client);
            qCWarning(lcEvolutionCalendar, "A calendar cannot be opened: %s", failure.kind().constData());
            self->close();
            self->m_listener.refused();
        }));
}

void EvolutionCalendar::clientCame(GPointer<ECalClient> client)
{
    m_client = std::move(client);
    listen(m_client.get(), "backend-died", whilePresent(&EvolutionCalendar::died));
    m_listener.opened();
}

std::function<void()> EvolutionCalendar::whilePresent(void (EvolutionCalendar::*heard)())
{
    return [weak = weak_from_this(), begun = m_connection, heard] {
        const auto self = weak.lock();
        if (self && self->isPresent(begun))
            (self.get()->*heard)();
    };
}

void EvolutionCalendar::died()
{
    close();
    m_listener.lost();
}

void EvolutionCalendar::changed()
{
    m_lastIsNew = false;
    m_listener.eventsChanged();
}

void EvolutionCalendar::close()
{
    if (m_connection)
        g_cancellable_cancel(m_connection.get());
    m_connection.reset();
    m_view.reset();
    m_client.reset();
    m_lastIsNew = false;
    m_busy = false;
    putWaiting();
}

void EvolutionCalendar::ask(const EvolutionEvents &question, const Answer &answer)
{
    put({question, answer, g_get_monotonic_time()});
}

void EvolutionCalendar::put(const Question &asked)
{
    const auto &[question, answer, askedAt] = asked;
    // What is under way may have been answered before the change that this one is about.
    if (m_busy)
        return m_waiting.push_back(asked);
    const bool isKnown = std::exchange(m_lastIsNew, false) && question.from >= m_lastFrom && question.to <= m_lastTo;
    if (!m_client || isKnown)
        return answer(lastSaid(question.from, question.to));
    m_busy = true;
    m_askedAt = askedAt;
    // Watched before it is asked, so that no change is missed in between.
    if (m_view && question.from >= m_viewFrom && question.to <= m_viewTo)
        query(question, answer);
    else
        watch(question, answer);
}

/// The first of them goes to the server, the others wait on.
void EvolutionCalendar::putWaiting()
{
    for (const Question &each : std::exchange(m_waiting, {}))
        put(each);
}

void EvolutionCalendar::watch(const EvolutionEvents &question, const Answer &answer)
{
    m_view.reset();
    m_viewFrom = question.from - day;
    m_viewTo = question.to + 7 * day;
    const GText days = daysExpression(m_viewFrom, m_viewTo);
    e_cal_client_get_view(
        m_client.get(), days.get(), m_connection.get(), EngineLoop::finished(),
        m_loop.awaiting(
            [self = shared_from_this(), begun = m_connection, question, answer](GObject *source, GAsyncResult *result) {
                GFailure failure;
                ECalClientView *raw = nullptr;
                e_cal_client_get_view_finish(reinterpret_cast<ECalClient *>(source), result, &raw, failure.out());
                const auto view = owned(raw);
                if (!self->isPresent(begun))
                    return answer(self->lastSaid(question.from, question.to));
                if (view)
                    return self->startView(view, question, answer);
                qCWarning(lcEvolutionCalendar, "A calendar cannot be watched: %s", failure.kind().constData());
                self->query(question, answer);
            }));
}

void EvolutionCalendar::startView(const GPointer<ECalClientView> &view, const EvolutionEvents &question,
                                  const Answer &answer)
{
    m_view = view;
    for (const char *signal : {"objects-added", "objects-modified", "objects-removed"})
        listen(view.get(), signal, whilePresent(&EvolutionCalendar::changed));
    m_loop.beside([view] { startQuietly(view.get()); },
                  [self = shared_from_this(), begun = m_connection, question, answer] {
                      if (self->isPresent(begun))
                          self->query(question, answer);
                      else
                          answer(self->lastSaid(question.from, question.to));
                  });
}

void EvolutionCalendar::query(const EvolutionEvents &question, const Answer &answer)
{
    const GText color(e_source_selectable_dup_color(
        static_cast<ESourceSelectable *>(e_source_get_extension(m_source.get(), E_SOURCE_EXTENSION_CALENDAR))));
    EvolutionEvents about = question;
    about.to += day; // so that it still holds when the days have moved on a little
    about.calendarColor = QString::fromUtf8(color.get());
    auto found = std::make_shared<std::optional<QList<CalendarEvent>>>();
    const auto work = [found, about, client = m_client, begun = m_connection, &host = m_host] {
        if (const auto events = evolutionEvents(client.get(), about, begun.get()))
            *found = host.occurrences(*events);
    };
    m_loop.beside(work, [self = shared_from_this(), begun = m_connection, about, answer, found] {
        const bool isPresent = self->isPresent(begun);
        if (isPresent)
            self->answerCame(about, *found);
        answer(self->lastSaid(about.from, about.to - day));
        if (isPresent)
            self->putWaiting();
    });
}

void EvolutionCalendar::answerCame(const EvolutionEvents &about, const std::optional<QList<CalendarEvent>> &events)
{
    m_busy = false;
    if (!events)
        return;
    m_last = *events;
    m_lastFrom = about.from;
    m_lastTo = about.to;
    m_lastIsNew = g_get_monotonic_time() - m_askedAt > patience * gint64(1000);
    if (m_lastIsNew)
        m_listener.answeredLate();
}

QList<CalendarEvent> EvolutionCalendar::lastSaid(qint64 from, qint64 to) const
{
    const Timestamp begin = Timestamp::fromUnixSeconds(static_cast<double>(from));
    const Timestamp end = Timestamp::fromUnixSeconds(static_cast<double>(to));
    QList<CalendarEvent> within;
    std::ranges::copy_if(m_last, std::back_inserter(within), [&](const CalendarEvent &each) {
        return each.start < end && (each.end > begin || (each.end == each.start && each.start >= begin));
    });
    return within;
}

} // namespace orvelle
