#pragma once

#include "platform/freedesktop/evolution/EngineLoop.h"
#include "platform/freedesktop/evolution/EvolutionQuery.h"

#include <libecal/libecal.h>

namespace orvelle {

/// One calendar of the server: the connection to it, the view that tells of
/// changes, and what it said last. On the loop's thread.
class EvolutionCalendar : public std::enable_shared_from_this<EvolutionCalendar>
{
public:
    struct Listener {
        std::function<void()> opened;
        std::function<void()> refused; ///< could not be opened
        std::function<void()> lost;    ///< was open and is not any more
        std::function<void()> eventsChanged;
        std::function<void()> answeredLate; ///< after whoever asked has given up; ask again
    };
    EvolutionCalendar(EngineLoop &loop, const EvolutionHost &host, GPointer<ESource> source, Listener listener);

    bool isOpen() const { return m_client != nullptr; }
    /// Does nothing while it is open or being opened.
    void open();
    /// Without a word to the listener. What it said last stays.
    void close();

    using Answer = std::function<void(const QList<CalendarEvent> &)>;
    /// How long an answer is waited for.
    static constexpr int patience = 5000; ///< milliseconds
    /// Asks the server, one question after the other, and watches those days
    /// from then on. After a late answer that one is given.
    void ask(const EvolutionEvents &question, const Answer &answer);
    /// What it said last of those days.
    QList<CalendarEvent> lastSaid(qint64 from, qint64 to) const;

private:
    struct Question {
        EvolutionEvents events;
        Answer answer;
        gint64 askedAt; ///< microseconds of the monotonic clock
    };
    void put(const Question &asked);
    void putWaiting();
    void clientCame(GPointer<ECalClient> client);
    void watch(const EvolutionEvents &question, const Answer &answer);
    void startView(const GPointer<ECalClientView> &view, const EvolutionEvents &question, const Answer &answer);
    void query(const EvolutionEvents &question, const Answer &answer);
    /// Whether what was begun with this belongs to the present connection.
    bool isPresent(const GPointer<GCancellable> &begun) const;
    std::function<void()> whilePresent(void (EvolutionCalendar::*heard)());
    void answerCame(const EvolutionEvents &about, const std::optional<QList<CalendarEvent>> &events);
    void died();
    void changed();

    EngineLoop &m_loop;
    const EvolutionHost &m_host;
    GPointer<ESource> m_source;
    Listener m_listener;
    GPointer<GCancellable> m_connection; ///< of the client, also while it is awaited
    GPointer<ECalClient> m_client;
    GPointer<ECalClientView> m_view;
    qint64 m_viewFrom = 0;
    qint64 m_viewTo = 0;
    bool m_busy = false;  ///< with a question
    gint64 m_askedAt = 0; ///< that question, in microseconds of the monotonic clock
    QList<Question> m_waiting;
    QList<CalendarEvent> m_last;
    bool m_lastIsNew = false; ///< came late and nothing has changed since
    qint64 m_lastFrom = 0;
    qint64 m_lastTo = 0;
};

} // namespace orvelle
