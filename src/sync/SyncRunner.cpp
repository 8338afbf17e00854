#include "sync/SyncRunner.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace orvelle {

namespace {

class ThreadSyncRunner : public SyncRunner
{
public:
    ThreadSyncRunner() { m_pool.setMaxThreadCount(1); }

    void run(std::function<void()> work, QObject *context, std::function<void()> done) override
    {
        m_pool.start([this, work = std::move(work), guard = QPointer<QObject>(context), done = std::move(done)] {
            work();
            // Through an object of the main thread, where alone the guard may
            // be looked at.
            QMetaObject::invokeMethod(
                &m_mainThread,
                [guard, done] {
                    if (guard)
                        done();
                },
                Qt::QueuedConnection);
        });
    }

private:
    QObject m_mainThread;
    QThreadPool m_pool; ///< goes first, and waits
};

} // namespace

std::unique_ptr<SyncRunner> makeThreadSyncRunner()
{
    return std::make_unique<ThreadSyncRunner>();
}

} // namespace orvelle
