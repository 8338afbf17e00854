#include "Subject.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace orvelle::bench {

namespace {

/// The sum of a "Name:  123" line over the files that `path` stands for.
std::optional<qint64> field(const QString &path, const QByteArray &name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(name.size()).simplified().split(' ').first().toLongLong();
    }
    return std::nullopt;
}

} // namespace

void fail(const QString &message)
{
    std::fprintf(stderr, "script/bench: %s\n", qPrintable(message));
    std::exit(1);
}

void sleepInLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

Watcher::Watcher()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
        fail(QStringLiteral("no session bus, or it has a tray already"));
}

qint64 voluntarySwitches(qint64 pid)
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    qint64 sum = 0;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += field(tasks.filePath(task) + QStringLiteral("/status"), "voluntary_ctxt_switches:").value_or(0);
    return sum;
}

Activity activityOf(qint64 pid)
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    Activity result;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        Activity::Thread &thread = result.threads[task];
        thread.switches =
            field(tasks.filePath(task) + QStringLiteral("/status"), "voluntary_ctxt_switches:").value_or(0);
        QFile file(tasks.filePath(task) + QStringLiteral("/schedstat"));
        if (file.open(QIODevice::ReadOnly))
            thread.nanoseconds = file.readAll().split(' ').first().toLongLong();
    }
    return result;
}

Activity::Thread between(const Activity &before, const Activity &now)
{
    Activity::Thread sum;
    for (auto it = now.threads.cbegin(); it != now.threads.cend(); ++it) {
        const Activity::Thread old = before.threads.value(it.key());
        sum.switches += it->switches - old.switches;
        sum.nanoseconds += it->nanoseconds - old.nanoseconds;
    }
    return sum;
}

double pssMiB(qint64 pid)
{
    const auto kib = field(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), "Pss:");
    if (!kib)
        fail(QStringLiteral("cannot read the memory of process %1").arg(pid));
    return static_cast<double>(*kib) / 1024;
}

Subject::Subject(Watcher &watcher, const QString &program)
{
    QEventLoop loop;
    QObject::connect(&watcher, &Watcher::registered, &loop, [&] {
        m_startMilliseconds = static_cast<double>(m_sinceStart.nsecsElapsed()) / 1e6;
        loop.quit();
    });
    QTimer::singleShot(20000, &loop, [&] { fail(program + QStringLiteral(" did not register within 20 s")); });
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_sinceStart.start();
    m_process.start(program, {});
    loop.exec();
}

Subject::~Subject()
{
    m_process.terminate();
    if (!m_process.waitForFinished(5000))
        m_process.kill();
    m_process.waitForFinished(5000);
}

} // namespace orvelle::bench
