#include "platform/freedesktop/SystemClock.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <optional>
#include <thread>
#include <vector>

namespace orvelle::test {

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

void runEventsUntil(const std::function<bool()> &condition, qint64 longest = 5000)
{
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < longest;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
}

} // namespace

TEST(SystemClock, timersAreNeverEarlyAndHardlyLate)
{
    SystemClock clock;
    struct Run {
        milliseconds delay;
        QElapsedTimer sinceStart;
        qint64 firedAfter = -1;
    };
    std::vector<Run> runs;
    for (const milliseconds delay : {0ms, 1ms, 7ms, 39ms, 99ms, 480ms, 999ms, 1000ms, 1007ms, 1260ms})
        runs.push_back({delay, {}});
    std::vector<std::unique_ptr<Timer>> timers;
    for (Run &run : runs) {
        run.sinceStart.start();
        timers.push_back(clock.singleShot(run.delay, [&run] { run.firedAfter = run.sinceStart.nsecsElapsed(); }));
        EXPECT_EQ(run.firedAfter, -1) << "from inside the call";
    }
    runEventsUntil(
        [&] { return std::all_of(runs.begin(), runs.end(), [](const Run &run) { return run.firedAfter >= 0; }); });
    for (const Run &run : runs) {
        EXPECT_GE(run.firedAfter, std::chrono::nanoseconds(run.delay).count()) << run.delay.count();
        EXPECT_LE(run.firedAfter, std::chrono::nanoseconds(run.delay * 11 / 10 + 500ms).count()) << run.delay.count();
    }
}

TEST(SystemClock, aTimerEndsWithItsHandleEvenFromInsideItself)
{
    SystemClock clock;
    int cancelled = 0;
    int ended = 0;
    (void)clock.singleShot(0ms, [&] { ++cancelled; });
    std::unique_ptr<Timer> timer;
    timer = clock.repeating(1ms, [&] {
        if (++ended == 3)
            timer.reset();
    });
    bool later = false;
    const auto end = clock.singleShot(40ms, [&] { later = true; });
    runEventsUntil([&] { return later; });
    EXPECT_EQ(cancelled, 0);
    EXPECT_EQ(ended, 3);
}

TEST(SystemClock, afterRunsOnlyWhileItsContextLives)
{
    SystemClock clock;
    auto dies = std::make_unique<QObject>();
    QObject lives;
    QStringList ran;
    clock.after(5ms, dies.get(), [&] { ran += QStringLiteral("dead"); });
    clock.after(10ms, &lives, [&] { ran += QStringLiteral("alive"); });
    dies.reset();
    bool later = false;
    const auto end = clock.singleShot(40ms, [&] { later = true; });
    runEventsUntil([&] { return later; });
    EXPECT_EQ(ran, QStringList{QStringLiteral("alive")});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(lives.children().isEmpty()) << "a timer left behind";
}

TEST(SystemClock, missedTicksAreDropped)
{
    SystemClock clock;
    int ticks = 0;
    QElapsedTimer sinceStart;
    sinceStart.start();
    const auto timer = clock.repeating(20ms, [&] {
        if (++ticks == 1)
            std::this_thread::sleep_for(110ms); // an event loop that is held up
    });
    runEventsUntil([&] { return ticks == 3; });
    EXPECT_GE(sinceStart.elapsed(), 140) << "one late tick, and the next on the grid";
}

TEST(SystemClock, nowIsTheWallClockWithFractionsOfAMillisecond)
{
    const SystemClock clock;
    timespec system = {};
    ::clock_gettime(CLOCK_REALTIME, &system);
    const double expected =
        static_cast<double>(system.tv_sec) - 978307200.0 + static_cast<double>(system.tv_nsec) / 1e9;
    EXPECT_NEAR(clock.now().seconds, expected, 0.5);
    int fractions = 0;
    for (int i = 0; i < 20; ++i) {
        const double ms = clock.now().seconds * 1000;
        fractions += std::abs(ms - std::round(ms)) > 0.001;
    }
    EXPECT_GT(fractions, 10);
}

TEST(SystemClock, aDateIsMetNeverEarlyAndNearly)
{
    SystemClock clock;
    struct Run {
        double ahead;
        std::optional<double> late;
    };
    std::vector<Run> runs;
    for (const double ahead : {-1e12, -5.0, 0.0, 0.02, 0.333})
        runs.push_back({ahead, {}});
    std::vector<std::unique_ptr<Timer>> timers;
    for (Run &run : runs) {
        const Timestamp date = clock.now() + run.ahead;
        timers.push_back(clock.atDate(date, [&run, date, &clock] { run.late = clock.now() - date; }));
        EXPECT_FALSE(run.late) << "from inside the call";
    }
    bool farFired = false;
    const auto far = clock.atDate(Timestamp{1e15}, [&] { farFired = true; });
    runEventsUntil([&] { return std::ranges::all_of(runs, [](const Run &run) { return run.late.has_value(); }); });
    for (const Run &run : runs) {
        EXPECT_GE(run.late.value_or(-1), 0) << run.ahead;
        EXPECT_LE(run.late.value_or(1e9) + std::min(run.ahead, 0.0), 0.4) << run.ahead;
    }
    EXPECT_FALSE(farFired);
}

TEST(SystemClock, aDateTimerEndsWithItsHandleEvenFromInsideItself)
{
    SystemClock clock;
    int cancelled = 0;
    int ended = 0;
    (void)clock.atDate(clock.now(), [&] { ++cancelled; });
    std::unique_ptr<Timer> timer;
    timer = clock.atDate(clock.now() + 0.01, [&] {
        timer.reset();
        ++ended;
    });
    runEventsUntil([&] { return ended > 0; });
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(cancelled, 0);
}

} // namespace orvelle::test
