#include "platform/freedesktop/webdav/WebDavContainer.h"

#include "platform/Clock.h"
#include "platform/freedesktop/webdav/WebDavFiles.h"
#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QRandomGenerator>
#include <QThreadPool>

#include <atomic>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

/// What the thread works with. Made and ended on the main thread.
class WebDavContainer::Worker
{
public:
    Worker(const WebDavSettings &settings, HttpClient &http, SecretStore &secrets, Clock &clock,
           const QString &cacheFolder, WebDavRequests::Random random)
        : requests(settings, http, secrets, clock, std::move(random)),
          copies(cacheFolder, webDavSecretAccount(settings)),
          session(requests),
          files(session, copies)
    {
        thread.setMaxThreadCount(1); // calls are done in their order
    }
    ~Worker()
    {
        isEnding = true;
        session.cancel();
        thread.waitForDone();
    }

    WebDavRequests requests;
    WebDavCopies copies;
    WebDavSession session;
    WebDavFiles files;
    std::atomic<bool> isEnding = false;
    QThreadPool thread;
};

WebDavContainer::WebDavContainer(const WebDavSettings &settings, HttpClient &http, SecretStore &secrets, Clock &clock,
                                 const QString &cacheFolder, WebDavRequests::Random random, QObject *parent)
    : CloudContainer(parent),
      m_settings(settings),
      m_clock(clock),
      m_isSafe(webdav::isSafeAddress(settings.folderUrl, settings.allowInsecure))
{
    if (!random)
        random = [] { return QRandomGenerator::global()->generateDouble(); };
    m_worker = std::make_unique<Worker>(settings, http, secrets, clock, cacheFolder, std::move(random));
}

WebDavContainer::~WebDavContainer() = default;

template<typename T>
void WebDavContainer::run(std::function<T(Worker &)> work, Done<T> done)
{
    Worker *worker = m_worker.get();
    worker->thread.start([this, worker, work = std::move(work), done = std::move(done)] {
        if (worker->isEnding)
            return;
        Result<T, CloudError> result = CloudError{};
        try {
            result = work(*worker);
        } catch (const CloudError &error) {
            result = error;
        } catch (const WebDavSession::Cancelled &) {
            return;
        }
        QMetaObject::invokeMethod(this, [this, done, result = std::move(result)] {
            // Who asked hears of it first: a place that goes away ends all that is under way.
            const QPointer alive(this);
            done(result);
            if (alive)
                noteAnswer(result ? nullptr : &result.error());
        });
    });
}

void WebDavContainer::credentialsChanged()
{
    m_worker->requests.forgive();
}

bool WebDavContainer::isAvailable() const
{
    return m_isSafe && m_answers;
}

QString WebDavContainer::displayPath(const QString &name) const
{
    QUrl url = webdav::folderAddress(m_settings.folderUrl);
    url.setPath(url.path(QUrl::FullyDecoded) + name, QUrl::DecodedMode);
    return url.toDisplayString();
}

WebDavContainer::Seen WebDavContainer::seen(const QString &name) const
{
    const auto known = m_seen.constFind(name);
    if (known != m_seen.constEnd())
        return *known;
    const auto copy = m_worker->copies.look(name);
    const Seen first = copy ? Seen{DownloadStatus::Current, copy->version, copy->modifiedAt} : Seen{};
    m_seen.insert(name, first);
    return first;
}

DownloadStatus WebDavContainer::downloadStatus(const QString &name) const
{
    return seen(name).status;
}

std::optional<Timestamp> WebDavContainer::modificationDate(const QString &name) const
{
    return seen(name).modifiedAt;
}

bool WebDavContainer::see(const QString &name, const Result<CloudFile, CloudError> &file)
{
    const Seen before = seen(name);
    if (file)
        m_seen[name] = {DownloadStatus::Current, file->version, file->modifiedAt};
    else if (file.error().kind == Kind::Missing)
        m_seen[name] = {};
    return seen(name) != before;
}

void WebDavContainer::read(const QString &name, Done<CloudFile> done)
{
    run<CloudFile>([name](Worker &worker) { return worker.files.read(name); },
                   [this, name, done = std::move(done)](const auto &file) {
                       const QPointer alive(this);
                       const bool news = see(name, file);
                       done(file);
                       if (alive && news)
                           emit changed();
                   });
}

void WebDavContainer::write(const QString &name, const QByteArray &bytes, const QByteArray &expected,
                            Done<CloudFile> done)
{
    run<CloudFile>([name, bytes, expected](Worker &worker) { return worker.files.write(name, bytes, expected); },
                   [this, name, done = std::move(done)](const auto &file) {
                       see(name, file);
                       done(file);
                   });
}

void WebDavContainer::look(const QString &name, std::function<void(bool)> then)
{
    run<CloudFile>([name](Worker &worker) { return worker.files.read(name); },
                   [this, name, then = std::move(then)](const auto &file) { then(see(name, file)); });
}

void WebDavContainer::startDownload(const QString &name)
{
    if (m_downloading.contains(name))
        return; // what was asked for is not here yet
    m_downloading.insert(name);
    look(name, [this, name](bool news) {
        m_downloading.remove(name);
        if (news)
            emit changed();
    });
}

Result<CloudContainer::Nothing, CloudError> WebDavContainer::evict(const QString &name)
{
    if (!m_worker->copies.drop(name))
        return CloudError{Kind::Missing, u"no copy here"_s};
    Seen known = seen(name);
    known.status = DownloadStatus::Placeholder;
    m_seen[name] = known;
    return Nothing{};
}

void WebDavContainer::readConflictCopies(const QString &, Done<QList<ConflictCopy>> done)
{
    QMetaObject::invokeMethod(
        this, [done = std::move(done)] { done(QList<ConflictCopy>()); }, Qt::QueuedConnection);
}

void WebDavContainer::archiveConflictCopy(const QString &, Done<Nothing> done)
{
    QMetaObject::invokeMethod(
        this,
        [done = std::move(done)] {
            done(CloudError{Kind::Missing, u"no copies are made here"_s});
        },
        Qt::QueuedConnection);
}

void WebDavContainer::startWatching(const QString &name)
{
    m_watched = name;
    look(name, [this, name, watch = ++m_watch](bool) {
        if (watch == m_watch && !m_watched.isEmpty())
            emit gathered(downloadStatus(name) == DownloadStatus::NotVisible ? 0 : 1);
    });
}

void WebDavContainer::stopWatching()
{
    m_watched.clear();
    m_retry.reset();
}

void WebDavContainer::test(Done<QString> done)
{
    m_worker->requests.forgive();
    run<QString>([](Worker &worker) { return worker.files.test(); }, std::move(done));
}

void WebDavContainer::noteAnswer(const CloudError *error)
{
    const bool unreachable = error && (error->kind == Kind::Unavailable || error->kind == Kind::TimedOut);
    if (unreachable)
        retryLater(*error);
    else
        m_retry.reset();
    if (m_answers == !unreachable)
        return;
    m_answers = !unreachable;
    emit availabilityChanged();
}

void WebDavContainer::retryLater(const CloudError &error)
{
    if (m_watched.isEmpty() || !m_isSafe)
        return;
    constexpr std::chrono::seconds usual(30);
    m_retry = m_clock.singleShot(error.retryAfter.value_or(usual), [this] { startDownload(m_watched); });
}

} // namespace orvelle
