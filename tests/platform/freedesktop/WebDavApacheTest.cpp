#include "platform/freedesktop/ApacheServer.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/WebDavTesting.h"

#include <QDeadlineTimer>
#include <QSaveFile>

#include <array>
#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// The same as with every container, on a server that many people run.
namespace orvelle {

namespace {

using Machine = test::WebDavMachine<SystemClock>;

/// Without the package there is no server to try with.
#define SKIP_WITHOUT_APACHE()                                                                                          \
    if (!test::ApacheServer::isInstalled())                                                                            \
    GTEST_SKIP() << "the package apache2 is not installed"

class ApacheSubject
{
public:
    ApacheSubject() { skipWithoutApache(); }

    CloudContainer &container() { return *m_machine.container; }
    void otherMachineWrites(const QString &name, const QByteArray &bytes)
    {
        QSaveFile file(m_apache.path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() && file.commit());
        QFile::setPermissions(m_apache.path(name), QFile::Permissions(0x6666));
    }
    void otherMachineRemoves(const QString &name) { EXPECT_TRUE(QFile::remove(m_apache.path(name))); }
    std::unique_ptr<CloudContainer> anotherMachine()
    {
        m_others.push_back(std::make_unique<Machine>(m_clock, m_apache.folder()));
        return std::move(m_others.back()->container);
    }
    void goesAway() { m_apache.stop(); }
    void comesBack() { EXPECT_TRUE(m_apache.start()); }
    /// A tag becomes a strong one after a second; many of them take a while.
    bool wait(const std::function<bool()> &condition)
    {
        return test::spinUntil(condition) || test::spinUntil(condition) || test::spinUntil(condition) ||
               test::spinUntil(condition) || test::spinUntil(condition) || test::spinUntil(condition) ||
               test::spinUntil(condition) || test::spinUntil(condition) || test::spinUntil(condition);
    }

private:
    static void skipWithoutApache() { SKIP_WITHOUT_APACHE(); }

    SystemClock m_clock;
    test::ApacheServer m_apache;
    Machine m_machine{m_clock, m_apache.folder()};
    std::vector<std::unique_ptr<Machine>> m_others;
};

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(Apache, CloudContainerContract, ApacheSubject);
}

TEST(WebDavApache, WhatWasWrittenIsKnownAndNeedNotComeBack)
{
    SKIP_WITHOUT_APACHE();
    SystemClock clock;
    test::ApacheServer apache;
    Machine machine(clock, apache.folder());
    const auto first = machine.write(QByteArray(1 << 20, 'x'), {});
    ASSERT_EQ(test::said(first), "ok") << apache.errors().toStdString();
    const auto read = machine.read();
    EXPECT_EQ(read->version, first->version);
    EXPECT_EQ(read->modifiedAt, first->modifiedAt);
    EXPECT_TRUE(test::spinUntil([&] { return apache.requests().endsWith("GET 304 0\n"); }))
        << apache.requests().toStdString();
    EXPECT_EQ(QDir(apache.path()).entryList(QDir::Files), QStringList(Machine::name)) << "nothing else is left";
}

// Run by the test below in another process: adds its lines one by one and
// writes each down here once the server has it.
TEST(WebDavApache, DISABLED_AddsLines)
{
    const QByteArray me = qgetenv("ORVELLE_TEST_NAME");
    SystemClock clock;
    const QString file = qEnvironmentVariable("ORVELLE_TEST_FILE");
    Machine machine(clock, QUrl(qEnvironmentVariable("ORVELLE_TEST_FOLDER")));
    machine.cacheFolder = file + u".cache"_s;
    machine.restart();
    QFile acknowledged(file);
    ASSERT_TRUE(acknowledged.open(QFile::WriteOnly | QFile::Append | QFile::Unbuffered));
    for (const auto parent = ::getppid(); ::getppid() == parent;) {
        const auto before = machine.read();
        if (!before && before.error().kind != CloudError::Kind::Missing) {
            test::spinUntil([until = QDeadlineTimer(200)] { return until.hasExpired(); });
            continue;
        }
        const QByteArray old = before ? before->bytes : QByteArray();
        const QByteArray line = me + QByteArray::number(old.count(me)) + '\n';
        if (machine.write(old + line, before ? before->version : QByteArray()))
            acknowledged.write(line);
    }
}

TEST(WebDavApache, ProcessesThatAreKilledAndAServerThatRestartsLoseNothing)
{
    SKIP_WITHOUT_APACHE();
    const int edits = std::max(8, qEnvironmentVariableIntValue("ORVELLE_TEST_ROUNDS"));
    test::ApacheServer apache;
    const QTemporaryDir folder;
    std::mt19937 random(20'261'121);
    const auto linesOf = [](const QString &path) {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
    };
    struct Writer {
        QString name;
        QProcess process{};
        QDeadlineTimer lives{};
    };
    std::array<Writer, 2> writers{Writer{u"a"_s}, Writer{u"b"_s}};
    bool restarted = false;
    int kills = 0;
    const QDeadlineTimer deadline(edits * 12s);
    for (qsizetype done = 0; done < edits && !deadline.hasExpired();) {
        done = 0;
        for (Writer &writer : writers) {
            if (writer.process.state() != QProcess::NotRunning && writer.lives.hasExpired()) {
                writer.process.kill(); // at no moment of its choosing
                writer.process.waitForFinished();
                ++kills;
            }
            if (writer.process.state() == QProcess::NotRunning) {
                auto environment = QProcessEnvironment::systemEnvironment();
                environment.insert(u"ORVELLE_TEST_NAME"_s, writer.name);
                environment.insert(u"ORVELLE_TEST_FOLDER"_s, apache.folder().toString());
                environment.insert(u"ORVELLE_TEST_FILE"_s, folder.filePath(writer.name));
                writer.process.setProcessEnvironment(environment);
                writer.process.setStandardOutputFile(QProcess::nullDevice());
                writer.process.setStandardErrorFile(QProcess::nullDevice());
                writer.process.start(
                    QCoreApplication::applicationFilePath(),
                    {u"--gtest_filter=WebDavApache.DISABLED_AddsLines"_s, u"--gtest_also_run_disabled_tests"_s});
                writer.process.waitForStarted();
                writer.lives = QDeadlineTimer(2500 + random() % 3000);
            }
            done += std::max<qsizetype>(0, linesOf(folder.filePath(writer.name)).size() - 1);
        }
        if (!restarted && done >= edits / 2) {
            restarted = true;
            apache.stop();
            ASSERT_TRUE(apache.start());
        }
        writers[0].process.waitForFinished(20);
    }
    for (Writer &writer : writers) {
        writer.process.kill();
        writer.process.waitForFinished();
    }
    const QList<QByteArray> stored = linesOf(apache.path(Machine::name));
    qsizetype acknowledged = 0;
    for (const Writer &writer : writers) {
        for (const QByteArray &line : linesOf(folder.filePath(writer.name))) {
            EXPECT_TRUE(line.isEmpty() || stored.count(line) == 1) << line.toStdString() << " is lost, or there twice";
            acknowledged += !line.isEmpty();
        }
    }
    EXPECT_GE(acknowledged, edits) << kills << " kills; " << apache.errors().toStdString();
    EXPECT_GE(kills, 2);
    EXPECT_TRUE(restarted);
}

} // namespace orvelle
