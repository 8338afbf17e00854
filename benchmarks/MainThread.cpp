#include "MainThread.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <ctime>

namespace orvelle::bench {

double threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

bool WatchedApplication::notify(QObject *receiver, QEvent *event)
{
    if (QThread::currentThread() != thread() || m_depth > 0)
        return QCoreApplication::notify(receiver, event);
    bool result = false;
    measure([&] { result = QCoreApplication::notify(receiver, event); });
    return result;
}

void WatchedApplication::measure(const std::function<void()> &work)
{
    const double before = threadMilliseconds();
    ++m_depth;
    work();
    --m_depth;
    const double took = threadMilliseconds() - before;
    m_longest = std::max(m_longest, took);
    if (qEnvironmentVariableIsSet("ORVELLE_BENCH_TRACE") && took > 5)
        fprintf(stderr, "  stretch %.1f ms\n", took);
}

void WatchedApplication::await(const std::function<bool()> &condition, const char *what)
{
    constexpr qint64 patience = 120'000;
    QElapsedTimer timer;
    for (timer.start(); !condition();) {
        if (timer.elapsed() > patience)
            qFatal("waited in vain: %s", what);
        processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 200);
    }
}

} // namespace orvelle::bench
