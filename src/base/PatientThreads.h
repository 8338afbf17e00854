#pragma once

#include <QThreadPool>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

/// Threads for work that others can hold up: a network disk that is gone, a
/// service that does not answer. Begins with the first piece of work. Main
/// thread, but for the work.
class PatientThreads
{
public:
    /// In bytes, for a thread that reads files: enough for the deepest nesting
    /// that the libraries used accept, whatever the system's own size is.
    static constexpr unsigned stackSize = 16U << 20;

    /// At most `most` pieces of work at once; more wait for their turn.
    explicit PatientThreads(int most, std::chrono::milliseconds patience = std::chrono::seconds(2));
    /// Waits `patience` for what was given to it. What hangs longer is left to
    /// itself, so work may use only what it holds.
    ~PatientThreads();
    Q_DISABLE_COPY_MOVE(PatientThreads)

    void run(std::function<void()> work);
    /// For as long as it takes.
    void waitForAll() { m_pool->waitForDone(); }

private:
    std::unique_ptr<QThreadPool> m_pool;
    std::chrono::milliseconds m_patience;
};

} // namespace orvelle
