#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>

namespace orvelle::test {

/// Lets things happen until `done`; false after twenty seconds.
inline bool waitFor(const std::function<bool()> &done)
{
    for (const QDeadlineTimer deadline(20'000); !done();) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        usleep(2000); // what is waited for happens in other processes and threads
    }
    return true;
}

/// A session bus and a home of their own, on which the distribution's calendar
/// server can run. One for the process, as GIO stays with its first bus.
class EvolutionServer
{
public:
    static QString programs() { return QStringLiteral("/usr/libexec/"); }
    static bool isInstalled() { return QFile::exists(programs() + QStringLiteral("evolution-calendar-factory")); }

    static EvolutionServer &only()
    {
        static EvolutionServer server;
        return server;
    }

    QString registryName() const { return QStringLiteral("org.gnome.evolution.dataserver.Sources5"); }
    QString factoryName() const { return QStringLiteral("org.gnome.evolution.dataserver.Calendar8"); }
    bool isOnBus(const QString &name) { return m_watch.interface()->isServiceRegistered(name); }
    /// Who else than we and the server is connected.
    qsizetype connections() { return m_watch.interface()->registeredServiceNames().value().size(); }

    void start()
    {
        startRegistry();
        startFactory();
    }
    void startRegistry() { run(m_registry, "evolution-source-registry", registryName()); }
    void startFactory() { run(m_factory, "evolution-calendar-factory", factoryName()); }
    void kill()
    {
        kill(factoryName());
        kill(registryName());
    }
    /// Without a chance to say good-bye.
    void kill(const QString &name)
    {
        if (!isOnBus(name))
            return;
        ::kill(static_cast<pid_t>(m_watch.interface()->servicePid(name).value()), SIGKILL);
        ASSERT_TRUE(waitFor([&] { return !isOnBus(name); }));
    }
    /// From now on the bus starts the server for whoever calls it.
    void makeStartable(bool startable)
    {
        for (const auto &[name, program] : {std::pair(registryName(), QStringLiteral("evolution-source-registry")),
                                            std::pair(factoryName(), QStringLiteral("evolution-calendar-factory"))}) {
            QFile file(m_folder.filePath(QStringLiteral("services/") + name + QStringLiteral(".service")));
            if (!startable) {
                file.remove();
                continue;
            }
            ASSERT_TRUE(file.open(QFile::WriteOnly));
            file.write("[D-BUS Service]\nName=" + name.toUtf8() + "\nExec=" + (programs() + program).toUtf8() + "\n");
        }
        m_watch.call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReloadConfig")));
    }
    QString dataFolder() const { return m_folder.filePath(QStringLiteral("home/data")); }

private:
    EvolutionServer()
    {
        for (const char *name : {"home", "run", "services"})
            QDir(m_folder.path()).mkpath(QString::fromLatin1(name));
        QFile::setPermissions(m_folder.filePath(QStringLiteral("run")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const auto in = [this](const char *path) { return m_folder.filePath(QString::fromLatin1(path)).toUtf8(); };
        qputenv("HOME", in("home"));
        qputenv("XDG_RUNTIME_DIR", in("run"));
        qputenv("XDG_CONFIG_HOME", in("home/config"));
        qputenv("XDG_DATA_HOME", in("home/data"));
        qputenv("XDG_CACHE_HOME", in("home/cache"));
        qputenv("GSETTINGS_BACKEND", "memory");
        QFile config(m_folder.filePath(QStringLiteral("bus.conf")));
        EXPECT_TRUE(config.open(QFile::WriteOnly));
        config.write("<busconfig><type>session</type><listen>unix:tmpdir=" + in("run") + "</listen><servicedir>" +
                     in("services") +
                     "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/><allow own=\"*\"/>"
                     "<allow receive_sender=\"*\"/></policy></busconfig>");
        config.close();
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                       QStringLiteral("--config-file=") + config.fileName()});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(10'000)) {
        }
        const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
        m_watch = QDBusConnection::connectToBus(address, QStringLiteral("evolution-server"));
    }
    ~EvolutionServer()
    {
        for (QProcess *each : {&m_factory, &m_registry, &m_daemon}) {
            each->kill();
            each->waitForFinished();
        }
    }

    void run(QProcess &process, const char *program, const QString &name)
    {
        process.kill();
        process.waitForFinished();
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(programs() + QString::fromLatin1(program));
        ASSERT_TRUE(waitFor([&] { return isOnBus(name); })) << program;
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QProcess m_registry;
    QProcess m_factory;
    QDBusConnection m_watch{QStringLiteral("none yet")};
};

} // namespace orvelle::test
