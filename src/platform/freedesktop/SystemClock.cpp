#include "platform/freedesktop/SystemClock.h"

#include <QTimer>

#include <algorithm>

namespace orvelle {

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using Monotonic = std::chrono::steady_clock;

/// The toolkit counts milliseconds in an int; longer waits come in pieces.
constexpr milliseconds longestPiece = std::chrono::hours(24 * 7);

/// One deadline, or a grid of them, served by a QTimer. The toolkit's coarse
/// timers may be early as well as late, so each piece is stretched by what
/// they may be early, and a timer that still comes early waits on.
class Deadlines : public QObject
{
public:
    Deadlines(milliseconds delay, milliseconds period, std::function<void()> fire, QObject *parent = nullptr)
        : QObject(parent),
          m_period(period),
          m_due(Monotonic::now() + delay),
          m_fire(std::make_shared<std::function<void()>>(std::move(fire)))
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, &Deadlines::check);
        arm();
    }

private:
    void arm()
    {
        const auto left = std::chrono::ceil<milliseconds>(m_due - Monotonic::now());
        const auto piece = std::clamp(left, 0ms, longestPiece);
        const bool coarse = piece >= 1s;
        m_timer.setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer);
        m_timer.start(coarse ? piece + std::min(piece / 20, milliseconds(1s)) : piece);
    }

    void check()
    {
        if (Monotonic::now() < m_due) {
            arm();
            return;
        }
        const auto fire = m_fire;
        if (m_period > 0ms) {
            const auto missed = (Monotonic::now() - m_due) / m_period;
            m_due += m_period * (missed + 1);
            arm();
        } else if (parent()) {
            deleteLater();
        }
        // The last statement: what is called may destroy this timer.
        (*fire)();
    }

    milliseconds m_period;
    Monotonic::time_point m_due;
    std::shared_ptr<std::function<void()>> m_fire;
    QTimer m_timer;
};

class SystemTimer : public Timer
{
public:
    SystemTimer(milliseconds delay, milliseconds period, std::function<void()> fire)
        : m_deadlines(delay, period, std::move(fire))
    {
    }

private:
    Deadlines m_deadlines;
};

} // namespace

Timestamp SystemClock::now() const
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Timestamp::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

std::unique_ptr<Timer> SystemClock::singleShot(milliseconds delay, std::function<void()> fire)
{
    return std::make_unique<SystemTimer>(delay, 0ms, std::move(fire));
}

std::unique_ptr<Timer> SystemClock::repeating(milliseconds period, std::function<void()> fire)
{
    const auto atLeastOne = std::max(period, 1ms);
    return std::make_unique<SystemTimer>(atLeastOne, atLeastOne, std::move(fire));
}

void SystemClock::after(milliseconds delay, QObject *context, std::function<void()> fire)
{
    // Owned by the context, so that it goes with it.
    new Deadlines(delay, 0ms, std::move(fire), context);
}

} // namespace orvelle
