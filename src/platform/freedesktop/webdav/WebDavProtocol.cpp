#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QHostAddress>
#include <QLocale>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle::webdav {

namespace {

using Kind = CloudError::Kind;

constexpr std::chrono::seconds longestPause = std::chrono::hours(24);
constexpr qsizetype longestToken = 1024;

bool isVisibleAscii(const QByteArray &text)
{
    return std::ranges::all_of(text, [](char c) { return c > ' ' && c < 127; });
}

bool isTag(const QByteArray &text)
{
    return text.size() > 2 && text.size() < longestToken && text.startsWith('"') && text.endsWith('"') &&
           text.count('"') == 2 && std::ranges::all_of(text, [](char c) { return c >= ' ' && c != 127; });
}

/// IMF-fixdate, the one form that is still made.
std::optional<Timestamp> dateOf(const QByteArray &text)
{
    QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(text.trimmed()), u"ddd, dd MMM yyyy hh:mm:ss 'GMT'"_s);
    if (!date.isValid())
        return std::nullopt;
    date.setTimeSpec(Qt::UTC);
    return Timestamp::fromDateTime(date);
}

} // namespace

QByteArray strongTag(const HttpResponse &answer)
{
    const QByteArray tag = answer.header("ETag").trimmed();
    return isTag(tag) ? tag : QByteArray();
}

bool hasWeakTag(const HttpResponse &answer)
{
    return answer.header("ETag").trimmed().startsWith("W/");
}

bool isPage(const HttpResponse &answer)
{
    const QByteArray start = answer.body.first(std::min<qsizetype>(answer.body.size(), 256)).trimmed().toLower();
    return answer.header("Content-Type").trimmed().toLower().startsWith("text/html") ||
           start.startsWith("<!doctype html") || start.startsWith("<html");
}

std::optional<Timestamp> modifiedAt(const HttpResponse &answer)
{
    const auto modified = dateOf(answer.header("Last-Modified"));
    return modified ? modified : dateOf(answer.header("Date"));
}

std::optional<std::chrono::seconds> retryAfter(const HttpResponse &answer, Timestamp now)
{
    const QByteArray text = answer.header("Retry-After").trimmed();
    bool isNumber = false;
    double seconds = static_cast<double>(text.toULongLong(&isNumber));
    if (!isNumber) {
        const auto date = dateOf(text);
        if (!date)
            return std::nullopt;
        seconds = std::max(0.0, *date - now);
    }
    return std::chrono::seconds(qint64(std::min(seconds, double(longestPause.count()))));
}

bool offersLocks(const HttpResponse &answer)
{
    return std::ranges::any_of(answer.headers, [](const auto &header) {
        if (header.first.compare("DAV", Qt::CaseInsensitive) != 0)
            return false;
        const QList<QByteArray> classes = QByteArray(header.second).replace('\n', ',').split(',');
        return std::ranges::any_of(classes, [](const QByteArray &each) { return each.trimmed() == "2"; });
    });
}

QByteArray lockRequest()
{
    return R"(<?xml version="1.0" encoding="utf-8"?>)"
           R"(<D:lockinfo xmlns:D="DAV:"><D:lockscope><D:exclusive/></D:lockscope>)"
           R"(<D:locktype><D:write/></D:locktype><D:owner>Orvelle</D:owner></D:lockinfo>)";
}

QByteArray lockToken(const HttpResponse &answer)
{
    const QByteArray token = answer.header("Lock-Token").trimmed();
    const bool usable = token.size() > 2 && token.size() < longestToken && token.startsWith('<') &&
                        token.endsWith('>') && token.count('>') == 1 && isVisibleAscii(token);
    return usable ? token : QByteArray();
}

std::chrono::seconds lockTime(const HttpResponse &answer)
{
    constexpr std::chrono::seconds shortest(5);
    constexpr std::chrono::seconds longest(3600);
    static constexpr QByteArrayView mark = "second-";
    const QByteArray body = answer.body.toLower();
    const qsizetype at = body.indexOf(mark);
    if (at < 0)
        return longest; // "Infinite", or it does not say
    qint64 seconds = 0;
    for (qsizetype i = at + mark.size(); i < body.size() && body[i] >= '0' && body[i] <= '9' && seconds < 100'000; ++i)
        seconds = seconds * 10 + (body[i] - '0');
    return std::clamp(std::chrono::seconds(seconds), shortest, longest);
}

CloudError errorOf(const HttpError &error)
{
    // An answer that is none, or ends too early, is how a connection that was
    // cut looks at some moments.
    static constexpr std::array<Kind, 8> kinds{Kind::Unavailable, Kind::Unavailable,  Kind::TimedOut,
                                               Kind::TooLarge,    Kind::NotADocument, Kind::Tls,
                                               Kind::Unavailable, Kind::Unavailable};
    static constexpr std::array names{"refused"_L1,    "unreachable"_L1, "timed out"_L1,      "too large"_L1,
                                      "redirected"_L1, "tls"_L1,         "proxy asks who"_L1, "no valid answer"_L1};
    const auto index = static_cast<std::size_t>(error.kind);
    return {kinds[index], names[index] + u' ' + error.detail};
}

std::optional<CloudError> errorOf(const HttpResponse &answer)
{
    struct Row {
        int status;
        Kind kind;
    };
    static constexpr std::array rows{
        Row{401, Kind::Authentication}, Row{403, Kind::Authentication}, Row{407, Kind::Unavailable},
        Row{408, Kind::TimedOut},       Row{413, Kind::TooLarge},       Row{429, Kind::Unavailable},
        Row{503, Kind::Unavailable},    Row{504, Kind::TimedOut},       Row{507, Kind::NoSpace}};
    const auto row = std::ranges::find(rows, answer.status, &Row::status);
    const QString detail = u"status %1"_s.arg(answer.status);
    if (row != rows.end())
        return CloudError{row->kind, detail};
    if (answer.status >= 500)
        return CloudError{Kind::Io, detail};
    return std::nullopt;
}

QUrl folderAddress(const QUrl &url)
{
    QUrl folder = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
    if (!folder.path().endsWith(u'/'))
        folder.setPath(folder.path() + u'/');
    return folder;
}

bool isSafeAddress(const QUrl &folder, bool allowInsecure)
{
    if (!folder.isValid() || folder.host().isEmpty())
        return false;
    if (folder.scheme() == "https"_L1)
        return true;
    const bool stays = folder.host() == "localhost"_L1 || QHostAddress(folder.host()).isLoopback();
    return folder.scheme() == "http"_L1 && (stays || allowInsecure);
}

} // namespace orvelle::webdav
