#pragma once

#include "platform/CalendarEvent.h"

#include <QByteArray>
#include <QList>

#include <functional>

namespace orvelle {

/// Events of a calendar as text (RFC 5545), series whole, with the time zones
/// that they name, and what is asked of them.
struct EvolutionEvents {
    QByteArray text;
    qint64 from = 0; ///< seconds since 1970
    qint64 to = 0;
    QString calendarColor;
    QStringList own; ///< the user's addresses in this calendar, in lower case
};

/// What the engine needs and whom it tells. All are called on threads of the
/// engine, `occurrences` on several at once.
struct EvolutionHost {
    std::function<QList<CalendarEvent>(const EvolutionEvents &)> occurrences; ///< that overlap [from, to)
    /// Whether there is a server, running or one that the bus can start.
    std::function<void(bool present)> presenceKnown;
    /// A calendar can be asked, for the first time or again, or has answered
    /// after its time.
    std::function<void()> calendarsOpened;
    /// Events of the days last asked for may have changed; at most ten times a second.
    std::function<void()> eventsChanged;
    std::function<void(quint64 question, const QList<CalendarEvent> &events)> answered;
};

/// The conversation with the calendar server, on a thread of its own that waits
/// without waking up. Begins when it is made. Its functions return at once.
class EvolutionEngine
{
public:
    EvolutionEngine() = default;
    Q_DISABLE_COPY_MOVE(EvolutionEngine)
    /// Only after waitForEnd() said yes.
    virtual ~EvolutionEngine() = default;

    /// The events that overlap [from, to), seconds since 1970; answered in any
    /// case, within seconds. A calendar that cannot be asked just then, or does
    /// not answer in time, counts with what it said last.
    virtual void ask(quint64 question, qint64 from, qint64 to) = 0;
    /// Nothing is begun any more and what is under way is given up.
    virtual void stop() = 0;
    /// Whether the thread has ended; the host is not called after that.
    virtual bool waitForEnd(int milliseconds) = 0;
};

/// The module's one function: makes an engine.
using MakeEvolutionEngine = EvolutionEngine *(*)(EvolutionHost host);

} // namespace orvelle
