#include "links/favicons/FaviconQueue.h"

#include "links/favicons/FaviconHosts.h"
#include "links/favicons/FaviconImage.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(lcFaviconQueue, "FaviconQueue", QtInfoMsg)

/// As many requests as are sent at once: one round of nothing but silence.
constexpr int serviceFailuresBeforePause = 4;

/// Whether an answer says something about the service and not about the host
/// that it was asked for.
bool isServiceFailure(const Result<HttpResponse, HttpError> &answer)
{
    if (answer)
        return answer->status == 429 || answer->status >= 500;
    return answer.error().kind != HttpError::Kind::TooLarge;
}

HttpRequest requestFor(const QString &serviceHost, const QString &host)
{
    HttpRequest request;
    request.url = faviconRequestUrl(serviceHost, host);
    request.headers = {{"Accept", "image/*"}};
    request.idleTimeout = 10s;
    request.totalTimeout = 15s;
    request.maxBytes = faviconMaxSize;
    request.maxRedirects = 3;
    return request;
}

} // namespace

FaviconQueue::FaviconQueue(FaviconSettings &settings, HttpClient &http, Clock &clock, QObject *parent)
    : QObject(parent), m_settings(settings), m_http(http), m_clock(clock)
{
}

bool FaviconQueue::hasFailedLately(const QString &host) const
{
    const auto failure = m_failures.constFind(host);
    if (failure == m_failures.cend())
        return false;
    // A clock that was set back does not make it wait for longer.
    const double passed = m_clock.now() - *failure;
    return passed >= 0 && passed < std::chrono::duration<double>(pauseAfterFailure).count();
}

void FaviconQueue::ask(const QString &host)
{
    if (host.isEmpty() || m_asked.contains(host) || hasFailedLately(host))
        return;
    m_asked.insert(host);
    m_waiting += host;
    sendNext();
}

void FaviconQueue::settle(const QString &host, bool wasOfUse)
{
    m_asked.remove(host);
    if (!wasOfUse)
        m_failures.insert(host, m_clock.now());
}

void FaviconQueue::cancelAll()
{
    m_waiting.clear();
    m_asked.clear();
    m_sent.clear();
    m_pause.reset();
    m_serviceFailures = 0;
}

void FaviconQueue::forgetFailures()
{
    m_failures.clear();
}

void FaviconQueue::sendNext()
{
    while (!m_pause && m_sent.size() < maxOutstanding && !m_waiting.isEmpty())
        send(m_waiting.takeFirst());
}

void FaviconQueue::send(const QString &host)
{
    // Kept by host, so that the answer can let go of its own call.
    m_sent[host] = m_http.send(requestFor(m_settings.serviceHost(), host),
                               [this, host](const Result<HttpResponse, HttpError> &answer) { finish(host, answer); });
}

void FaviconQueue::finish(const QString &host, const Result<HttpResponse, HttpError> &answer)
{
    m_sent.erase(host);
    if (isServiceFailure(answer))
        countServiceFailure();
    else
        m_serviceFailures = 0;
    const bool usable = answer && answer->status == 200 && answer->body.size() <= faviconMaxSize;
    if (!usable)
        settle(host, false);
    sendNext();
    if (usable)
        emit answered(host, answer->body);
}

void FaviconQueue::countServiceFailure()
{
    if (++m_serviceFailures < serviceFailuresBeforePause || m_pause)
        return;
    qCInfo(lcFaviconQueue, "The icon service does not answer; %lld hosts wait",
           static_cast<long long>(m_waiting.size()));
    m_pause = m_clock.singleShot(pauseAfterFailure, [this] {
        m_serviceFailures = 0;
        m_pause.reset();
        sendNext();
    });
}

} // namespace orvelle
