// Measures whole processes: how long until the icon is registered, how much
// memory they take then, and how often they wake up while nothing happens.
// Needs a session bus on which nobody owns the notifier watcher's name.
#include "Figures.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

using namespace orvelle::bench;

namespace {

/// The watcher's side of the protocol: https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem
class Watcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost CONSTANT)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    bool hasHost() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList items() const { return {}; }

public slots:
    void RegisterStatusNotifierItem(const QString &) { emit registered(); }
    void RegisterStatusNotifierHost(const QString &) {}

signals:
    void registered();
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();
};

[[noreturn]] void fail(const QString &message)
{
    std::fprintf(stderr, "bench_process: %s\n", qPrintable(message));
    std::exit(1);
}

void sleepInLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

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

/// How often the threads of a process have gone to sleep of their own accord.
qint64 voluntarySwitches(qint64 pid)
{
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    qint64 sum = 0;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += field(tasks.filePath(task) + QStringLiteral("/status"), "voluntary_ctxt_switches:").value_or(0);
    return sum;
}

double pssMiB(qint64 pid)
{
    const auto kib = field(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), "Pss:");
    if (!kib)
        fail(QStringLiteral("cannot read the memory of process %1").arg(pid));
    return static_cast<double>(*kib) / 1024;
}

/// A program under measurement, running from construction to destruction.
class Subject
{
public:
    Subject(Watcher &watcher, const QString &program)
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
    ~Subject()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
        m_process.waitForFinished(5000);
    }
    Subject(const Subject &) = delete;
    Subject &operator=(const Subject &) = delete;

    double startMilliseconds() const { return m_startMilliseconds; }
    qint64 pid() const { return m_process.processId(); }

private:
    QProcess m_process;
    QElapsedTimer m_sinceStart;
    double m_startMilliseconds = 0;
};

struct Program {
    QString name;
    QString path;
    Series start, memory, wakeUps;
};

void measureStarts(Watcher &watcher, QList<Program> &programs, int runs, int settle)
{
    for (int run = -1; run < runs; ++run) { // the first fills the disk cache
        for (Program &program : programs) {
            const Subject subject(watcher, program.path);
            if (run < 0)
                continue;
            program.start.values.append(subject.startMilliseconds());
            sleepInLoop(settle);
            program.memory.values.append(pssMiB(subject.pid()));
        }
    }
}

/// Wake-ups in `windows` stretches of 30 s, each beginning a second after the
/// one before; both programs run side by side.
void measureIdle(Watcher &watcher, QList<Program> &programs, int windows)
{
    constexpr int windowSeconds = 30;
    std::vector<std::unique_ptr<Subject>> subjects;
    for (const Program &program : programs)
        subjects.push_back(std::make_unique<Subject>(watcher, program.path));
    sleepInLoop(10000);
    QList<QList<qint64>> samples(programs.size());
    for (int second = 0; second < windowSeconds + windows; ++second) {
        for (qsizetype i = 0; i < programs.size(); ++i)
            samples[i].append(voluntarySwitches(subjects[static_cast<size_t>(i)]->pid()));
        sleepInLoop(1000);
    }
    for (qsizetype i = 0; i < programs.size(); ++i) {
        for (int begin = 0; begin < windows; ++begin)
            programs[i].wakeUps.values.append(
                static_cast<double>(samples[i][begin + windowSeconds] - samples[i][begin]));
    }
}

Program makeProgram(const QString &name, const QString &path)
{
    return {name,
            path,
            {QStringLiteral("start/") + name, QStringLiteral("ms"), {}},
            {QStringLiteral("pss/") + name, QStringLiteral("MiB"), {}},
            {QStringLiteral("idle/") + name, QStringLiteral("wake-ups in 30 s"), {}}};
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption orvelle(QStringLiteral("orvelle"), QStringLiteral("The program."), QStringLiteral("path"));
    const QCommandLineOption minimal(QStringLiteral("minimal"), QStringLiteral("Its reference."),
                                     QStringLiteral("path"));
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("Starts of each."), QStringLiteral("n"),
                                  QStringLiteral("30"));
    const QCommandLineOption settle(QStringLiteral("settle"), QStringLiteral("Wait before the memory is read."),
                                    QStringLiteral("ms"), QStringLiteral("2500"));
    const QCommandLineOption out(QStringLiteral("out"), QStringLiteral("Where the JSON goes."), QStringLiteral("file"));
    parser.addOptions({orvelle, minimal, runs, settle, out});
    parser.process(application);

    Watcher watcher;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), &watcher, QDBusConnection::ExportAllContents);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
        fail(QStringLiteral("no session bus, or it has a tray already"));

    QList<Program> programs{makeProgram(QStringLiteral("minimal"), parser.value(minimal)),
                            makeProgram(QStringLiteral("orvelle"), parser.value(orvelle))};
    measureStarts(watcher, programs, parser.value(runs).toInt(), parser.value(settle).toInt());
    measureIdle(watcher, programs, parser.value(runs).toInt());

    QList<Series> series;
    for (const Program &program : programs)
        series << program.start << program.memory << program.wakeUps;
    return writeJson(parser.value(out), series) ? 0 : 1;
}

#include "process.moc"
