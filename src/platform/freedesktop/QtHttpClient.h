#pragma once

#include "platform/HttpClient.h"

#include <QByteArray>

class QNetworkAccessManager;

namespace orvelle {

class Clock;

/// Requests over the toolkit's network classes: HTTP/1.1, the system's
/// proxies (never for this machine itself), the system's certificates, no
/// cookies, no cache. Compressed answers are unpacked while they arrive.
///
/// Nothing of the network is set up before the first request.
class QtHttpClient : public HttpClient
{
public:
    QtHttpClient(Clock &clock, const QByteArray &userAgent);
    ~QtHttpClient() override;

    [[nodiscard]] std::unique_ptr<HttpCall> send(const HttpRequest &request, Done done) override;

private:
    QNetworkAccessManager &manager();

    Clock &m_clock;
    QByteArray m_userAgent;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

} // namespace orvelle
