#include "platform/freedesktop/DistantFileThreads.h"

#include "platform/freedesktop/InodeFileBookmarks.h"

#include <QFutureWatcher>
#include <QPromise>

namespace orvelle {

using namespace std::chrono_literals;

namespace {

constexpr int mostVolumes = 16;
constexpr auto lastLooks = 500ms;

} // namespace

DistantFileThreads::DistantFileThreads()
    : m_bookmarks(std::make_shared<InodeFileBookmarks>()), m_threads(mostVolumes, lastLooks)
{
}

DistantFileThreads::~DistantFileThreads() = default;

void DistantFileThreads::look(const QString &volume, QObject *receiver, const Look &look)
{
    m_waiting[volume].enqueue({receiver, look});
    if (m_waiting[volume].size() == 1)
        beginNext(volume);
}

void DistantFileThreads::beginNext(const QString &volume)
{
    const auto promise = std::make_shared<QPromise<Delivery>>();
    auto *watcher = new QFutureWatcher<Delivery>(&m_context);
    QObject::connect(watcher, &QFutureWatcher<Delivery>::finished, &m_context, [this, watcher, volume] {
        watcher->deleteLater();
        const Waiting done = m_waiting[volume].dequeue();
        if (m_waiting[volume].isEmpty())
            m_waiting.remove(volume);
        else
            beginNext(volume);
        const Delivery delivery = watcher->result();
        if (done.receiver && delivery)
            delivery();
    });
    promise->start();
    watcher->setFuture(promise->future());
    m_threads.run([promise, bookmarks = m_bookmarks, look = m_waiting[volume].head().look] {
        promise->addResult(look(*bookmarks));
        promise->finish();
    });
}

} // namespace orvelle
