#pragma once

#include "platform/BackgroundSampler.h"

#include <QObject>
#include <QSet>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace orvelle {

/// A BackgroundSampler on a thread that is started with the first job. It
/// sleeps until something falls due; its times lie on multiples of the period,
/// so that jobs of the same pace are always done together.
class ThreadSampler : public BackgroundSampler
{
public:
    ThreadSampler() = default;
    /// Waits for a job that is running.
    ~ThreadSampler() override;

    std::unique_ptr<Timer> every(std::chrono::milliseconds period, First first, Job job) override;

private:
    using Steady = std::chrono::steady_clock;
    struct Entry {
        quint64 id = 0;
        std::chrono::milliseconds period;
        Steady::time_point due;
        Job job;
    };
    struct Result {
        quint64 id = 0;
        Deliver deliver;
    };
    class Handle;

    void run();
    void runDue(std::unique_lock<std::mutex> &lock);
    std::vector<Entry> takeDue();
    void handOver(std::vector<Result> results);
    void remove(quint64 id);

    QObject m_mainThread; ///< results are delivered in its thread
    QSet<quint64> m_live; ///< ids with a timer; main thread only
    quint64 m_lastId = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Entry> m_entries; ///< under the mutex, as is what follows
    bool m_ends = false;
    std::thread m_thread;
};

} // namespace orvelle
