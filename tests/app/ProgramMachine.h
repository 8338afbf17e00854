#pragma once

#include "support/QuietBus.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QThread>

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <functional>
#include <memory>

namespace orvelle::test {

using namespace Qt::StringLiterals;

struct Answer {
    int code = -1;
    QByteArray out;
    QByteArray err;
};

/// One user's machine: a home and a session bus of its own, and the real
/// program.
class Machine
{
public:
    /// `disk` are the mount options of a tmpfs for all that is its own
    /// ("size=16m"), in a process with private mounts.
    explicit Machine(const QByteArray &disk = {})
        : m_hasDisk(!disk.isEmpty()), m_environment(QProcessEnvironment::systemEnvironment())
    {
        m_log.open();
        if (m_hasDisk && ::mount("none", m_home.path().toUtf8().constData(), "tmpfs", 0, disk.constData()) != 0)
            qWarning("the machine's disk could not be mounted");
        for (const char *unset : {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE", "LC_ALL"})
            m_environment.remove(QString::fromLatin1(unset));
        const std::pair<const char *, const char *> folders[] = {{"HOME", ""},
                                                                 {"XDG_CONFIG_HOME", "/config"},
                                                                 {"XDG_DATA_HOME", "/data"},
                                                                 {"XDG_CACHE_HOME", "/cache"},
                                                                 {"XDG_RUNTIME_DIR", "/runtime"}};
        for (const auto &[name, folder] : folders) {
            const QString path = m_home.path() + QLatin1StringView(folder);
            QDir().mkpath(path);
            QFile::setPermissions(path, QFile::Permissions(0x7700));
            m_environment.insert(QString::fromLatin1(name), path);
        }
        m_environment.insert(u"LANG"_s, u"C.UTF-8"_s);
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        m_environment.insert(u"https_proxy"_s, u"http://127.0.0.1:9"_s);
        m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.address());
    }
    ~Machine()
    {
        kill();
        if (m_hasDisk)
            ::umount(m_home.path().toUtf8().constData());
    }
    Q_DISABLE_COPY_MOVE(Machine)

    void startProgram()
    {
        m_program = std::make_unique<QProcess>();
        m_program->setProcessEnvironment(m_environment);
        m_program->setProcessChannelMode(QProcess::MergedChannels);
        m_program->setStandardOutputFile(m_log.fileName(), QFile::Append); // a pipe that nobody reads fills up
        m_program->start(program(), QStringList());
        EXPECT_TRUE(becomes([this] { return run("toggle").code == 0; }, 20'000));
    }
    /// After it was told to.
    bool programEnds() { return m_program && m_program->waitForFinished(60'000); }
    /// As a power cut does.
    void kill()
    {
        if (!m_program)
            return;
        m_program->kill();
        m_program->waitForFinished();
        m_program.reset();
    }

    /// Begins a command, for somebody who does other things meanwhile.
    void begin(QProcess &process, const QString &line) const
    {
        process.setProcessEnvironment(m_environment);
        process.start(program(), line.split(u' '));
    }
    Answer run(const QString &line, const QByteArray &input = {})
    {
        QProcess process;
        begin(process, line);
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(60'000))
            return {-1, {}, "no end"};
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Answer run(const char *line) { return run(QString::fromUtf8(line)); }
    bool shows(const char *name) { return run("menu").out.contains(name); }
    QString busAddress() const { return m_bus.address(); }
    QByteArray log() const
    {
        QFile file(m_log.fileName());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    QString home() const { return m_home.path(); }
    QJsonObject status() { return QJsonDocument::fromJson(run("sync status --json").out).object(); }

    static bool becomes(const std::function<bool()> &condition, qint64 patience)
    {
        QElapsedTimer timer;
        timer.start();
        while (!condition()) {
            if (timer.elapsed() > patience)
                return false;
            QThread::msleep(20);
        }
        return true;
    }

private:
    static QString program() { return QStringLiteral(ORVELLE_BINARY_DIR "/bin/orvelle"); }

    QTemporaryDir m_home;
    QTemporaryFile m_log;
    bool m_hasDisk;
    QProcessEnvironment m_environment;
    QuietBus m_bus;
    std::unique_ptr<QProcess> m_program;
};

} // namespace orvelle::test
