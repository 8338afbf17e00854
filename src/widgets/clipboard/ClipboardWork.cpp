#include "widgets/clipboard/ClipboardWork.h"

namespace orvelle {

using namespace std::chrono_literals;

ClipboardWork::ClipboardWork()
{
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(std::chrono::milliseconds(5s).count());
}

ClipboardWork::~ClipboardWork()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void ClipboardWork::find(QObject *context, std::function<Found()> job, std::function<void(Found)> done)
{
    const QPointer<QObject> guard(context);
    m_pool.start([this, guard, job = std::move(job), done = std::move(done)] {
        Found found = job();
        QMetaObject::invokeMethod(
            this,
            [guard, done, found = std::move(found)] {
                if (guard)
                    done(found);
                else if (found)
                    found->payload.cleanup();
            },
            Qt::QueuedConnection);
    });
}

void ClipboardWork::load(QObject *context, std::function<Forms()> job, std::function<void(Forms)> done)
{
    const QPointer<QObject> guard(context);
    m_pool.start([this, guard, job = std::move(job), done = std::move(done)] {
        QMetaObject::invokeMethod(
            this,
            [guard, done, forms = job()] {
                if (guard)
                    done(forms);
            },
            Qt::QueuedConnection);
    });
}

} // namespace orvelle
