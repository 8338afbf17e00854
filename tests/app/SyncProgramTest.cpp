#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

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
    Machine() : m_environment(QProcessEnvironment::systemEnvironment())
    {
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
            m_environment.insert(QString::fromLatin1(name), path);
        }
        m_environment.insert(u"LANG"_s, u"C.UTF-8"_s);
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        m_environment.insert(u"https_proxy"_s, u"http://127.0.0.1:9"_s);
        m_bus.setProcessEnvironment(m_environment);
        m_bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
        m_bus.waitForReadyRead(10'000);
        m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, QString::fromLatin1(m_bus.readLine()).trimmed());
    }
    ~Machine()
    {
        kill();
        m_bus.terminate();
        m_bus.waitForFinished();
    }

    void startProgram()
    {
        m_program = std::make_unique<QProcess>();
        m_program->setProcessEnvironment(m_environment);
        m_program->setProcessChannelMode(QProcess::MergedChannels);
        m_program->start(program(), QStringList());
        EXPECT_TRUE(becomes([this] { return run("toggle").code == 0; }, 20'000));
    }
    /// As a power cut does.
    void kill()
    {
        if (!m_program)
            return;
        m_program->kill();
        m_program->waitForFinished();
        m_program.reset();
    }

    Answer run(const QString &line, const QByteArray &input = {})
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.start(program(), line.split(u' '));
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(60'000))
            return {};
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Answer run(const char *line) { return run(QString::fromUtf8(line)); }
    bool shows(const char *name) { return run("menu").out.contains(name); }
    QJsonObject status() { return QJsonDocument::fromJson(run("sync status --json").out).object(); }

    static bool becomes(const std::function<bool()> &condition, qint64 patience)
    {
        QElapsedTimer timer;
        timer.start();
        while (!condition()) {
            if (timer.elapsed() > patience)
                return false;
        }
        return true;
    }

private:
    static QString program() { return QStringLiteral(ORVELLE_BINARY_DIR "/bin/orvelle"); }

    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    QProcess m_bus;
    std::unique_ptr<QProcess> m_program;
};

class SyncProgram : public ::testing::Test
{
protected:
    QString configure(const char *more = "") const
    {
        return u"sync configure --folder "_s + shared.path() + QLatin1StringView(more);
    }
    QString document() const { return shared.filePath(u"orvelle-sync.ovexport"_s); }

    QTemporaryDir shared;
    Machine a;
    Machine b;
};

/// Long enough on a busy machine; what it takes is printed.
constexpr qint64 patience = 40'000;

TEST_F(SyncProgram, CommandsAloneShareATreeThroughAFolder)
{
    EXPECT_EQ(a.status()[u"state"].toString(), u"off");
    EXPECT_EQ(a.run("sync now").code, 1) << "no place";
    ASSERT_EQ(a.run("add https://one.invalid/").code, 0);
    const Answer begun = a.run(configure());
    ASSERT_EQ(begun.code, 0) << begun.err.toStdString();
    EXPECT_TRUE(QFile::exists(document()));

    // On the other machine the document needs a word about what to do with it.
    ASSERT_EQ(b.run("add https://two.invalid/").code, 0);
    const Answer undecided = b.run(configure());
    EXPECT_EQ(undecided.code, 1);
    EXPECT_TRUE(undecided.err.contains("--use-existing")) << undecided.err.toStdString();
    EXPECT_FALSE(b.status()[u"enabled"].toBool());
    EXPECT_EQ(b.status()[u"container"].toString(), u"none") << "as before";
    EXPECT_TRUE(b.shows("two.invalid"));
    const Answer used = b.run(configure(" --use-existing"));
    ASSERT_EQ(used.code, 0) << used.err.toStdString();
    EXPECT_TRUE(b.shows("one.invalid"));
    EXPECT_FALSE(b.shows("two.invalid"));
    EXPECT_TRUE(b.run("snapshots").out.contains("replace")) << "what was replaced is kept";

    ASSERT_EQ(b.run("add https://three.invalid/").code, 0);
    const Answer now = b.run("sync now --json");
    EXPECT_EQ(now.code, 0) << now.err.toStdString();
    const Answer taken = a.run("sync now --json");
    EXPECT_TRUE(taken.out.contains("\"removed\":0")) << taken.err.toStdString();
    EXPECT_TRUE(a.shows("three.invalid"));
    EXPECT_EQ(a.run("sync disable").code, 0);
    EXPECT_FALSE(a.status()[u"enabled"].toBool());
    EXPECT_TRUE(QFile::exists(document()));
}

TEST_F(SyncProgram, RefusesWhatCannotBeAndNeverTakesAPasswordAsAnArgument)
{
    const std::tuple<const char *, int, const char *> cases[] = {
        {"sync configure", 2, "--folder"},
        {"sync configure --folder . --webdav https://e", 2, "--folder"},
        {"sync configure --folder . --password -", 2, "no password"},
        {"sync configure --folder . --use-existing --create-new", 2, "exclude"},
        {"sync configure --webdav https://e --user u --password secret", 2, "never given on the command line"},
        {"sync configure --webdav http://cloud.invalid/dav --user u", 1, "https://"},
        {"sync configure --webdav https://u:p@cloud.invalid/dav --user u", 1, "own fields"},
        {"sync configure --webdav https://cloud.invalid/dav", 1, "name you use"},
        {"sync configure --folder no/such/folder", 1, "no such folder"},
        {"import x --mode merge --apply", 2, "--apply"},
    };
    for (const auto &[line, code, words] : cases) {
        const Answer answer = a.run(line);
        EXPECT_EQ(answer.code, code) << line;
        EXPECT_TRUE(answer.err.contains(words)) << line << ": " << answer.err.toStdString();
        EXPECT_EQ(answer.err.count('\n'), 1) << line;
    }
    EXPECT_EQ(a.status()[u"container"].toString(), u"none");
}

TEST_F(SyncProgram, AnEditReachesTheOtherRunningProgramAndAKillLosesNothing)
{
    a.startProgram();
    b.startProgram();
    const Answer begun = a.run(configure());
    ASSERT_EQ(begun.code, 0) << begun.err.toStdString();
    const Answer joined = b.run(configure(" --use-existing"));
    ASSERT_EQ(joined.code, 0) << joined.err.toStdString();

    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(a.run("add https://seen.invalid/").code, 0);
    ASSERT_TRUE(Machine::becomes([this] { return b.shows("seen.invalid"); }, patience));
    RecordProperty("milliseconds from edit to the other menu", static_cast<int>(timer.elapsed()));
    printf("from the edit to the other menu: %lld ms\n", static_cast<long long>(timer.elapsed()));

    // Both edit at once, and one dies before it could send anything.
    ASSERT_EQ(a.run("add https://fromthekilled.invalid/").code, 0);
    a.kill();
    ASSERT_EQ(b.run("add https://fromtheother.invalid/").code, 0);
    a.startProgram();
    for (Machine *machine : {&a, &b}) {
        EXPECT_TRUE(Machine::becomes(
            [machine] {
                return machine->shows("fromthekilled.invalid") && machine->shows("fromtheother.invalid") &&
                       machine->shows("seen.invalid");
            },
            patience))
            << machine->run("menu").out.toStdString() << machine->run("sync status").out.toStdString();
    }
    EXPECT_FALSE(b.status()[u"needsUser"].toBool());
}

} // namespace
} // namespace orvelle::test
