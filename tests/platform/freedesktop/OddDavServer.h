#pragma once

#include "support/FakeClock.h"
#include "support/LoopbackServer.h"

#include <QCryptographicHash>
#include <QMap>

namespace orvelle::test {

/// A small WebDAV server that does what it does more or less well. One folder,
/// "/dav/", which is there. Files are changed in `files`.
class OddDavServer
{
public:
    enum class Tags { Strong, WeakAtFirst, Weak, None };
    enum class Locks { None, Real, Fake };
    struct File {
        QByteArray bytes;
        Timestamp changed = {};
    };
    struct Request {
        QByteArray method;
        QByteArray name;
        QByteArray body;
        QMap<QByteArray, QByteArray> headers; ///< names in lower case
    };
    /// Says the whole answer, or nothing to leave it to the server.
    using Whim = std::function<std::optional<QByteArray>(const Request &)>;

    Tags tags = Tags::Strong;
    bool tagInPutAnswer = true;
    bool honoursConditions = true;
    Locks locks = Locks::None;
    QMap<QByteArray, File> files;
    QMap<QByteArray, QByteArray> held; ///< tokens by name
    Whim whim;
    QList<Request> requests;
    LoopbackServer server;

    explicit OddDavServer(FakeClock &clock) : m_clock(clock)
    {
        server.doesElse([this](QTcpSocket &socket) {
            const Request request = parsed(server.requests.constLast());
            requests += request;
            const auto said = whim ? whim(request) : std::nullopt;
            const QByteArray answer = said ? *said : answerTo(request);
            socket.write(answer);
            if (answer.contains("Connection: close"))
                socket.disconnectFromHost();
        });
    }

    QUrl folder() const { return server.url(QStringLiteral("/dav")); }
    void put(const QByteArray &name, const QByteArray &bytes) { files[name] = {bytes, m_clock.now()}; }

    /// "PUT shared.ovexport", in the order of their coming.
    QList<QByteArray> asked() const
    {
        QList<QByteArray> all;
        for (const Request &each : requests)
            all += each.method + ' ' + each.name;
        return all;
    }
    QByteArray methods() const
    {
        QByteArray all;
        for (const Request &each : requests)
            all += each.method + ' ';
        return all.trimmed();
    }

    static QByteArray answer(const QByteArray &status, const QByteArray &headers = {}, const QByteArray &body = {})
    {
        return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers +
               "\r\n" + body;
    }
    QByteArray answerTo(const Request &request)
    {
        if (request.method == "GET" || request.method == "HEAD")
            return get(request);
        if (request.method == "OPTIONS")
            return answer("200 OK", locks == Locks::None ? "DAV: 1\r\n" : "DAV: 1, 2\r\n");
        if (request.method == "LOCK")
            return lock(request);
        if (request.method == "UNLOCK")
            return held.remove(request.name) > 0 ? answer("204 Ok") : answer("409 No such lock");
        if (isLockedFor(request))
            return answer("423 Locked");
        if (honoursConditions && !meetsConditions(request))
            return answer("412 Precondition Failed");
        if (request.method == "DELETE")
            return files.remove(request.name) > 0 ? answer("204 Gone") : answer("404 Not Found");
        if (request.method != "PUT")
            return answer("405 No");
        const bool isNew = !files.contains(request.name);
        put(request.name, request.body);
        return answer(isNew ? "201 Created" : "204 Ok", tagInPutAnswer ? tagHeader(request.name) : QByteArray());
    }

private:
    static Request parsed(const QByteArray &bytes)
    {
        const qsizetype headEnd = bytes.indexOf("\r\n\r\n");
        QList<QByteArray> lines = bytes.first(headEnd).split('\n');
        const QList<QByteArray> first = lines.takeFirst().split(' ');
        Request request{first.value(0), first.value(1).mid(5), bytes.mid(headEnd + 4), {}};
        for (const QByteArray &line : lines)
            request.headers[line.left(line.indexOf(':')).toLower()] = line.mid(line.indexOf(':') + 1).trimmed();
        return request;
    }

    QByteArray strong(const QByteArray &name) const
    {
        const File file = files.value(name);
        const auto hash = QCryptographicHash::hash(file.bytes, QCryptographicHash::Md5).toHex();
        return '"' + hash + QByteArray::number(file.changed.seconds, 'f', 3) + '"';
    }
    bool isFresh(const QByteArray &name) const { return m_clock.now() - files[name].changed < 1; }
    QByteArray tagHeader(const QByteArray &name) const
    {
        if (tags == Tags::None)
            return {};
        const bool weak = tags == Tags::Weak || (tags == Tags::WeakAtFirst && isFresh(name));
        return QByteArray("ETag: ") + (weak ? "W/" : "") + strong(name) + "\r\n";
    }

    QByteArray get(const Request &request) const
    {
        if (!files.contains(request.name))
            return answer("404 Not Found");
        const bool isKnown = tags == Tags::Strong || tags == Tags::WeakAtFirst;
        if (isKnown && request.headers.value("if-none-match") == strong(request.name))
            return "HTTP/1.1 304 Not Modified\r\n" + tagHeader(request.name) + "\r\n";
        const QByteArray headers = tagHeader(request.name) + "Last-Modified: Sat, 21 Nov 2026 14:33:07 GMT\r\n";
        QByteArray whole = answer("200 OK", headers, files[request.name].bytes);
        if (request.method == "HEAD")
            whole.truncate(whole.indexOf("\r\n\r\n") + 4);
        return whole;
    }
    QByteArray lock(const Request &request)
    {
        if (request.headers.value("if").contains(held.value(request.name, "?")))
            return answer("200 OK"); // prolonged
        if (locks == Locks::None)
            return answer("405 No");
        if (held.contains(request.name))
            return answer("423 Locked");
        const QByteArray token = "<urn:lock:" + QByteArray::number(++m_lastToken) + ">";
        if (locks == Locks::Real)
            held[request.name] = token;
        const bool isNew = !files.contains(request.name);
        if (isNew && locks == Locks::Real)
            put(request.name, {});
        return answer(isNew ? "201 Created" : "200 OK", "Lock-Token: " + token + "\r\n",
                      "<D:timeout>Second-30</D:timeout>");
    }
    bool isLockedFor(const Request &request) const
    {
        return held.contains(request.name) && !request.headers.value("if").contains(held.value(request.name));
    }
    bool meetsConditions(const Request &request) const
    {
        const bool exists = files.contains(request.name);
        if (request.headers.value("if-none-match") == "*" && exists)
            return false;
        const QByteArray wanted = request.headers.value("if-match");
        const bool weak = tags == Tags::Weak || (tags == Tags::WeakAtFirst && exists && isFresh(request.name));
        return wanted.isEmpty() || (exists && !weak && wanted == strong(request.name));
    }

    FakeClock &m_clock;
    int m_lastToken = 0;
};

} // namespace orvelle::test
