#pragma once

#include <QTcpServer>
#include <QTcpSocket>

namespace orvelle::bench {

/// Stands between a program and a server on this machine, and counts what is
/// sent, both ways: requests and answers as they are, without what TCP adds.
class Relay
{
public:
    explicit Relay(quint16 serverPort)
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this, serverPort] {
            while (QTcpSocket *client = m_server.nextPendingConnection()) {
                auto *server = new QTcpSocket(client);
                server->connectToHost(QHostAddress::LocalHost, serverPort);
                forward(client, server);
                forward(server, client);
                QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
                QObject::connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
            }
        });
    }

    quint16 port() const { return m_server.serverPort(); }
    qint64 bytes() const { return m_bytes; }

private:
    void forward(QTcpSocket *from, QTcpSocket *to)
    {
        QObject::connect(from, &QTcpSocket::readyRead, to, [this, from, to] {
            const QByteArray bytes = from->readAll();
            m_bytes += bytes.size();
            to->write(bytes);
        });
    }

    QTcpServer m_server;
    qint64 m_bytes = 0;
};

} // namespace orvelle::bench
