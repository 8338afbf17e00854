#include "widgets/MonitorSchedule.h"

#include "platform/PowerEvents.h"

namespace orvelle {

MonitorSchedule::MonitorSchedule(BackgroundSampler &sampler, const PowerEvents &powerEvents, JobFactory makeJob,
                                 QObject *parent)
    : QObject(parent), m_sampler(sampler), m_makeJob(std::move(makeJob))
{
    connect(&powerEvents, &PowerEvents::screensDidSleep, this, [this] { setScreensAsleep(true); });
    connect(&powerEvents, &PowerEvents::screensDidWake, this, [this] { setScreensAsleep(false); });
}

void MonitorSchedule::start()
{
    m_on = true;
    m_job = m_makeJob();
    arm(BackgroundSampler::First::AtOnce);
}

void MonitorSchedule::stop()
{
    m_on = false;
    m_timer.reset();
}

void MonitorSchedule::startLive(bool sampleAtOnce)
{
    if (!std::exchange(m_live, true))
        arm(sampleAtOnce ? BackgroundSampler::First::AtOnce : BackgroundSampler::First::Later);
}

void MonitorSchedule::stopLive()
{
    if (std::exchange(m_live, false))
        arm(BackgroundSampler::First::Later);
}

void MonitorSchedule::setScreensAsleep(bool asleep)
{
    if (std::exchange(m_screensAsleep, asleep) == asleep || !m_on)
        return;
    if (asleep)
        m_timer.reset();
    else
        start();
}

void MonitorSchedule::arm(BackgroundSampler::First first)
{
    m_timer.reset();
    if (m_on && !m_screensAsleep)
        m_timer = m_sampler.every(m_live ? livePeriod : period, first, m_job);
}

} // namespace orvelle
