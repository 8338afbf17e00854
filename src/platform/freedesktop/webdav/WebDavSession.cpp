#include "platform/freedesktop/webdav/WebDavSession.h"

#include "platform/Clock.h"
#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QMetaObject>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

namespace {

/// Servers give weak tags for what changed within the last second, as a second
/// change within the same tick would go unnoticed.
constexpr std::chrono::milliseconds settling(1100);
constexpr int settlingTries = 3;

bool isMissing(const HttpResponse &answer)
{
    return answer.status == 404 || answer.status == 410;
}

void checkDocument(const HttpResponse &answer)
{
    const QString status = u"status %1"_s.arg(answer.status);
    if (answer.status == 304)
        return;
    if (answer.status != 200)
        throw CloudError{Kind::Io, status};
    if (webdav::isPage(answer))
        throw CloudError{Kind::NotADocument, u"a page for people"_s};
    const QByteArray encoding = answer.header("Content-Encoding").trimmed().toLower();
    if (!encoding.isEmpty() && encoding != "identity")
        throw CloudError{Kind::NotADocument, u"compressed against our wish"_s};
}

} // namespace

void WebDavSession::cancel()
{
    {
        const std::lock_guard lock(m_mutex);
        m_cancelled = true;
    }
    m_wake.notify_all();
}

void WebDavSession::post(std::function<void()> what)
{
    QMetaObject::invokeMethod(&m_requests, std::move(what), Qt::QueuedConnection);
}

template<typename T>
T WebDavSession::ask(std::function<void(std::function<void(const T &)>)> start)
{
    auto answer = std::make_shared<std::optional<T>>();
    post([this, answer, start = std::move(start)] {
        start([this, answer](const T &value) {
            {
                const std::lock_guard lock(m_mutex);
                answer->emplace(value);
            }
            m_wake.notify_all();
        });
    });
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [&] { return m_cancelled || answer->has_value(); });
    if (m_cancelled)
        throw Cancelled{};
    return **answer;
}

HttpResponse WebDavSession::send(const WebDavRequest &request)
{
    using Answer = Result<HttpResponse, CloudError>;
    const auto answer = ask<Answer>([this, request](auto done) { m_requests.send(request, done); });
    if (!answer)
        throw CloudError(answer.error());
    return *answer;
}

void WebDavSession::checkWrites()
{
    using Reason = std::optional<CloudError>;
    if (const Reason why = ask<Reason>([this](auto done) { done(m_requests.writesPaused()); }))
        throw CloudError(*why);
}

void WebDavSession::wait(std::chrono::milliseconds time)
{
    ask<bool>([this, time](auto done) { m_requests.clock().after(time, &m_requests, [done] { done(true); }); });
}

void WebDavSession::holdLock(const QString &name, const QByteArray &token, std::chrono::seconds period)
{
    post([this, name, token, period] { m_requests.holdLock(name, token, period); });
}

void WebDavSession::releaseLock()
{
    post([this] { m_requests.releaseLock(); });
}

std::optional<HttpResponse> WebDavSession::fetch(const QString &name, const QByteArray &known, Tags tags)
{
    WebDavRequest get{.method = "GET", .name = name};
    if (!known.isEmpty())
        get.headers.emplaceBack("If-None-Match", known);
    for (int tries = 1;; ++tries) {
        const HttpResponse answer = send(get);
        if (isMissing(answer))
            return std::nullopt;
        checkDocument(answer);
        if (tags == Tags::AsTheyAre || !webdav::hasWeakTag(answer) || m_tagsStayWeak || answer.status == 304)
            return answer;
        if (tries == settlingTries) {
            m_tagsStayWeak = true; // such are all of them here
            return answer;
        }
        wait(settling);
    }
}

QByteArray WebDavSession::tagOf(const QString &name, qsizetype length, std::optional<Timestamp> &modified)
{
    for (int tries = 1; tries <= settlingTries; ++tries) {
        const HttpResponse answer = send({.method = "HEAD", .name = name});
        if (answer.status != 200 || answer.header("Content-Length").toLongLong() != length)
            return {};
        modified = webdav::modifiedAt(answer);
        if (!webdav::hasWeakTag(answer) || m_tagsStayWeak)
            return webdav::strongTag(answer);
        if (tries < settlingTries)
            wait(settling);
    }
    m_tagsStayWeak = true;
    return {};
}

void WebDavSession::makeFolder()
{
    const HttpResponse answer = send({.method = "MKCOL"});
    constexpr int isThereAlready = 405;
    if (answer.status >= 300 && answer.status != isThereAlready)
        throw CloudError{Kind::Missing, u"the folder cannot be made, status %1"_s.arg(answer.status)};
}

} // namespace orvelle
