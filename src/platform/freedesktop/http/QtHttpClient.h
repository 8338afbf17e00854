#pragma once

#include "platform/HttpClient.h"

#include <QByteArray>

class QNetworkAccessManager;
class QNetworkProxy;

namespace orvelle {

class Clock;
class SystemProxies;

/// Requests over the toolkit's network classes: HTTP/1.1, the system's
/// proxies (never for this machine itself), the system's certificates, no
/// cookies, no cache. Compressed answers are unpacked while they arrive.
///
/// Nothing of the network is set up before the first request.
class QtHttpClient : public HttpClient
{
public:
    /// Finds the proxies for an address; called on another thread, may block.
    using ProxyLookup = std::function<QList<QNetworkProxy>(const QUrl &url)>;

    QtHttpClient(Clock &clock, const QByteArray &userAgent);
    QtHttpClient(Clock &clock, const QByteArray &userAgent, const ProxyLookup &proxies);
    ~QtHttpClient() override;

    [[nodiscard]] std::unique_ptr<HttpCall> send(const HttpRequest &request, Done done) override;

private:
    QNetworkAccessManager &manager();

    Clock &m_clock;
    QByteArray m_userAgent;
    std::unique_ptr<SystemProxies> m_proxies; ///< outlives the manager, which asks it
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

} // namespace orvelle
