#pragma once

#include "platform/Clock.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace orvelle::test {

/// A clock that moves only when a test says so. Timers fire in the order of
/// their times, from inside advance().
class FakeClock : public Clock
{
public:
    explicit FakeClock(Timestamp start = Timestamp::fromUnixSeconds(1'790'000'000)) : m_now(start) {}

    Timestamp now() const override { return m_now; }
    /// The wall clock is set; only timers for a date notice, those that are due
    /// now at the next advance(), be it by nothing.
    void setNow(Timestamp now) { m_now = now; }
    /// The machine sleeps: the wall clock goes on, timers do not.
    void sleep(std::chrono::milliseconds time) { m_now = m_now + std::chrono::duration<double>(time).count(); }

    std::unique_ptr<Timer> singleShot(std::chrono::milliseconds delay, std::function<void()> fire) override
    {
        return add(delay, std::chrono::milliseconds(0), std::move(fire));
    }

    std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, std::function<void()> fire) override
    {
        return add(period, period, std::move(fire));
    }

    std::unique_ptr<Timer> atDate(Timestamp date, std::function<void()> fire) override
    {
        m_entries.push_back({m_nextId, {}, std::chrono::milliseconds(0), std::move(fire), date});
        return std::make_unique<FakeTimer>(*this, m_nextId++);
    }

    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> fire) override
    {
        m_entries.push_back({m_nextId++, m_elapsed + delay, std::chrono::milliseconds(0),
                             [guard = QPointer<QObject>(context), fire = std::move(fire)] {
                                 if (guard)
                                     fire();
                             }});
    }

    /// Moves time forward, firing what falls due.
    void advance(std::chrono::milliseconds by)
    {
        const auto target = m_elapsed + by;
        for (;;) {
            const auto next =
                std::min_element(m_entries.begin(), m_entries.end(), [this](const auto &a, const auto &b) {
                    return std::pair(dueOf(a), a.id) < std::pair(dueOf(b), b.id);
                });
            if (next == m_entries.end() || dueOf(*next) > target)
                break;
            step(dueOf(*next));
            const Entry entry = *next;
            if (entry.date) // not by what was lost in rounding too early
                m_now = std::max(m_now, *entry.date);
            if (entry.period.count() > 0)
                next->due += entry.period;
            else
                m_entries.erase(next);
            entry.fire();
        }
        step(target);
    }

    /// Seconds since the clock was made, as its timers count them.
    double runningTime() const { return std::chrono::duration<double>(m_elapsed).count(); }

    /// Timers that wait.
    std::size_t pending() const { return m_entries.size(); }

private:
    struct Entry {
        quint64 id;
        std::chrono::milliseconds due;
        std::chrono::milliseconds period;
        std::function<void()> fire;
        std::optional<Timestamp> date = {};
    };

    /// When an entry falls due if nobody sets the clock.
    std::chrono::milliseconds dueOf(const Entry &entry) const
    {
        if (!entry.date)
            return entry.due;
        const double left = std::max(0.0, std::ceil((*entry.date - m_now) * 1000 - 1e-3));
        return m_elapsed + std::chrono::milliseconds(static_cast<qint64>(left));
    }

    class FakeTimer : public Timer
    {
    public:
        FakeTimer(FakeClock &clock, quint64 id) : m_clock(clock), m_id(id) {}
        ~FakeTimer() override
        {
            std::erase_if(m_clock.m_entries, [this](const Entry &e) { return e.id == m_id; });
        }

    private:
        FakeClock &m_clock;
        quint64 m_id;
    };

    std::unique_ptr<Timer> add(std::chrono::milliseconds delay, std::chrono::milliseconds period,
                               std::function<void()> fire)
    {
        m_entries.push_back({m_nextId, m_elapsed + delay, period, std::move(fire)});
        return std::make_unique<FakeTimer>(*this, m_nextId++);
    }

    void step(std::chrono::milliseconds to)
    {
        m_now = m_now + std::chrono::duration<double>(to - m_elapsed).count();
        m_elapsed = to;
    }

    Timestamp m_now;
    std::chrono::milliseconds m_elapsed{0};
    quint64 m_nextId = 1;
    std::vector<Entry> m_entries;
};

} // namespace orvelle::test
