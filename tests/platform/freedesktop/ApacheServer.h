#pragma once

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>

#include <pwd.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

namespace orvelle::test {

/// Apache with its WebDAV modules in a folder of its own, at a free port of
/// this machine, for the user "ann" with the password "geheim".
class ApacheServer
{
public:
    static bool isInstalled()
    {
        return !program().isEmpty() && QFile::exists(QStringLiteral("/usr/lib/apache2/modules/mod_dav_fs.so"));
    }

    /// `disk` are the mount options of a tmpfs for what it stores ("size=4m"),
    /// in a process with private mounts; without them it is the disk of all.
    explicit ApacheServer(const QByteArray &disk = {}) : m_hasDisk(!disk.isEmpty())
    {
        QDir(m_root.path()).mkpath(QStringLiteral("dav"));
        if (m_hasDisk && ::mount("none", dav().constData(), "tmpfs", 0, disk.constData()) != 0)
            qWarning("the server's disk could not be mounted");
        QDir(m_root.path()).mkpath(QStringLiteral("dav/Orvelle"));
        QDir(m_root.path()).mkpath(QStringLiteral("run"));
        write("passwords",
              "ann:{SHA}" + QCryptographicHash::hash("geheim", QCryptographicHash::Sha1).toBase64() + '\n');
        handOver();
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        m_port = probe.serverPort();
        probe.close();
        write("apache.conf", configuration());
        start();
    }
    ~ApacheServer()
    {
        stop();
        if (m_hasDisk)
            ::umount(dav().constData());
    }
    Q_DISABLE_COPY_MOVE(ApacheServer)

    QUrl folder() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/Orvelle/").arg(m_port)); }
    QString path(const QString &name = {}) const { return m_root.path() + QStringLiteral("/dav/Orvelle/") + name; }

    /// False when it does not come up.
    bool start()
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        // Also when this test is killed.
        m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_process.start(program(), {QStringLiteral("-DFOREGROUND"), QStringLiteral("-f"),
                                    m_root.filePath(QStringLiteral("apache.conf"))});
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < 15'000 && m_process.state() != QProcess::NotRunning;) {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, m_port);
            if (socket.waitForConnected(100))
                return true;
            m_process.waitForFinished(20);
        }
        return false;
    }
    /// As a crash would: nobody is told.
    void stop()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    QByteArray errors() const { return written("errors"); }
    /// Method, status and bytes of each answer's body, a line each.
    QByteArray requests() const { return written("requests"); }

private:
    QByteArray dav() const { return m_root.filePath(QStringLiteral("dav")).toUtf8(); }
    QByteArray written(const char *log) const
    {
        QFile file(m_root.filePath(QStringLiteral("run/") + QString::fromLatin1(log)));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QString program()
    {
        return QStandardPaths::findExecutable(QStringLiteral("apache2"),
                                              {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin")});
    }
    void write(const char *name, const QByteArray &bytes)
    {
        QFile file(m_root.filePath(QString::fromLatin1(name)));
        file.open(QFile::WriteOnly);
        file.write(bytes);
    }
    /// Its workers do not run as root.
    void handOver()
    {
        if (::geteuid() != 0)
            return;
        const passwd *worker = ::getpwnam("www-data");
        QFile::setPermissions(m_root.path(), QFile::Permissions(0x7755));
        for (const char *each : {"dav", "dav/Orvelle", "run"}) {
            const QByteArray path = m_root.filePath(QString::fromLatin1(each)).toUtf8();
            if (worker == nullptr || ::chown(path.constData(), worker->pw_uid, worker->pw_gid) != 0)
                qWarning("the server's folders could not be handed over");
        }
    }
    QByteArray configuration() const
    {
        QByteArray text;
        for (const char *name :
             {"mpm_event", "dav", "dav_fs", "auth_basic", "authn_core", "authn_file", "authz_core", "authz_user"})
            text += QByteArray("LoadModule ") + name + "_module /usr/lib/apache2/modules/mod_" + name + ".so\n";
        if (::geteuid() == 0)
            text += "User www-data\nGroup www-data\n";
        text += R"(ServerRoot @
ServerName localhost
Listen 127.0.0.1:#
PidFile @/run/pid
ErrorLog @/run/errors
CustomLog @/run/requests "%m %>s %B"
Mutex posixsem
DAVLockDB @/run/locks
DocumentRoot @/dav
<Directory @/dav>
Dav On
AuthType Basic
AuthName files
AuthBasicProvider file
AuthUserFile @/passwords
Require valid-user
</Directory>
)";
        return text.replace('@', m_root.path().toUtf8()).replace('#', QByteArray::number(m_port));
    }

    QTemporaryDir m_root;
    QProcess m_process;
    quint16 m_port = 0;
    bool m_hasDisk;
};

} // namespace orvelle::test
