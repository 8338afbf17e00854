#pragma once

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <functional>

namespace orvelle::test {

/// What lies between machines and a server. On a thread of its own, it hands
/// on what comes along, until an upload of the document meets an accident.
class ServerRoad
{
public:
    enum Accident {
        None,
        UploadIsCut,  ///< the connection ends in the middle of the document
        AnswerIsLost, ///< the server has it, and nobody is told
        Overtaken,    ///< `overtake` is done before the server hears of it
    };

    explicit ServerRoad(const QUrl &server) : m_server(server)
    {
        m_thread.start();
        m_gate.moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            &m_gate, [this] { open(); }, Qt::BlockingQueuedConnection);
    }
    ~ServerRoad()
    {
        QMetaObject::invokeMethod(
            &m_gate, [this] { m_listener.reset(); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(ServerRoad)

    /// The server's address as machines know it.
    QUrl url() const
    {
        QUrl url = m_server;
        url.setPort(m_port);
        return url;
    }
    /// For the next upload; None ends what has not happened yet.
    void next(Accident accident) { m_next = accident; }
    int accidents() const { return m_accidents; }

    /// On the road's thread. Set before there is any traffic.
    std::function<void()> overtake;

private:
    /// One connection, of which an accident has taken hold or not.
    struct Trip {
        Accident accident = None;
        qint64 left = 0; ///< bytes that still get through
    };

    void open()
    {
        m_listener = std::make_unique<QTcpServer>();
        m_listener->listen(QHostAddress::LocalHost);
        m_port = m_listener->serverPort();
        QObject::connect(m_listener.get(), &QTcpServer::newConnection, m_listener.get(), [this] {
            while (QTcpSocket *machine = m_listener->nextPendingConnection())
                connect(machine);
        });
    }
    void connect(QTcpSocket *machine)
    {
        auto *server = new QTcpSocket(machine); // goes with it
        const auto trip = std::make_shared<Trip>();
        QObject::connect(machine, &QTcpSocket::readyRead, server, [=, this] { there(*trip, *machine, *server); });
        QObject::connect(server, &QTcpSocket::readyRead, machine, [=] {
            if (trip->accident == AnswerIsLost)
                machine->abort();
            else
                machine->write(server->readAll());
        });
        QObject::connect(server, &QTcpSocket::errorOccurred, machine, [=] { machine->disconnectFromHost(); });
        QObject::connect(server, &QTcpSocket::disconnected, machine, [=] { machine->disconnectFromHost(); });
        QObject::connect(machine, &QTcpSocket::disconnected, machine, &QObject::deleteLater);
        server->connectToHost(m_server.host(), static_cast<quint16>(m_server.port()));
    }
    void there(Trip &trip, QTcpSocket &machine, QTcpSocket &server)
    {
        const QByteArray bytes = machine.readAll();
        if (bytes.startsWith("PUT ") && bytes.left(bytes.indexOf('\r')).contains("orvelle-sync"))
            beginUpload(trip, bytes);
        if (trip.accident != UploadIsCut) {
            server.write(bytes);
            return;
        }
        server.write(bytes.first(std::min<qint64>(trip.left, bytes.size())));
        trip.left -= bytes.size();
        if (trip.left > 0)
            return;
        server.flush();
        machine.abort();
    }
    void beginUpload(Trip &trip, const QByteArray &bytes)
    {
        trip.accident = m_next.exchange(None);
        m_accidents += trip.accident != None;
        const QByteArray head = bytes.left(bytes.indexOf("\r\n\r\n") + 4);
        const qsizetype at = head.toLower().indexOf("content-length:");
        trip.left = head.size() + head.mid(at + 15, head.indexOf('\r', at) - at - 15).trimmed().toLongLong() / 2;
        if (trip.accident == Overtaken)
            overtake();
    }

    QUrl m_server;
    QThread m_thread;
    QObject m_gate;
    std::unique_ptr<QTcpServer> m_listener;
    quint16 m_port = 0;
    std::atomic<Accident> m_next = None;
    std::atomic<int> m_accidents = 0;
};

} // namespace orvelle::test
