#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

/// How work on another thread waits.
class WorkerTime
{
public:
    virtual ~WorkerTime() = default;
    /// Since some moment in the past; goes on while the machine sleeps and is
    /// not set by anybody.
    virtual std::chrono::milliseconds now() const = 0;
    /// False when nobody waits for the work any more: give it up.
    [[nodiscard]] virtual bool pause(std::chrono::milliseconds time) = 0;
};

/// A thread of its own for work that may block for long, one job after the
/// other in the order in which they came. Main thread, but for the jobs.
class SerialWorker
{
public:
    /// What is to be done with the outcome, on the main thread from the event loop.
    using Delivery = std::function<void()>;
    using Job = std::function<Delivery()>;

    /// Deliveries come through `receiver`, and none once this is gone.
    explicit SerialWorker(QObject *receiver);
    /// Forgets the jobs not begun and waits a while for the one under way. If
    /// it hangs (a network file system that does not answer) it is left to
    /// itself, so it may use only what it holds.
    ~SerialWorker();
    SerialWorker(const SerialWorker &) = delete;
    SerialWorker &operator=(const SerialWorker &) = delete;

    void run(Job job);
    std::shared_ptr<WorkerTime> time() const;

private:
    class State;
    std::shared_ptr<State> m_state;
};

} // namespace orvelle
