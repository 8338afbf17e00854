#pragma once

#include "platform/freedesktop/evolution/EvolutionCalendar.h"

#include <QHash>

namespace orvelle {

/// The engine: finds the server on the session bus, keeps the list of its
/// calendars, and connects again, ever more seldom, when the server is lost.
/// Constructor, ask(), stop() and waitForEnd() are for any thread, the rest is
/// for the loop's.
class EvolutionSession final : public EvolutionEngine
{
public:
    explicit EvolutionSession(EvolutionHost host);

    void ask(quint64 question, qint64 from, qint64 to) override;
    void stop() override;
    bool waitForEnd(int milliseconds) override { return m_loop.wait(static_cast<unsigned long>(milliseconds)); }

private:
    using Calendar = std::shared_ptr<EvolutionCalendar>;
    struct Asked;

    void begin();
    void busCame(GPointer<GDBusConnection> bus);
    void serviceListCame(GAsyncResult *result);
    void watchNames();
    static void nameAppeared(GDBusConnection *, const char *name, const char *owner, gpointer session);
    static void nameVanished(GDBusConnection *, const char *name, gpointer session);
    void setPresent(bool present);

    void connectNow();
    void connectLater();
    void lostSome();
    void openRegistry();
    void registryCame(GPointer<ESourceRegistry> registry);
    void closeRegistry();
    void takeSources();
    Calendar makeCalendar(const GPointer<ESource> &source);
    QStringList ownAddresses() const;

    void putToAll(quint64 question, qint64 from, qint64 to);
    void deliver(const std::shared_ptr<Asked> &asked);
    void once(guint &timer, int milliseconds, const std::function<void()> &work);
    void end();

    EvolutionHost m_host;
    EngineLoop m_loop;
    GPointer<GCancellable> m_life = owned(g_cancellable_new()); ///< cancelled at the end
    GPointer<GDBusConnection> m_bus;
    QList<guint> m_watches;
    std::optional<bool> m_present;
    GPointer<ESourceRegistry> m_registry;
    bool m_openingRegistry = false;
    QHash<QByteArray, Calendar> m_calendars; ///< by the source's identifier
    int m_attempt = 0;
    gint64 m_lastLoss = 0; ///< microseconds of the monotonic clock
    guint m_retry = 0;
    guint m_taking = 0;
    guint m_opened = 0;
    guint m_changed = 0;
};

} // namespace orvelle
