#include "platform/freedesktop/ThreadSampler.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <semaphore>

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;
using First = BackgroundSampler::First;

template<typename Condition>
bool eventsUntil(const Condition &condition)
{
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 5000;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return condition();
}

TEST(ThreadSampler, ReadsBesideTheMainThreadAndDeliversOnIt)
{
    ThreadSampler sampler;
    std::vector<double> times;
    QThread *reader = nullptr;
    QThread *receiver = nullptr;
    const auto timer = sampler.every(40ms, First::AtOnce, [&](double seconds) -> BackgroundSampler::Deliver {
        reader = QThread::currentThread();
        return [&, seconds] {
            receiver = QThread::currentThread();
            times.push_back(seconds);
        };
    });
    EXPECT_TRUE(times.empty()) << "from inside the call";
    ASSERT_TRUE(eventsUntil([&] { return times.size() >= 4; }));
    EXPECT_EQ(receiver, QThread::currentThread());
    EXPECT_NE(reader, receiver);
    // On a busy machine a reading is late now and then.
    const auto isOnGrid = [](double time) { return std::fmod(time + 1e-9, 0.04) < 0.005; };
    EXPECT_TRUE(eventsUntil([&] { return std::ranges::count_if(times, isOnGrid) >= 3; }));
}

TEST(ThreadSampler, JobsOfOnePaceAreDoneTogether)
{
    ThreadSampler sampler;
    std::atomic<int> running = 0;
    std::vector<double> times[2];
    std::vector<std::unique_ptr<Timer>> timers;
    for (auto &list : times) {
        timers.push_back(sampler.every(60ms, First::Later, [&](double seconds) -> BackgroundSampler::Deliver {
            EXPECT_EQ(running++, 0) << "one at a time";
            running--;
            return [&list, seconds] { list.push_back(seconds); };
        }));
        QThread::msleep(15);
    }
    ASSERT_TRUE(eventsUntil([&] { return times[0].size() >= 4 && times[1].size() >= 4; }));
    int together = 0;
    for (const double time : times[0])
        together += std::ranges::count_if(times[1], [time](double other) { return std::abs(other - time) < 0.005; });
    EXPECT_GE(together, 3);
}

TEST(ThreadSampler, AResultOnItsWayIsDroppedWithItsTimer)
{
    ThreadSampler sampler;
    std::binary_semaphore read{0};
    int delivered = 0;
    int others = 0;
    auto timer = sampler.every(10ms, First::AtOnce, [&](double) -> BackgroundSampler::Deliver {
        read.release();
        return [&] { ++delivered; };
    });
    read.acquire();
    timer.reset();
    const auto other = sampler.every(10ms, First::AtOnce, [&](double) { return [&] { ++others; }; });
    ASSERT_TRUE(eventsUntil([&] { return others >= 3; }));
    EXPECT_EQ(delivered, 0);
}

TEST(ThreadSampler, EndsAfterTheJobThatRuns)
{
    std::binary_semaphore begun{0};
    std::atomic<bool> ended = false;
    int delivered = 0;
    {
        ThreadSampler sampler;
        const auto timer = sampler.every(1h, First::AtOnce, [&](double) -> BackgroundSampler::Deliver {
            begun.release();
            QThread::msleep(30);
            ended = true;
            return [&] { ++delivered; };
        });
        begun.acquire();
    }
    EXPECT_TRUE(ended);
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
}

} // namespace
} // namespace orvelle::test
