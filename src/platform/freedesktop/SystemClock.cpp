#include "platform/freedesktop/SystemClock.h"

#include <QLoggingCategory>
#include <QSocketNotifier>
#include <QTimer>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcClock, "Clock", QtInfoMsg)

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

/// A timer of the kernel on the wall clock, which takes note of sleep and of a
/// clock that is set.
class DateTimer : public Timer
{
public:
    /// Null when the kernel has none left.
    static std::unique_ptr<DateTimer> make(Timestamp date, std::function<void()> fire)
    {
        const int descriptor = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
        if (descriptor < 0)
            return nullptr;
        auto made = std::unique_ptr<DateTimer>(new DateTimer(descriptor, std::move(fire)));
        const itimerspec when = {{}, specOf(date)};
        if (::timerfd_settime(descriptor, TFD_TIMER_ABSTIME, &when, nullptr) != 0)
            return nullptr;
        return made;
    }
    ~DateTimer() override
    {
        m_notifier.setEnabled(false);
        ::close(m_descriptor);
    }

private:
    DateTimer(int descriptor, std::function<void()> fire)
        : m_descriptor(descriptor), m_fire(std::move(fire)), m_notifier(descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { expired(); });
    }

    /// Never zero, which would disarm the timer.
    static timespec specOf(Timestamp date)
    {
        const double latest = 253402300800.0; // the year 10000
        const double seconds = std::clamp(date.unixSeconds(), 0.0, latest);
        const double whole = std::floor(seconds);
        const auto nanoseconds = static_cast<long>((seconds - whole) * 1e9);
        return {static_cast<time_t>(whole), std::max(nanoseconds, 1L)};
    }

    void expired()
    {
        quint64 count = 0;
        if (::read(m_descriptor, &count, sizeof count) != sizeof count)
            return;
        m_notifier.setEnabled(false);
        // The last statement: what is called may destroy this timer.
        const auto fire = m_fire;
        fire();
    }

    int m_descriptor;
    std::function<void()> m_fire;
    QSocketNotifier m_notifier;
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

std::unique_ptr<Timer> SystemClock::atDate(Timestamp date, std::function<void()> fire)
{
    if (auto timer = DateTimer::make(date, fire))
        return timer;
    qCWarning(lcClock, "No wall-clock timer: %s", std::strerror(errno));
    const double left = std::clamp(date - now(), 0.0, 1e9);
    return singleShot(milliseconds(std::llround(std::ceil(left * 1000))), std::move(fire));
}

void SystemClock::after(milliseconds delay, QObject *context, std::function<void()> fire)
{
    // Owned by the context, so that it goes with it.
    new Deadlines(delay, 0ms, std::move(fire), context);
}

} // namespace orvelle
