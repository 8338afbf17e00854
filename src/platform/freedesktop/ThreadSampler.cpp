#include "platform/freedesktop/ThreadSampler.h"

#include <algorithm>

namespace orvelle {

class ThreadSampler::Handle : public Timer
{
public:
    Handle(ThreadSampler &sampler, quint64 id) : m_sampler(sampler), m_id(id) {}
    ~Handle() override { m_sampler.remove(m_id); }

private:
    ThreadSampler &m_sampler;
    quint64 m_id;
};

namespace {

using Steady = std::chrono::steady_clock;

/// The first multiple of the period that is at least half a period away.
Steady::time_point nextOnGrid(Steady::time_point now, std::chrono::milliseconds period)
{
    const auto earliest = (now + period / 2).time_since_epoch();
    const Steady::duration step = period;
    return Steady::time_point((earliest + step - Steady::duration(1)) / step * step);
}

double secondsOf(Steady::time_point time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

} // namespace

ThreadSampler::~ThreadSampler()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
    }
    m_changed.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

std::unique_ptr<Timer> ThreadSampler::every(std::chrono::milliseconds period, First first, Job job)
{
    const quint64 id = ++m_lastId;
    const auto now = Steady::now();
    m_live.insert(id);
    {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back({id, period, first == First::AtOnce ? now : nextOnGrid(now, period), std::move(job)});
    }
    if (!m_thread.joinable())
        m_thread = std::thread([this] { run(); });
    m_changed.notify_one();
    return std::make_unique<Handle>(*this, id);
}

void ThreadSampler::remove(quint64 id)
{
    m_live.remove(id);
    // No need to wake the thread: it finds out at the time it had in mind.
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_entries, [id](const Entry &each) { return each.id == id; });
}

void ThreadSampler::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_ends) {
        const auto next = std::ranges::min_element(m_entries, {}, &Entry::due);
        if (next == m_entries.end())
            m_changed.wait(lock);
        else if (next->due > Steady::now())
            m_changed.wait_until(lock, Steady::time_point(next->due));
        else
            runDue(lock);
    }
}

std::vector<ThreadSampler::Entry> ThreadSampler::takeDue()
{
    std::vector<Entry> due;
    const auto now = Steady::now();
    for (Entry &each : m_entries) {
        if (each.due > now)
            continue;
        each.due = nextOnGrid(now, each.period);
        due.push_back(each);
    }
    return due;
}

void ThreadSampler::runDue(std::unique_lock<std::mutex> &lock)
{
    std::vector<Entry> due = takeDue();
    lock.unlock();
    std::vector<Result> results;
    for (const Entry &each : due) {
        if (Deliver deliver = each.job(secondsOf(Steady::now())))
            results.push_back({each.id, std::move(deliver)});
    }
    due.clear(); // what the jobs own may end here
    if (!results.empty())
        handOver(std::move(results));
    lock.lock();
}

void ThreadSampler::handOver(std::vector<Result> results)
{
    QMetaObject::invokeMethod(
        &m_mainThread,
        [this, results = std::move(results)] {
            for (const Result &each : results) {
                if (m_live.contains(each.id))
                    each.deliver();
            }
        },
        Qt::QueuedConnection);
}

} // namespace orvelle
