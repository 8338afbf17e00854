#include "platform/freedesktop/webdav/WebDavRequests.h"

#include "platform/Clock.h"
#include "platform/SecretStore.h"
#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcWebDav, "WebDav", QtInfoMsg)

constexpr double firstPauseSeconds = 2;
constexpr double longestPauseSeconds = 300;
constexpr double refusalSeconds = 3600;
constexpr qint64 answerBytes = qint64(1) << 20; // of everything but a document

bool isRead(const WebDavRequest &request)
{
    return request.method == "GET" || request.method == "HEAD" || request.method == "OPTIONS";
}

/// What was taken up is given back also where nothing may be written: a lock
/// that stays keeps every other machine out.
bool givesBack(const WebDavRequest &request)
{
    return request.method == "UNLOCK" || request.method == "DELETE";
}

HttpRequest toHttp(const WebDavRequest &request, const QUrl &url)
{
    HttpRequest http{.url = url, .method = request.method, .headers = request.headers, .body = request.body};
    http.idleTimeout = std::chrono::seconds(20);
    http.totalTimeout = std::chrono::minutes(10); // a large document over a slow line
    http.maxBytes = request.method == "GET" ? CloudContainer::maxFileBytes : answerBytes;
    http.redirectsMayLeaveHost = false;
    // Servers that compress give the result another tag, which no condition of a write then meets.
    http.headers.emplaceBack("Accept-Encoding", "identity");
    http.headers.emplaceBack("Cache-Control", "no-cache");
    if (request.method == "PUT")
        http.headers.emplaceBack("Content-Type", "application/octet-stream");
    return http;
}

CloudError noSecret(const SecretError &error)
{
    return {Kind::NoSecretStore, u"keyring "_s + error.detail};
}

} // namespace

QString webDavSecretAccount(const WebDavSettings &settings)
{
    return settings.user + u' ' + webdav::folderAddress(settings.folderUrl).toString(QUrl::FullyEncoded);
}

WebDavRequests::WebDavRequests(const WebDavSettings &settings, HttpClient &http, SecretStore &secrets, Clock &clock,
                               Random random)
    : m_settings(settings), m_http(http), m_secrets(secrets), m_clock(clock), m_random(std::move(random))
{
    m_settings.folderUrl = webdav::folderAddress(settings.folderUrl);
}

WebDavRequests::~WebDavRequests() = default;

QUrl WebDavRequests::urlOf(const QString &name) const
{
    QUrl url = m_settings.folderUrl;
    if (!name.isEmpty())
        url.setPath(url.path(QUrl::FullyDecoded) + name, QUrl::DecodedMode);
    return url;
}

void WebDavRequests::send(const WebDavRequest &request, Done done)
{
    if (!webdav::isSafeAddress(m_settings.folderUrl, m_settings.allowInsecure))
        return later(std::move(done), {Kind::Unavailable, u"no safe address"_s});
    for (const Part part : {All, isRead(request) ? Reads : Writes}) {
        const auto why = pausedBy(part);
        if (why && !(part == Writes && givesBack(request)))
            return later(std::move(done), *why);
    }
    if (m_settings.user.isEmpty() || m_secret)
        return dispatch(request, std::move(done));
    findSecret(request, std::move(done));
}

void WebDavRequests::findSecret(const WebDavRequest &request, Done done)
{
    m_secrets.lookup(u"webdav"_s, webDavSecretAccount(m_settings),
                     [this, self = QPointer(this), request, done = std::move(done)](const auto &found) {
                         if (!self)
                             return;
                         if (!found) {
                             const CloudError error = noSecret(found.error());
                             if (found.error().kind == SecretError::Kind::Locked)
                                 pauseFor(All, error, refusalSeconds);
                             return done(error);
                         }
                         if (!*found)
                             return done(CloudError{Kind::Authentication, u"no password is stored"_s});
                         if (*found == m_refusedSecret)
                             return done(CloudError{Kind::Authentication, u"this password was refused before"_s});
                         m_secret = *found;
                         dispatch(request, done);
                     });
}

void WebDavRequests::dispatch(const WebDavRequest &request, Done done)
{
    HttpRequest http = toHttp(request, urlOf(request.name));
    if (m_secret)
        http.headers.emplaceBack("Authorization", "Basic " + (m_settings.user.toUtf8() + ':' + *m_secret).toBase64());
    const quint64 id = ++m_lastCall;
    m_calls[id] = m_http.send(http, [this, id, request, done = std::move(done)](const auto &result) {
        const auto judged = judge(request, result);
        const Done told = done; // goes with the call
        m_calls.erase(id);
        told(judged);
    });
}

Result<HttpResponse, CloudError> WebDavRequests::judge(const WebDavRequest &request,
                                                       const Result<HttpResponse, HttpError> &result)
{
    if (!result) {
        const CloudError error = webdav::errorOf(result.error());
        qCInfo(lcWebDav).noquote() << request.method << "failed:" << error.detail;
        // An answer that is too large says nothing against the next request.
        if (error.kind != Kind::TooLarge)
            pause(All, error);
        return error;
    }
    const auto error = webdav::errorOf(*result);
    if (error && !request.expected.contains(result->status))
        return refuse(request, *result, *error);
    m_pauses[All].failures = 0;
    // A lock is granted also where there is no space left.
    if (result->status < 300 && (isRead(request) || request.method == "PUT"))
        m_pauses[isRead(request) ? Reads : Writes].failures = 0;
    return *result;
}

CloudError WebDavRequests::refuse(const WebDavRequest &request, const HttpResponse &answer, CloudError error)
{
    qCInfo(lcWebDav).noquote() << request.method << "refused:" << error.detail;
    const auto asked = webdav::retryAfter(answer, m_clock.now());
    if (answer.status == 401) {
        m_refusedSecret = std::exchange(m_secret, std::nullopt);
    } else if (answer.status == 403) {
        pauseFor(isRead(request) ? Reads : Writes, error, refusalSeconds);
    } else {
        const bool fullOrLarge = answer.status == 413 || answer.status == 507;
        const Part part = fullOrLarge ? Writes : All;
        pause(part, error, asked);
        error.retryAfter = pausedBy(part).value_or(error).retryAfter;
    }
    return error;
}

std::optional<CloudError> WebDavRequests::pausedBy(Part part) const
{
    const Pause &pause = m_pauses[part];
    const double passed = m_clock.now() - pause.from;
    // Also when the clock was set back to before the pause.
    if (passed < 0 || passed >= pause.seconds)
        return std::nullopt;
    CloudError why = pause.why;
    why.retryAfter = std::chrono::seconds(qint64(std::ceil(pause.seconds - passed)));
    return why;
}

std::optional<CloudError> WebDavRequests::writesPaused() const
{
    const auto why = pausedBy(All);
    return why ? why : pausedBy(Writes);
}

void WebDavRequests::pause(Part part, const CloudError &why, std::optional<std::chrono::seconds> asked)
{
    Pause &pause = m_pauses[part];
    const double whole = std::min(longestPauseSeconds, firstPauseSeconds * std::pow(2.0, std::min(pause.failures, 16)));
    const int failures = pause.failures + 1;
    pauseFor(part, why, asked ? double(asked->count()) : whole * (1 - m_random() / 2));
    pause.failures = failures;
    pause.byServer = asked.has_value();
}

void WebDavRequests::pauseFor(Part part, const CloudError &why, double seconds)
{
    m_pauses[part] = Pause{.from = m_clock.now(), .seconds = seconds, .why = why};
}

void WebDavRequests::forgive()
{
    for (Pause &pause : m_pauses) {
        if (!pause.byServer)
            pause = {};
    }
    m_secret.reset();
    m_refusedSecret.reset();
}

void WebDavRequests::holdLock(const QString &name, const QByteArray &token, std::chrono::seconds period)
{
    m_lockTimer = m_clock.repeating(period, [this, name, token, period] {
        WebDavRequest refresh{.method = "LOCK", .name = name, .expected = {403, 501}};
        refresh.headers = {{"If", "(" + token + ")"}, {"Timeout", "Second-" + QByteArray::number(period.count() * 3)}};
        send(refresh, [](const auto &result) {
            // The write is refused by the server if the lock is gone.
            if (!result || result->status != 200)
                qCWarning(lcWebDav) << "A lock could not be prolonged";
        });
    });
}

void WebDavRequests::releaseLock()
{
    m_lockTimer.reset();
}

void WebDavRequests::later(Done done, const CloudError &error)
{
    QMetaObject::invokeMethod(
        this, [done = std::move(done), error] { done(error); }, Qt::QueuedConnection);
}

} // namespace orvelle
