#include "platform/freedesktop/DeadVolume.h"

#include "ProgramMachine.h"
#include "platform/freedesktop/PrivateMounts.h"

// The program beside a network disk whose server is gone.
namespace orvelle::test {
namespace {

class DeadVolumeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!havePrivateMounts())
            GTEST_SKIP() << "nothing may be mounted here";
        dead = std::make_unique<DeadVolume>(QFile::encodeName(folder.path()));
        if (!dead->isMounted())
            GTEST_SKIP() << "no mounts of programs here";
    }
    void TearDown() override
    {
        // Folders are removed at the end, and that looks behind links.
        dead.reset();
        EXPECT_LT(slowest, 20'000) << "a dead disk is waited for without end";
    }
    /// The answer of the running program, which only its main thread gives.
    Answer ask(const QString &line)
    {
        QElapsedTimer timer;
        timer.start();
        const Answer answer = machine->run(line);
        slowest = std::max(slowest, timer.elapsed());
        EXPECT_EQ(answer.code, 0) << qPrintable(line) << answer.err.constData();
        return answer;
    }

    QTemporaryDir own; ///< with a link into the other
    QTemporaryDir folder;
    std::unique_ptr<DeadVolume> dead;
    std::unique_ptr<Machine> machine;
    qint64 slowest = 0;
};

TEST_F(DeadVolumeTest, HoldsUpNothingButWhatIsOnIt)
{
    machine = std::make_unique<Machine>();
    const QString here = own.filePath(u"letter.txt"_s);
    QFile letter(here);
    ASSERT_TRUE(letter.open(QFile::WriteOnly));
    letter.close();
    ASSERT_EQ(::symlink(QFile::encodeName(folder.path()), QFile::encodeName(own.filePath(u"nas"_s))), 0);
    ASSERT_EQ(machine->run(u"add %1"_s.arg(here)).code, 0);
    machine->startProgram();

    const QString onIt = folder.path() + u"/letter.txt"_s;
    const QByteArray file = ask(u"add %1 --name File"_s.arg(onIt)).out.trimmed();
    const QByteArray behindLink = ask(u"add %1/nas/letter.txt --name Link"_s.arg(own.path())).out.trimmed();
    const QByteArray address = ask(u"add file://%1 --name Address"_s.arg(onIt)).out.trimmed();
    for (const QByteArray &each : {file, behindLink, address, file})
        ask(u"open "_s + QString::fromLatin1(each));
    ask(u"update %1 --path %2/other.txt"_s.arg(QString::fromLatin1(file), folder.path()));
    QProcess commands[3];
    machine->begin(commands[0], u"import %1/a.ovexport --mode merge"_s.arg(folder.path()));
    machine->begin(commands[1], u"export %1/b.ovexport"_s.arg(own.path() + u"/nas"_s));
    machine->begin(commands[2], u"import-links %1/links"_s.arg(folder.path()));
    EXPECT_TRUE(machine->shows("Link"));
    ask(u"toggle"_s);
    ask(u"toggle"_s);
    for (QProcess &command : commands) {
        EXPECT_FALSE(command.waitForFinished(1)) << "the disk is not that dead";
        command.kill();
        command.waitForFinished();
    }
    machine->kill();

    // What lies there is looked at when it starts.
    machine->startProgram();
    EXPECT_TRUE(machine->shows("Address"));
    ask(u"add https://example.org/"_s);
    ask(u"settings"_s);
    ask(u"menu --json"_s);
    ask(u"quit"_s);
    EXPECT_TRUE(machine->programEnds());
}

} // namespace
} // namespace orvelle::test
