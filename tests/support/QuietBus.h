#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/prctl.h>

#include <csignal>

namespace orvelle::test {

/// A session bus that starts nothing by itself: whoever is on it was started
/// by the test. With the distribution's configuration the first question for
/// a password would start a keyring that nobody can unlock.
class QuietBus
{
public:
    QuietBus()
    {
        QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
        configuration.open(QFile::WriteOnly);
        configuration.write("<busconfig><type>session</type><listen>unix:dir=" + m_folder.path().toUtf8() +
                            "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        // Also when this test is killed.
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + configuration.fileName(),
                                                       QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(30'000)) {
        }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~QuietBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(QuietBus)

    QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace orvelle::test
