#include "app/ProgramMachine.h"
#include "platform/freedesktop/ApacheServer.h"
#include "support/Keyring.h"

#include <QDirIterator>

namespace orvelle::test {
namespace {

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
constexpr qint64 patience = 90'000;

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

/// What of all that a machine has stored holds these bytes.
QStringList filesWith(const QByteArray &bytes, const QString &folder)
{
    QStringList found;
    for (QDirIterator each(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); each.hasNext();) {
        QFile file(each.next());
        if (file.open(QFile::ReadOnly) && file.readAll().contains(bytes))
            found += file.fileName();
    }
    return found;
}

TEST_F(SyncProgram, APasswordIsInTheKeyringForAsLongAsItsPlaceIsUsed)
{
    if (!ApacheServer::isInstalled() || !Keyring::isInstalled())
        GTEST_SKIP() << "the package apache2 or gnome-keyring is not installed";
    ApacheServer server;
    const QString place = u"sync configure --user ann --webdav "_s + server.folder().toString();
    const QString account = u"ann "_s + server.folder().toString();
    Keyring keyrings[] = {Keyring(a.busAddress()), Keyring(b.busAddress())};
    const auto kept = [&](int which) { return keyrings[which].count(u"account"_s, account); };
    for (Keyring &keyring : keyrings)
        ASSERT_TRUE(keyring.start());
    a.startProgram();
    b.startProgram();

    EXPECT_EQ(a.run(place).code, 1) << "no password at all";
    const Answer refused = a.run(place + u" --password -"_s, "wrong\n");
    EXPECT_TRUE(refused.err.contains("user name and the password")) << refused.err.toStdString();
    EXPECT_FALSE(a.status()[u"enabled"].toBool());
    const Answer begun = a.run(place + u" --password - --json"_s, "geheim\n");
    ASSERT_EQ(begun.code, 0) << begun.err.toStdString() << server.errors().toStdString();
    EXPECT_TRUE(begun.out.contains("webdav") && begun.out.contains("ann")) << begun.out.toStdString();
    ASSERT_EQ(b.run(place + u" --password - --use-existing"_s, "geheim\n").code, 0);
    EXPECT_EQ(kept(0), 1);
    EXPECT_EQ(kept(1), 1);

    ASSERT_EQ(a.run("add https://seen.invalid/").code, 0);
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(Machine::becomes([this] { return b.shows("seen.invalid"); }, patience))
        << a.run("sync status").out.toStdString() << b.run("sync status").out.toStdString();
    printf("from the edit over the server to the other menu: %lld ms\n", static_cast<long long>(timer.elapsed()));
    EXPECT_EQ(b.run("sync now --json").code, 0);
    for (Machine *machine : {&a, &b}) {
        EXPECT_EQ(filesWith("geheim", machine->home()), QStringList());
        EXPECT_FALSE(machine->log().contains("geheim"));
    }

    EXPECT_EQ(a.run("sync disable --json").code, 0);
    EXPECT_EQ(kept(0), 0);
    const Answer moved = b.run(configure());
    EXPECT_EQ(moved.code, 0) << moved.err.toStdString() << b.log().toStdString();
    EXPECT_EQ(kept(1), 0);
}

TEST_F(SyncProgram, ADocumentIsSynchronisedIntoTheRunningProgramAndTravelsOn)
{
    const QString exported = shared.filePath(u"exported"_s);
    ASSERT_EQ(b.run("add https://one.invalid/").code, 0);
    ASSERT_EQ(b.run("add https://two.invalid/").code, 0);
    ASSERT_EQ(b.run(u"export "_s + exported).code, 0);
    ASSERT_EQ(a.run(u"import "_s + exported + u" --mode replace"_s).code, 0);
    ASSERT_EQ(b.run("add https://three.invalid/").code, 0);
    ASSERT_EQ(b.run(u"export "_s + exported).code, 0);
    a.startProgram();
    ASSERT_EQ(a.run(configure()).code, 0);
    ASSERT_EQ(a.run("add https://since.invalid/").code, 0); // after the document was written

    const QString import = u"import "_s + exported + u" --mode sync"_s;
    const Answer told = a.run(import);
    EXPECT_TRUE(told.err.contains("Nothing was changed")) << told.err.toStdString();
    EXPECT_FALSE(a.shows("three.invalid"));
    const Answer applied = a.run(import + u" --apply --json"_s);
    ASSERT_EQ(applied.code, 0) << applied.err.toStdString();
    const QJsonObject figures = QJsonDocument::fromJson(applied.out).object();
    EXPECT_EQ(figures[u"addedCount"].toInt(), 1) << applied.out.toStdString();
    EXPECT_EQ(figures[u"removedCount"].toInt(), 0);
    for (const char *name : {"one.invalid", "two.invalid", "three.invalid", "since.invalid"})
        EXPECT_TRUE(a.shows(name)) << name;
    EXPECT_TRUE(a.run("snapshots").out.contains("sync"));
    EXPECT_EQ(a.run("sync now").code, 0);
    QFile written(document());
    ASSERT_TRUE(written.open(QFile::ReadOnly));
    EXPECT_TRUE(written.readAll().contains("three.invalid")) << "the running program knows of the change";

    // A second time there is nothing to do, and a step back takes it all back.
    EXPECT_TRUE(a.run(import + u" --apply --json"_s).out.contains("\"addedCount\":0"));
    EXPECT_EQ(a.run("undo").code, 0);
    EXPECT_FALSE(a.shows("three.invalid"));
    EXPECT_TRUE(a.shows("since.invalid"));
}

} // namespace
} // namespace orvelle::test
