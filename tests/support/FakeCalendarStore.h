#pragma once

#include "platform/CalendarStore.h"

namespace orvelle::test {

/// Calendars in memory. Answers wait until answer() is called.
class FakeCalendarStore : public CalendarStore
{
public:
    Access present = Access::Granted;
    AccessAnswer answerToRequest{true, {}};
    bool available = true;
    QList<CalendarEvent> events;
    int fetches = 0;
    bool watching = false;
    Timestamp from; ///< of the last fetch
    Timestamp to;

    bool isAvailable() const override { return available; }
    Access access() const override { return present; }
    void requestAccess(std::function<void(const AccessAnswer &)> done) override
    {
        m_waiting += [this, done = std::move(done)] {
            present = answerToRequest.granted ? Access::Granted : Access::Denied;
            done(answerToRequest);
        };
    }
    void fetch(Timestamp start, Timestamp end, std::function<void(const QList<CalendarEvent> &)> done) override
    {
        ++fetches;
        from = start;
        to = end;
        m_waiting += [found = events, done = std::move(done)] { done(found); };
    }
    void setWatching(bool on) override { watching = on; }

    void otherProgramChangesEvents()
    {
        if (watching)
            emit changed();
    }
    /// Every answer that is due, also those that come of answers.
    void answer()
    {
        while (!m_waiting.isEmpty())
            m_waiting.takeFirst()();
    }
    /// The last question is answered before those that came before it.
    void answerLastFirst()
    {
        if (!m_waiting.isEmpty())
            m_waiting.takeLast()();
        answer();
    }

private:
    QList<std::function<void()>> m_waiting;
};

} // namespace orvelle::test
