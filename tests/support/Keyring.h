#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QUuid>

#include <sys/prctl.h>

#include <csignal>

namespace orvelle::test {

/// The desktop's real keyring on a bus of the test, unlocked and empty, with
/// its files in a folder of its own.
class Keyring
{
public:
    static bool isInstalled()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon")).isEmpty();
    }

    explicit Keyring(const QString &busAddress)
        : m_name(QUuid::createUuid().toString()), m_bus(QDBusConnection::connectToBus(busAddress, m_name))
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *folder : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(QString::fromLatin1(folder), m_home.path());
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress);
        environment.remove(QStringLiteral("DISPLAY"));
        m_daemon.setProcessEnvironment(environment);
        // Also when this test is killed.
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    }
    ~Keyring()
    {
        QDBusConnection::disconnectFromBus(m_name);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Keyring)

    /// False when it does not come up. The password is what a login gives it.
    bool start()
    {
        m_daemon.start(
            QStringLiteral("gnome-keyring-daemon"),
            {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
        m_daemon.write("login");
        m_daemon.closeWriteChannel();
        for (const QDeadlineTimer deadline(30'000); !deadline.hasExpired(); QThread::msleep(20)) {
            m_daemon.waitForFinished(0); // what was written goes out
            if (m_bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.secrets")) &&
                QFileInfo::exists(m_home.filePath(QStringLiteral("keyrings/login.keyring"))))
                return true;
        }
        return false;
    }
    /// False when it refuses.
    bool lock()
    {
        const QDBusObjectPath login(QStringLiteral("/org/freedesktop/secrets/collection/login"));
        return ask(QStringLiteral("Lock"), QVariant::fromValue(QList{login})).type() == QDBusMessage::ReplyMessage;
    }
    /// Of how many secrets this attribute says so; -1 without an answer.
    qsizetype count(const QString &attribute, const QString &value)
    {
        qDBusRegisterMetaType<QMap<QString, QString>>();
        const auto wanted = QVariant::fromValue(QMap<QString, QString>{{attribute, value}});
        const QDBusMessage reply = ask(QStringLiteral("SearchItems"), wanted);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return -1;
        return qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(0)).size();
    }

private:
    QDBusMessage ask(const QString &method, const QVariant &argument)
    {
        auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.secrets"),
                                                   QStringLiteral("/org/freedesktop/secrets"),
                                                   QStringLiteral("org.freedesktop.Secret.Service"), method);
        call << argument;
        return m_bus.call(call);
    }

    QString m_name;
    QDBusConnection m_bus;
    QTemporaryDir m_home;
    QProcess m_daemon;
};

} // namespace orvelle::test
