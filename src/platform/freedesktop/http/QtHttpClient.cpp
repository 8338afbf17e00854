#include "platform/freedesktop/http/QtHttpClient.h"

#include "platform/Clock.h"
#include "platform/freedesktop/http/HttpRedirect.h"
#include "platform/freedesktop/http/SystemProxies.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// What the network thread may hold for us, so that a cap holds while bytes
/// arrive and not after.
constexpr qint64 readBufferBytes = 64 * 1024;

class KnownProxies : public QNetworkProxyFactory
{
public:
    explicit KnownProxies(SystemProxies &proxies) : m_proxies(proxies) {}
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override { return m_proxies.known(query.url()); }

private:
    SystemProxies &m_proxies;
};

QNetworkRequest toNetworkRequest(const HttpRequest &request, const QByteArray &userAgent)
{
    QNetworkRequest network(request.url);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    network.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Beyond the cap nothing is unpacked, not even to count it.
    network.setDecompressedSafetyCheckThreshold(request.maxBytes);
    network.setRawHeader("User-Agent", userAgent);
    for (const auto &[name, value] : request.headers)
        network.setRawHeader(name, value);
    return network;
}

HttpError::Kind kindOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
        return HttpError::Kind::Tls;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return HttpError::Kind::TimedOut;
    case QNetworkReply::ProxyAuthenticationRequiredError:
        return HttpError::Kind::Authentication;
    default:
        break;
    }
    // The toolkit numbers what concerns connection and proxies below 200.
    return error < QNetworkReply::ContentAccessDenied ? HttpError::Kind::Unreachable : HttpError::Kind::Protocol;
}

class QtHttpCall : public QObject, public HttpCall
{
public:
    QtHttpCall(QNetworkAccessManager &manager, SystemProxies &proxies, Clock &clock, const QByteArray &userAgent,
               const HttpRequest &request, HttpClient::Done done)
        : m_manager(&manager),
          m_proxies(&proxies),
          m_clock(clock),
          m_userAgent(userAgent),
          m_request(request),
          m_redirectsLeft(request.maxRedirects),
          m_done(std::move(done))
    {
        // Never from inside send(), however fast it goes wrong.
        QMetaObject::invokeMethod(this, &QtHttpCall::begin, Qt::QueuedConnection);
    }
    ~QtHttpCall() override { dropReply(); }

private:
    void begin();
    void findProxies();
    void start();
    void take();
    void takeHeaders();
    void finished();
    void follow();
    void alive();
    bool isCutShort() const;
    void dropReply();
    void fail(HttpError::Kind kind, const QString &detail);
    void conclude(const Result<HttpResponse, HttpError> &result);

    QPointer<QNetworkAccessManager> m_manager;
    QPointer<SystemProxies> m_proxies;
    Clock &m_clock;
    QByteArray m_userAgent;
    HttpRequest m_request;
    int m_redirectsLeft;
    HttpClient::Done m_done;
    QPointer<QNetworkReply> m_reply;
    HttpResponse m_answer;
    std::unique_ptr<Timer> m_idleTimer;
    std::unique_ptr<Timer> m_totalTimer;
};

void QtHttpCall::begin()
{
    if (!isSendable(m_request.url))
        return fail(HttpError::Kind::Refused, u"no web address"_s);
    m_totalTimer =
        m_clock.singleShot(m_request.totalTimeout, [this] { fail(HttpError::Kind::TimedOut, u"in total"_s); });
    findProxies();
}

void QtHttpCall::findProxies()
{
    if (m_proxies)
        m_proxies->find(m_request.url, this, [this] { start(); });
}

void QtHttpCall::start()
{
    if (!m_manager || !m_done)
        return;
    m_answer = {};
    m_answer.url = m_request.url;
    const QNetworkRequest network = toNetworkRequest(m_request, m_userAgent);
    // The toolkit waits for a body after any method that it was given as text.
    m_reply = m_request.method == "HEAD" ? m_manager->head(network)
                                         : m_manager->sendCustomRequest(network, m_request.method, m_request.body);
    m_reply->setReadBufferSize(std::min(readBufferBytes, m_request.maxBytes + 1));
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &QtHttpCall::takeHeaders);
    connect(m_reply, &QNetworkReply::uploadProgress, this, &QtHttpCall::alive);
    connect(m_reply, &QNetworkReply::readyRead, this, &QtHttpCall::take);
    connect(m_reply, &QNetworkReply::finished, this, &QtHttpCall::finished);
    alive();
}

void QtHttpCall::alive()
{
    m_idleTimer = m_clock.singleShot(m_request.idleTimeout, [this] { fail(HttpError::Kind::TimedOut, u"idle"_s); });
}

void QtHttpCall::takeHeaders()
{
    alive();
    m_answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_answer.headers = m_reply->rawHeaderPairs();
    // What says itself that it is too much need not be fetched to find out.
    const bool announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_request.maxBytes;
    if (announced && m_request.method != "HEAD")
        fail(HttpError::Kind::TooLarge, u"announced"_s);
}

void QtHttpCall::take()
{
    alive();
    while (m_reply && m_reply->bytesAvailable() > 0) {
        const QByteArray piece = m_reply->read(readBufferBytes);
        if (piece.isEmpty())
            return;
        if (m_answer.body.size() + piece.size() > m_request.maxBytes)
            return fail(HttpError::Kind::TooLarge, u"while reading"_s);
        m_answer.body += piece;
    }
}

/// The toolkit takes a connection that closes in the middle of a body for its
/// end in some cases.
bool QtHttpCall::isCutShort() const
{
    if (m_request.method == "HEAD" || m_answer.status == 304)
        return false;
    bool given = false;
    const qint64 length = m_answer.header("content-length").toLongLong(&given);
    return given && m_answer.header("content-encoding").isEmpty() && length != m_answer.body.size();
}

void QtHttpCall::finished()
{
    const QNetworkReply::NetworkError error = m_reply->error();
    // What is refused here is answered, and whoever is answered may let go of this.
    const QPointer<QtHttpCall> self(this);
    take();
    if (!self || !m_reply)
        return;
    takeHeaders();
    if (!self || !m_reply)
        return;
    const bool isAnswer = error == QNetworkReply::NoError || (m_answer.status >= 400 && error > 200 && error < 500);
    if (!isAnswer)
        return fail(kindOf(error), QString::number(error));
    if (isCutShort())
        return fail(HttpError::Kind::Protocol, u"cut short"_s);
    if (isRedirect(m_answer) && m_request.maxRedirects > 0)
        return follow();
    conclude(m_answer);
}

void QtHttpCall::follow()
{
    const auto next = redirected(m_request, m_answer, m_redirectsLeft);
    if (!next)
        return conclude(next.error());
    --m_redirectsLeft;
    m_request = *next;
    dropReply();
    m_idleTimer.reset();
    findProxies();
}

void QtHttpCall::dropReply()
{
    QNetworkReply *reply = m_reply.data();
    m_reply.clear();
    if (!reply)
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void QtHttpCall::fail(HttpError::Kind kind, const QString &detail)
{
    conclude(HttpError{kind, detail});
}

void QtHttpCall::conclude(const Result<HttpResponse, HttpError> &result)
{
    const HttpClient::Done done = std::exchange(m_done, nullptr);
    dropReply();
    m_idleTimer.reset();
    m_totalTimer.reset();
    // The last statement: what is called may destroy this call.
    if (done)
        done(result);
}

} // namespace

QtHttpClient::QtHttpClient(Clock &clock, const QByteArray &userAgent)
    : QtHttpClient(clock, userAgent, &SystemProxies::ofSystem)
{
}

QtHttpClient::QtHttpClient(Clock &clock, const QByteArray &userAgent, const ProxyLookup &proxies)
    : m_clock(clock), m_userAgent(userAgent), m_proxies(std::make_unique<SystemProxies>(proxies))
{
}

QtHttpClient::~QtHttpClient() = default;

QNetworkAccessManager &QtHttpClient::manager()
{
    if (!m_manager) {
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_manager->setProxyFactory(new KnownProxies(*m_proxies));
    }
    return *m_manager;
}

std::unique_ptr<HttpCall> QtHttpClient::send(const HttpRequest &request, Done done)
{
    return std::make_unique<QtHttpCall>(manager(), *m_proxies, m_clock, m_userAgent, request, std::move(done));
}

} // namespace orvelle
