#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

/// One request. Only http and https addresses without credentials are sent.
///
/// A redirect keeps method and body but for 303 and for a POST answered with
/// 301 or 302, which go on as GET (RFC 9110, 15.4).
struct HttpRequest {
    QUrl url = {};
    QByteArray method = "GET";
    QList<QPair<QByteArray, QByteArray>> headers = {};
    QByteArray body = {};
    std::chrono::milliseconds idleTimeout{10000};  ///< without a byte received or taken from us
    std::chrono::milliseconds totalTimeout{60000}; ///< from sending to the last byte
    qint64 maxBytes = qint64(1) << 20;             ///< of the decoded answer; held while streaming
    int maxRedirects = 3;                          ///< 0 hands a redirect back as the answer
    bool redirectsMayLeaveHttps = false;           ///< an https request never follows to http otherwise
    bool redirectsMayLeaveHost = true;             ///< false: another host, port or scheme is refused
};

/// What the server said, whatever its status.
struct HttpResponse {
    int status = 0;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
    QUrl url; ///< after redirects

    /// The first header of that name, in any case; empty when there is none.
    QByteArray header(const QByteArray &name) const;
};

/// Why there is no whole answer. A status of 400 or more is an answer.
struct HttpError {
    enum class Kind {
        Refused,     ///< the address is none that is sent to
        Unreachable, ///< no such host, no connection, or it broke
        TimedOut,
        TooLarge,
        BadRedirect, ///< too many, or to where it may not lead
        Tls,
        Authentication, ///< a proxy's; a server's is status 401
        Protocol,       ///< the answer is no HTTP, or ends too early
    };
    Kind kind = Kind::Unreachable;
    QString detail; ///< for the log: no address, no host
};

/// A request on its way. Destroying it cancels it; its callback is then never
/// called. Also gone with the client it came from.
class HttpCall
{
public:
    virtual ~HttpCall() = default;
};

/// Sends requests with the application's user agent. No cookies are kept and
/// no credentials sent but those in `headers`, which never follow a redirect
/// to another host. Main thread; callbacks run there from the event loop,
/// never from inside send().
class HttpClient
{
public:
    using Done = std::function<void(const Result<HttpResponse, HttpError> &)>;

    virtual ~HttpClient() = default;
    [[nodiscard]] virtual std::unique_ptr<HttpCall> send(const HttpRequest &request, Done done) = 0;
};

} // namespace orvelle
