// Two machines that share links: how long 10,000 of them hold up the main
// thread, how long an edit takes until the other machine's menu has it, and
// what is sent while nobody does anything.
#include "Figures.h"
#include "MainThread.h"
#include "Relay.h"
#include "SampleTrees.h"
#include "SyncSubject.h"
#include "platform/freedesktop/ApacheServer.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QLoggingCategory>

using namespace orvelle;
using namespace orvelle::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int manyLinks = 10'000;

QString someLink(SyncSubject &subject, int number)
{
    const LinkItem &group = subject.links().links().at(number % subject.links().links().size());
    return group.children->at(number % group.children->size()).stableId;
}

void fill(SyncSubject &subject, int links, int groups)
{
    subject.links().edit(LinkStore::Step::Ordinary, u"bench"_s, [=](LinkList &tree) {
        tree = heavySampleTree(links, groups);
        return true;
    });
}

/// The longest stretches of work on the main thread, each of another step.
class Pauses
{
public:
    explicit Pauses(WatchedApplication &application) : m_application(application)
    {
        fill(m_a, manyLinks, 100);
        m_a.shareIn(m_shared.path());
        m_a.begin();
        m_application.takeLongest();
        m_b.shareIn(m_shared.path());
        m_b.begin();
        note(m_configured);
    }

    void run(int runs)
    {
        for (int i = 0; i < runs; ++i) {
            upload(i);
            exchangeEdits(i);
            load();
        }
    }

    QList<Series> series() const { return {m_configured, m_edit, m_upload, m_merge, m_load}; }

private:
    void note(Series &series) { series.values += m_application.takeLongest(); }

    void rename(SyncSubject &subject, int number, const QString &name)
    {
        m_application.takeLongest();
        const QString stableId = someLink(subject, number);
        m_application.measure([&] { subject.rename(stableId, name); });
        note(m_edit);
    }

    void saveNow(SyncSubject &subject)
    {
        bool done = false;
        subject.sync().saveToCloud([&done](const auto &result) {
            if (!result)
                qFatal("not written: %s", qPrintable(result.error().description));
            done = true;
        });
        m_application.await([&] { return done; }, "an upload");
    }

    /// An edit here is written, and comes in there.
    void upload(int i)
    {
        const QString name = u"changed in run %1"_s.arg(i);
        const QString stableId = someLink(m_a, 7 * i);
        rename(m_a, 7 * i, name);
        saveNow(m_a);
        note(m_upload);
        m_application.await([&] { return m_b.nameOf(stableId) == name && m_b.isIdle(); }, "the change");
        note(m_merge);
    }

    /// Both edited.
    void exchangeEdits(int i)
    {
        const QString name = u"changed here and there in run %1"_s.arg(i);
        const QString fromA = someLink(m_a, 7 * i + 1);
        const QString fromB = someLink(m_b, 7 * i + 2);
        rename(m_a, 7 * i + 1, name);
        rename(m_b, 7 * i + 2, name);
        saveNow(m_a);
        saveNow(m_b);
        m_application.await([&] { return m_b.nameOf(fromA) == name && m_a.nameOf(fromB) == name; }, "both changes");
        m_application.await([&] { return m_a.isIdle() && m_b.isIdle(); }, "the end");
        note(m_merge);
    }

    void load()
    {
        bool done = false;
        m_b.sync().loadFromCloud([&done](const auto &result) {
            if (!result)
                qFatal("not loaded: %s", qPrintable(result.error().description));
            done = true;
        });
        m_application.await([&] { return done && m_b.isIdle(); }, "the load");
        note(m_load);
    }

    WatchedApplication &m_application;
    QTemporaryDir m_shared;
    SyncSubject m_a;
    SyncSubject m_b;
    Series m_configured{u"main/configure"_s, u"ms"_s, {}};
    Series m_edit{u"main/edit"_s, u"ms"_s, {}};
    Series m_upload{u"main/upload"_s, u"ms"_s, {}};
    Series m_merge{u"main/merge"_s, u"ms"_s, {}};
    Series m_load{u"main/load"_s, u"ms"_s, {}};
};

/// From an edit to the tree that the other machine's menu is made of.
class Distance
{
public:
    Distance(WatchedApplication &application, const QString &name)
        : m_application(application), m_edited{u"distance/"_s + name, u"s"_s, {}}
    {
        fill(m_a, 100, 10);
    }

    SyncSubject &a() { return m_a; }
    SyncSubject &b() { return m_b; }

    void begin()
    {
        m_a.begin();
        m_b.begin();
    }

    /// Every other edit is asked for, once it is written, as an opened menu does.
    void run(int runs, bool opened)
    {
        for (int i = 0; i < runs; ++i) {
            const QString name = u"changed %1 in run %2"_s.arg(opened).arg(i);
            const QString stableId = someLink(m_a, i);
            QElapsedTimer timer;
            timer.start();
            m_a.rename(stableId, name);
            m_application.await([this] { return !m_a.isIdle(); }, "the wait for more edits");
            m_application.await([this] { return m_a.isIdle(); }, "the upload");
            if (opened) {
                sleep(5500); // since the last look
                timer.restart();
                m_b.sync().checkSyncIfNeeded();
            }
            m_application.await([&] { return m_b.nameOf(stableId) == name; }, "the edit");
            (opened ? m_opened : m_edited).values += static_cast<double>(timer.elapsed()) / 1000;
            m_application.await([this] { return m_b.isIdle(); }, "peace");
        }
    }

    void sleep(int milliseconds)
    {
        QElapsedTimer timer;
        timer.start();
        m_application.await([&] { return timer.elapsed() > milliseconds; }, "some time");
    }

    const Series &edited() const { return m_edited; }
    const Series &opened() const { return m_opened; }

private:
    WatchedApplication &m_application;
    SyncSubject m_a;
    SyncSubject m_b;
    Series m_edited;
    Series m_opened{u"distance/opened"_s, u"s"_s, {}};
};

QList<Series> folderSeries(WatchedApplication &application, int runs)
{
    QTemporaryDir shared;
    Distance distance(application, u"folder"_s);
    distance.a().shareIn(shared.path());
    distance.b().shareIn(shared.path());
    distance.begin();
    distance.run(runs, false);
    return {distance.edited()};
}

QList<Series> serverSeries(WatchedApplication &application, int runs)
{
    if (!test::ApacheServer::isInstalled())
        qFatal("the package apache2 is not installed");
    test::ApacheServer apache;
    Relay relay(static_cast<quint16>(apache.folder().port()));
    QUrl address = apache.folder();
    address.setPort(relay.port());
    Distance distance(application, u"server"_s);
    distance.a().shareOn(address);
    distance.b().shareOn(apache.folder());
    distance.begin();
    distance.run(std::max(1, runs / 3), true);
    distance.run(std::max(1, runs / 3), false);
    Series idle{u"idle/server"_s, u"KiB an hour"_s, {}};
    constexpr int pollMilliseconds = 30'000;
    for (int i = 0; i < 4; ++i) { // all polls are alike
        const qint64 before = relay.bytes();
        distance.sleep(pollMilliseconds);
        idle.values += static_cast<double>(relay.bytes() - before) * 3'600'000 / pollMilliseconds / 1024;
    }
    return {distance.edited(), distance.opened(), idle};
}

} // namespace

int main(int argc, char **argv)
{
    WatchedApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"*.info=false"_s);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption runs(u"runs"_s, u"Rounds."_s, u"n"_s, u"30"_s);
    const QCommandLineOption out(u"out"_s, u"Where the JSON goes."_s, u"file"_s);
    parser.addOptions({runs, out});
    parser.addPositionalArgument(u"part"_s, u"main, folder or server; all without."_s, u"[part...]"_s);
    parser.process(application);

    const int rounds = parser.value(runs).toInt();
    QList<Series> series;
    const QStringList parts = parser.positionalArguments();
    if (parts.isEmpty() || parts.contains(u"main"_s)) {
        Pauses pauses(application);
        pauses.run(rounds);
        series += pauses.series();
    }
    if (parts.isEmpty() || parts.contains(u"folder"_s))
        series += folderSeries(application, rounds);
    if (parts.isEmpty() || parts.contains(u"server"_s))
        series += serverSeries(application, rounds);
    return writeJson(parser.value(out), series) ? 0 : 1;
}
