#include "platform/freedesktop/SerialWorker.h"

#include <condition_variable>
#include <ctime>
#include <deque>
#include <mutex>
#include <thread>

namespace orvelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestFarewell = 3s;

} // namespace

class SerialWorker::State : public WorkerTime
{
public:
    explicit State(QObject *forReceiver) : receiver(forReceiver) {}

    std::chrono::milliseconds now() const override
    {
        timespec time{};
        ::clock_gettime(CLOCK_BOOTTIME, &time);
        return std::chrono::milliseconds(qint64(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000);
    }
    bool pause(std::chrono::milliseconds time) override
    {
        std::unique_lock lock(mutex);
        return !wake.wait_for(lock, time, [this] { return !receiver; });
    }
    void work()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return !receiver || !jobs.empty(); });
            if (!receiver)
                break;
            Job job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            Delivery delivery = job();
            job = {};
            lock.lock();
            if (receiver && delivery)
                QMetaObject::invokeMethod(receiver, std::move(delivery), Qt::QueuedConnection);
        }
        ended = true;
        wake.notify_all();
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Job> jobs;
    QObject *receiver; ///< null when all is over
    bool ended = true; ///< no thread runs
    std::thread thread;
};

SerialWorker::SerialWorker(QObject *receiver) : m_state(std::make_shared<State>(receiver)) {}

SerialWorker::~SerialWorker()
{
    std::deque<Job> forgotten;
    bool ended = false;
    {
        std::unique_lock lock(m_state->mutex);
        m_state->receiver = nullptr;
        forgotten.swap(m_state->jobs);
        m_state->wake.notify_all();
        ended = m_state->wake.wait_for(lock, longestFarewell, [this] { return m_state->ended; });
    }
    if (!m_state->thread.joinable())
        return;
    if (ended)
        m_state->thread.join();
    else
        m_state->thread.detach();
}

void SerialWorker::run(Job job)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->jobs.push_back(std::move(job));
    if (!m_state->thread.joinable()) {
        m_state->ended = false;
        m_state->thread = std::thread([state = m_state] { state->work(); });
    }
    m_state->wake.notify_all();
}

std::shared_ptr<WorkerTime> SerialWorker::time() const
{
    return m_state;
}

} // namespace orvelle
