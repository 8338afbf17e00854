#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>
#include <QProcess>
#include <QUuid>

#include <functional>

namespace orvelle::test {

/// A message bus with nobody on it, of this test alone. The distribution's
/// daemon with the configuration of a session bus; ends with this object.
class PrivateBus
{
public:
    PrivateBus() { start({}); }
    ~PrivateBus()
    {
        for (const QString &name : m_names)
            QDBusConnection::disconnectFromBus(name);
        end();
    }
    Q_DISABLE_COPY_MOVE(PrivateBus)

    QString address() const { return m_address; }
    /// Everybody's connection breaks, and another bus is at the address.
    void restart()
    {
        end();
        start({QStringLiteral("--address=") + m_address});
    }
    /// Another program on the bus with each call.
    QDBusConnection connection()
    {
        m_names += QUuid::createUuid().toString();
        return QDBusConnection::connectToBus(m_address, m_names.constLast());
    }

private:
    void start(const QStringList &options)
    {
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       options + QStringList{QStringLiteral("--session"), QStringLiteral("--nofork"),
                                             QStringLiteral("--print-address")});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(10'000)) {
        }
        // Without the number that another bus does not have.
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed().section(u',', 0, 0);
    }
    void end()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

/// A tree of objects that answers calls as a test says; others are refused.
class AnsweringObjects : public QDBusVirtualObject
{
public:
    /// Nothing: the call is never answered.
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage &call)>;

    /// "Method argument argument", in the order of their coming.
    QStringList calls;
    QHash<QString, Answer> answers; ///< by the method's name

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        QStringList said{message.member()};
        for (const QVariant &each : message.arguments())
            said += textOf(each);
        calls += said.join(u' ');
        const auto known = answers.constFind(message.member());
        if (known == answers.constEnd())
            return false;
        if (const auto reply = (*known)(message))
            bus.send(*reply);
        return true;
    }

private:
    static QString textOf(const QVariant &argument)
    {
        return argument.canConvert<QDBusVariant>() ? argument.value<QDBusVariant>().variant().toString()
                                                   : argument.toString();
    }
};

} // namespace orvelle::test
