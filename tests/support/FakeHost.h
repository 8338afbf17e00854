#pragma once

#include "platform/BackgroundSampler.h"
#include "platform/DesktopNotifications.h"
#include "platform/HostStatistics.h"
#include "platform/NetworkCounters.h"
#include "platform/Sounds.h"
#include "support/FakeClock.h"

#include <QMap>
#include <QStringList>

namespace orvelle::test {

/// Samples by a fake clock, on the test's own thread.
class FakeSampler : public BackgroundSampler
{
public:
    explicit FakeSampler(FakeClock &clock) : m_clock(clock) {}

    int samples = 0;
    /// Results stay on their way until deliver().
    bool slow = false;

    std::unique_ptr<Timer> every(std::chrono::milliseconds period, First first, Job job) override
    {
        auto timer = std::make_unique<Entry>();
        timer->alive = std::make_shared<bool>(true);
        const auto run = [this, job = std::move(job), alive = std::weak_ptr(timer->alive)] { sample(job, alive); };
        if (first == First::AtOnce)
            timer->first = m_clock.singleShot(std::chrono::milliseconds(0), run);
        timer->repeating = m_clock.repeating(period, run);
        return timer;
    }

    void deliver()
    {
        for (const auto &[alive, handOver] : std::exchange(m_onTheirWay, {})) {
            if (!alive.expired() && handOver)
                handOver();
        }
    }

private:
    struct Entry : Timer {
        std::shared_ptr<bool> alive;
        std::unique_ptr<Timer> first;
        std::unique_ptr<Timer> repeating;
    };

    void sample(const Job &job, const std::weak_ptr<bool> &alive)
    {
        ++samples;
        m_onTheirWay.emplace_back(alive, job(m_clock.runningTime()));
        if (!slow)
            deliver();
    }

    FakeClock &m_clock;
    std::vector<std::pair<std::weak_ptr<bool>, Deliver>> m_onTheirWay;
};

class FakeHostStatistics : public HostStatistics
{
public:
    CpuTicks ticks;
    Capacity ram;
    Capacity disk;
    int failure = 0; ///< what every reading fails with; 0: none

    Result<CpuTicks, int> cpuTicks() const override { return answer(ticks); }
    Result<Capacity, int> memory() const override { return answer(ram); }
    Result<Capacity, int> volume(const QString &path) const override
    {
        return path == u"/" ? answer(disk) : Result<Capacity, int>(2);
    }

private:
    template<typename T>
    Result<T, int> answer(const T &value) const
    {
        if (failure != 0)
            return failure;
        return value;
    }
};

class FakeNetworkCounters : public NetworkCounters
{
public:
    NetworkReading reading;
    bool fails = false;

    Result<NetworkReading, int> read() override
    {
        if (fails)
            return 1;
        return reading;
    }
};

class FakeSounds : public Sounds
{
public:
    int alarms = 0;

    void playAlarm() override { ++alarms; }
};

class FakeDesktopNotifications : public DesktopNotifications
{
public:
    QMap<QString, Message> shown;

    void show(const QString &tag, const Message &message) override { shown.insert(tag, message); }
    void withdraw(const QString &tag) override { shown.remove(tag); }
};

} // namespace orvelle::test
