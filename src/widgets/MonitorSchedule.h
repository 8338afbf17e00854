#pragma once

#include "platform/BackgroundSampler.h"

#include <QObject>

#include <utility>

namespace orvelle {

class PowerEvents;

/// Lets a failure that comes with every sample be said once, until it has ended.
class FailureNotice
{
public:
    /// Whether this is the first of its kind.
    bool begins(bool fails) { return !std::exchange(m_fails, fails) && fails; }

private:
    bool m_fails = false;
};

/// When a widget that watches the machine samples: every 5 seconds while it is
/// on, every second while the menu is open, not at all while the screens are
/// dark or locked. Main thread.
class MonitorSchedule : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds period{5000};
    static constexpr std::chrono::milliseconds livePeriod{1000};

    /// Makes the job for a stretch of sampling, free of what an earlier stretch
    /// has left. A stretch goes on when only the pace changes.
    using JobFactory = std::function<BackgroundSampler::Job()>;

    MonitorSchedule(BackgroundSampler &sampler, const PowerEvents &powerEvents, JobFactory makeJob,
                    QObject *parent = nullptr);

    /// Begins a new stretch with a sample at once.
    void start();
    void stop();
    /// With `sampleAtOnce` the quicker pace begins with a sample.
    void startLive(bool sampleAtOnce);
    void stopLive();

private:
    void setScreensAsleep(bool asleep);
    void arm(BackgroundSampler::First first);

    BackgroundSampler &m_sampler;
    JobFactory m_makeJob;
    BackgroundSampler::Job m_job;
    std::unique_ptr<Timer> m_timer;
    bool m_on = false;
    bool m_live = false;
    bool m_screensAsleep = false;
};

} // namespace orvelle
