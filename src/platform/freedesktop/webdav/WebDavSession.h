#pragma once

#include "platform/freedesktop/webdav/WebDavRequests.h"

#include <condition_variable>
#include <mutex>

namespace orvelle {

/// Lets code on a worker thread talk to the server in straight lines: each
/// call waits for the main thread to do its part. All but the constructor and
/// cancel() are for the worker.
///
/// Failures come as a thrown CloudError, the end of the container as a thrown
/// Cancelled; both are caught where the worker's work begins.
class WebDavSession
{
public:
    struct Cancelled {
    };

    explicit WebDavSession(WebDavRequests &requests) : m_requests(requests) {}

    /// Main thread: whoever waits is let go, and nobody waits again.
    void cancel();

    HttpResponse send(const WebDavRequest &request);
    /// Throws while nothing may be written, so that what precedes a write is not sent in vain.
    void checkWrites();
    void wait(std::chrono::milliseconds time);
    void holdLock(const QString &name, const QByteArray &token, std::chrono::seconds period);
    void releaseLock();

    enum class Tags {
        AsTheyAre,
        Strong, ///< an answer with a weak tag is asked for again until its file has settled, for a few seconds
    };
    /// The whole file; absent when there is none. `known` is a strong tag: the
    /// answer's status is 304 if the file still has it.
    std::optional<HttpResponse> fetch(const QString &name, const QByteArray &known, Tags tags);
    /// The strong tag of what is there, if it is `length` bytes long; waits for
    /// the file to settle. Empty when there is none.
    QByteArray tagOf(const QString &name, qsizetype length, std::optional<Timestamp> &modified);
    /// Makes the folder if its parent is there.
    void makeFolder();

private:
    template<typename T>
    T ask(std::function<void(std::function<void(const T &)>)> start);
    void post(std::function<void()> what);

    WebDavRequests &m_requests;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_cancelled = false;
    bool m_tagsStayWeak = false;
};

} // namespace orvelle
