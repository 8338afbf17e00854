#include "platform/freedesktop/evolution/EvolutionSession.h"

#include "platform/freedesktop/SessionBusAddress.h"

#include <QLoggingCategory>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcEvolution, "EvolutionCalendars", QtInfoMsg)

constexpr char registryName[] = "org.gnome.evolution.dataserver.Sources5";
constexpr char factoryName[] = "org.gnome.evolution.dataserver.Calendar8";
constexpr int coalescing = 100; ///< milliseconds
constexpr int longestPause = 3600;
constexpr gint64 quietTime = 60'000'000; ///< microseconds after which a loss is no consequence of the last one

/// Seconds; each attempt waits twice as long as the one before.
int pauseBefore(int attempt)
{
    return attempt < 12 ? std::min(1 << attempt, longestPause) : longestPause;
}

QList<GPointer<ESource>> taken(GList *sources)
{
    QList<GPointer<ESource>> all;
    for (GList *each = sources; each; each = each->next)
        all += owned(static_cast<ESource *>(each->data));
    g_list_free(sources);
    return all;
}

} // namespace

/// A question that was put to several calendars.
struct EvolutionSession::Asked {
    quint64 question = 0;
    qint64 from = 0;
    qint64 to = 0;
    QHash<QByteArray, Calendar> waitedFor;
    QList<CalendarEvent> events;
    guint deadline = 0;
    bool delivered = false;
};

EvolutionSession::EvolutionSession(EvolutionHost host) : m_host(std::move(host))
{
    m_loop.setObjectName(u"evolution"_s);
    m_loop.post([this] { begin(); });
    m_loop.start();
}

void EvolutionSession::stop()
{
    m_loop.post([this] { end(); });
    m_loop.quitSoon();
}

void EvolutionSession::end()
{
    g_cancellable_cancel(m_life.get());
    for (const guint watch : std::as_const(m_watches))
        g_bus_unwatch_name(watch);
    m_watches.clear();
    for (guint *timer : {&m_retry, &m_taking, &m_opened, &m_changed})
        m_loop.forget(*timer);
    closeRegistry();
    m_calendars.clear();
}

void EvolutionSession::once(guint &timer, int milliseconds, const std::function<void()> &work)
{
    if (timer || g_cancellable_is_cancelled(m_life.get()))
        return;
    timer = m_loop.after(milliseconds, [&timer, work] {
        timer = 0;
        work();
    });
}

void EvolutionSession::begin()
{
    if (!hasSessionBus())
        return setPresent(false);
    g_bus_get(G_BUS_TYPE_SESSION, m_life.get(), EngineLoop::finished(),
              m_loop.awaiting([this](GObject *, GAsyncResult *result) {
                  GFailure failure;
                  const auto bus = owned(g_bus_get_finish(result, failure.out()));
                  if (g_cancellable_is_cancelled(m_life.get()))
                      return;
                  if (bus)
                      return busCame(bus);
                  qCInfo(lcEvolution, "No session bus: %s", failure.kind().constData());
                  setPresent(false);
              }));
}

void EvolutionSession::busCame(GPointer<GDBusConnection> bus)
{
    m_bus = std::move(bus);
    // GIO would end the process with the bus.
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    g_dbus_connection_call(m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "ListActivatableNames", nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE,
                           EvolutionCalendar::patience, m_life.get(), EngineLoop::finished(),
                           m_loop.awaiting([this](GObject *, GAsyncResult *result) { serviceListCame(result); }));
}

void EvolutionSession::serviceListCame(GAsyncResult *result)
{
    GFailure failure;
    GVariant *names = g_dbus_connection_call_finish(m_bus.get(), result, failure.out());
    bool startable = false;
    if (names) {
        GVariantIter *each = nullptr;
        const char *name = nullptr;
        g_variant_get(names, "(as)", &each);
        while (g_variant_iter_loop(each, "&s", &name))
            startable = startable || std::strcmp(name, registryName) == 0;
        g_variant_iter_free(each);
        g_variant_unref(names);
    }
    if (g_cancellable_is_cancelled(m_life.get()))
        return;
    watchNames();
    if (!startable)
        return;
    connectNow();
    setPresent(true);
}

void EvolutionSession::watchNames()
{
    for (const char *name : {registryName, factoryName})
        m_watches += g_bus_watch_name_on_connection(m_bus.get(), name, G_BUS_NAME_WATCHER_FLAGS_NONE, nameAppeared,
                                                    nameVanished, this, nullptr);
}

void EvolutionSession::nameAppeared(GDBusConnection *, const char *, const char *, gpointer session)
{
    auto &self = *static_cast<EvolutionSession *>(session);
    self.setPresent(true);
    self.connectNow();
}

/// Also called at first when nobody has the name.
void EvolutionSession::nameVanished(GDBusConnection *, const char *name, gpointer session)
{
    auto &self = *static_cast<EvolutionSession *>(session);
    if (!self.m_present)
        return self.setPresent(false);
    bool lost = false;
    for (const Calendar &each : std::as_const(self.m_calendars)) {
        lost = lost || each->isOpen();
        each->close();
    }
    if (std::strcmp(name, registryName) == 0) {
        lost = lost || self.m_registry;
        self.closeRegistry();
    }
    if (lost)
        self.lostSome();
}

void EvolutionSession::setPresent(bool present)
{
    if (m_present == present)
        return;
    m_present = present;
    qCInfo(lcEvolution, "Calendar server %s", present ? "present" : "absent");
    m_host.presenceKnown(present);
}

void EvolutionSession::lostSome()
{
    const gint64 now = g_get_monotonic_time();
    if (now - m_lastLoss > quietTime + 2 * pauseBefore(m_attempt) * G_USEC_PER_SEC)
        m_attempt = 0;
    m_lastLoss = now;
    m_loop.forget(m_retry);
    connectLater();
}

void EvolutionSession::connectLater()
{
    once(m_retry, pauseBefore(m_attempt) * 1000, [this] {
        ++m_attempt;
        connectNow();
    });
}

void EvolutionSession::connectNow()
{
    m_loop.forget(m_retry);
    if (m_registry)
        takeSources();
    else
        openRegistry();
}

void EvolutionSession::openRegistry()
{
    if (std::exchange(m_openingRegistry, true))
        return;
    e_source_registry_new(
        m_life.get(), EngineLoop::finished(), m_loop.awaiting([this](GObject *, GAsyncResult *result) {
            GFailure failure;
            const auto registry = owned(e_source_registry_new_finish(result, failure.out()));
            m_openingRegistry = false;
            if (g_cancellable_is_cancelled(m_life.get()))
                return;
            if (registry)
                return registryCame(registry);
            qCWarning(lcEvolution, "The list of calendars cannot be read: %s", failure.kind().constData());
            connectLater();
        }));
}

void EvolutionSession::registryCame(GPointer<ESourceRegistry> registry)
{
    m_registry = std::move(registry);
    const auto takeSoon = [this, of = m_registry.get()] {
        if (of == m_registry.get())
            once(m_taking, coalescing, [this] { takeSources(); });
    };
    for (const char *signal : {"source-added", "source-removed", "source-changed", "source-enabled", "source-disabled"})
        listen(m_registry.get(), signal, takeSoon);
    takeSources();
}

void EvolutionSession::closeRegistry()
{
    for (const Calendar &each : std::as_const(m_calendars))
        each->close();
    m_registry.reset();
}

/// Opens the enabled calendars that are not open, forgets those that are gone.
void EvolutionSession::takeSources()
{
    if (!m_registry)
        return;
    QHash<QByteArray, Calendar> before = std::exchange(m_calendars, {});
    for (const auto &source : taken(e_source_registry_list_enabled(m_registry.get(), E_SOURCE_EXTENSION_CALENDAR))) {
        const QByteArray uid = e_source_get_uid(source.get());
        const Calendar known = before.take(uid);
        m_calendars.insert(uid, known ? known : makeCalendar(source));
    }
    for (const Calendar &gone : std::as_const(before))
        gone->close();
    for (const Calendar &each : std::as_const(m_calendars))
        each->open();
    // A change may also be one of a calendar's colour.
    once(m_changed, coalescing, m_host.eventsChanged);
}

EvolutionSession::Calendar EvolutionSession::makeCalendar(const GPointer<ESource> &source)
{
    return std::make_shared<EvolutionCalendar>(
        m_loop, m_host, source,
        EvolutionCalendar::Listener{[this] { once(m_opened, coalescing, m_host.calendarsOpened); },
                                    [this] { connectLater(); }, [this] { lostSome(); },
                                    [this] { once(m_changed, coalescing, m_host.eventsChanged); },
                                    [this] { once(m_opened, coalescing, m_host.calendarsOpened); }});
}

/// Those of the user's mail accounts.
QStringList EvolutionSession::ownAddresses() const
{
    QStringList own;
    if (!m_registry)
        return own;
    for (const auto &source :
         taken(e_source_registry_list_sources(m_registry.get(), E_SOURCE_EXTENSION_MAIL_IDENTITY))) {
        const GText address(e_source_mail_identity_dup_address(static_cast<ESourceMailIdentity *>(
            e_source_get_extension(source.get(), E_SOURCE_EXTENSION_MAIL_IDENTITY))));
        if (address && *address)
            own += QString::fromUtf8(address.get()).toLower();
    }
    return own;
}

void EvolutionSession::ask(quint64 question, qint64 from, qint64 to)
{
    m_loop.post([this, question, from, to] { putToAll(question, from, to); });
}

void EvolutionSession::putToAll(quint64 question, qint64 from, qint64 to)
{
    auto asked = std::make_shared<Asked>(Asked{question, from, to, m_calendars, {}, 0, false});
    if (m_calendars.isEmpty())
        return deliver(asked);
    asked->deadline = m_loop.after(EvolutionCalendar::patience, [this, asked] {
        asked->deadline = 0;
        for (const Calendar &each : std::as_const(asked->waitedFor))
            asked->events += each->lastSaid(asked->from, asked->to);
        deliver(asked);
    });
    const EvolutionEvents put{{}, from, to, {}, ownAddresses()};
    const auto all = m_calendars;
    for (auto each = all.begin(); each != all.end(); ++each) {
        each.value()->ask(put, [this, asked, uid = each.key()](const QList<CalendarEvent> &events) {
            if (asked->delivered)
                return;
            asked->events += events;
            asked->waitedFor.remove(uid);
            if (asked->waitedFor.isEmpty())
                deliver(asked);
        });
    }
}

void EvolutionSession::deliver(const std::shared_ptr<Asked> &asked)
{
    asked->delivered = true;
    m_loop.forget(asked->deadline);
    if (!g_cancellable_is_cancelled(m_life.get()))
        m_host.answered(asked->question, asked->events);
}

} // namespace orvelle

extern "C" Q_DECL_EXPORT orvelle::EvolutionEngine *orvelleMakeEvolutionEngine(orvelle::EvolutionHost host)
{
    return new orvelle::EvolutionSession(std::move(host));
}
