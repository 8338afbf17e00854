// Measures whole processes: how long until the icon is registered, how much
// memory they take then, and how often they wake up while nothing happens.
// Needs a session bus on which nobody owns the notifier watcher's name.
#include "Figures.h"
#include "Subject.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <memory>
#include <vector>

using namespace orvelle::bench;

namespace {

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

    QList<Program> programs{makeProgram(QStringLiteral("minimal"), parser.value(minimal)),
                            makeProgram(QStringLiteral("orvelle"), parser.value(orvelle))};
    measureStarts(watcher, programs, parser.value(runs).toInt(), parser.value(settle).toInt());
    measureIdle(watcher, programs, parser.value(runs).toInt());

    QList<Series> series;
    for (const Program &program : programs)
        series << program.start << program.memory << program.wakeUps;
    return writeJson(parser.value(out), series) ? 0 : 1;
}
