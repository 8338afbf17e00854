#pragma once

#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

namespace orvelle::test {

/// A web server on this machine that says exactly the bytes a test tells it,
/// right or wrong.
///
///     LoopbackServer server;
///     server.says("/icon", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nhi");
class LoopbackServer
{
public:
    /// Gets the socket once the request is complete; writes what it likes.
    using Behaviour = std::function<void(QTcpSocket &)>;

    QList<QByteArray> requests; ///< heads and bodies as received

    LoopbackServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    }

    QString host() const { return QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort()); }
    QUrl url(const QString &path) const { return QUrl(QStringLiteral("http://") + host() + path); }

    /// `path` is without the query.
    void does(const QByteArray &path, Behaviour behaviour) { m_behaviours.insert(path, std::move(behaviour)); }
    /// For every path that was not told of.
    void doesElse(Behaviour behaviour) { m_otherwise = std::move(behaviour); }
    /// The bytes, and the end of the connection.
    void says(const QByteArray &path, const QByteArray &bytes)
    {
        does(path, [bytes](QTcpSocket &socket) {
            socket.write(bytes);
            socket.disconnectFromHost();
        });
    }
    void answers(const QByteArray &path, const QByteArray &statusAndHeaders, const QByteArray &body = {})
    {
        says(path, "HTTP/1.1 " + statusAndHeaders + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                       "\r\nConnection: close\r\n\r\n" + body);
    }

private:
    void accept()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            auto received = std::make_shared<QByteArray>();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
                *received += socket->readAll();
                if (!isComplete(*received))
                    return;
                const QByteArray request = *received;
                received->clear();
                requests += request;
                answer(*socket, request);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    }

    static bool isComplete(const QByteArray &received)
    {
        const qsizetype headEnd = received.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return false;
        const QByteArray head = received.first(headEnd).toLower();
        const qsizetype at = head.indexOf("content-length:");
        const qsizetype length = at < 0 ? 0 : head.mid(at + 15).split('\r').first().trimmed().toLongLong();
        return received.size() >= headEnd + 4 + length;
    }

    void answer(QTcpSocket &socket, const QByteArray &request)
    {
        const QByteArray path = request.split(' ').value(1).split('?').first();
        if (const auto known = m_behaviours.constFind(path); known != m_behaviours.constEnd())
            (*known)(socket);
        else if (m_otherwise)
            m_otherwise(socket);
        else
            socket.write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    }

    QTcpServer m_server;
    QHash<QByteArray, Behaviour> m_behaviours;
    Behaviour m_otherwise;
};

} // namespace orvelle::test
