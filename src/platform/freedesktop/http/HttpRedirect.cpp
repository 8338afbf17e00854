#include "platform/freedesktop/http/HttpRedirect.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array redirectStatuses = {301, 302, 303, 307, 308};

/// What may go to a host that the caller did not name. Everything else could
/// be a credential.
constexpr std::array<const char *, 3> harmlessHeaders = {"accept", "accept-language", "content-type"};

HttpError badRedirect(const QString &why)
{
    return {HttpError::Kind::BadRedirect, why};
}

int portOf(const QUrl &url)
{
    return url.port(url.scheme() == "https"_L1 ? 443 : 80);
}

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && portOf(a) == portOf(b);
}

bool becomesGet(int status, const QByteArray &method)
{
    if (status == 303)
        return method != "GET" && method != "HEAD";
    return (status == 301 || status == 302) && method == "POST";
}

template<typename Predicate>
void dropHeaders(HttpRequest &request, Predicate drop)
{
    request.headers.removeIf([&drop](const auto &header) { return drop(header.first.toLower()); });
}

} // namespace

bool isRedirect(const HttpResponse &answer)
{
    return std::find(redirectStatuses.begin(), redirectStatuses.end(), answer.status) != redirectStatuses.end() &&
           !answer.header("location").isEmpty();
}

bool isSendable(const QUrl &url)
{
    return url.isValid() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1) && !url.host().isEmpty() &&
           url.userInfo().isEmpty();
}

Result<HttpRequest, HttpError> redirected(const HttpRequest &request, const HttpResponse &answer, int remaining)
{
    if (remaining <= 0)
        return badRedirect(u"too many"_s);
    const QUrl target = request.url.resolved(QUrl::fromEncoded(answer.header("location")));
    if (!isSendable(target))
        return badRedirect(u"not to a web address"_s);
    if (request.url.scheme() == "https"_L1 && target.scheme() != "https"_L1 && !request.redirectsMayLeaveHttps)
        return badRedirect(u"away from https"_s);
    const bool leavesOrigin = !sameOrigin(request.url, target);
    if (leavesOrigin && !request.redirectsMayLeaveHost)
        return badRedirect(u"to another host"_s);

    HttpRequest next = request;
    next.url = target;
    if (leavesOrigin) {
        dropHeaders(next, [](const QByteArray &name) {
            return std::find(harmlessHeaders.begin(), harmlessHeaders.end(), name) == harmlessHeaders.end();
        });
    }
    if (becomesGet(answer.status, request.method)) {
        next.method = "GET";
        next.body.clear();
        dropHeaders(next, [](const QByteArray &name) { return name.startsWith("content-"); });
    }
    return next;
}

} // namespace orvelle
