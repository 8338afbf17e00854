#include "SyncTest.h"
#include "links/LinkCodec.h"
#include "sync/SyncBase.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

class CloudSyncSafetyTest : public SyncTest
{
protected:
    /// Two machines with the same tree.
    void pair(const QStringList &names)
    {
        a = std::make_unique<SyncMachine>(clock, place, u"A"_s);
        b = std::make_unique<SyncMachine>(clock, place, u"B"_s);
        clock.advance(16s);
        for (const QString &name : names)
            add(*a, name);
        settle();
        ASSERT_EQ(here(*b), names.join(u' '));
    }
    static QStringList many(int count)
    {
        QStringList names;
        for (int i = 0; i < count; ++i)
            names += u"n%1"_s.arg(i);
        return names;
    }
    static QStringList sorted(const QString &outline)
    {
        QStringList names = outline.split(u' ', Qt::SkipEmptyParts);
        names.sort();
        return names;
    }
    static QList<QUuid> idsOf(const QStringList &names)
    {
        QList<QUuid> ids;
        for (const QString &name : names)
            ids += idOf(name);
        return ids;
    }

    std::unique_ptr<SyncMachine> a;
    std::unique_ptr<SyncMachine> b;
};

struct BadDocument {
    const char *situation;
    QByteArray (*bytes)(const QByteArray &good);
    SyncStatus::State state;
};

const BadDocument badDocuments[] = {
    {"empty", [](const QByteArray &) { return QByteArray(); }, SyncStatus::State::Failed},
    {"blank", [](const QByteArray &) { return QByteArray("\n \n"); }, SyncStatus::State::Failed},
    {"truncated", [](const QByteArray &good) { return good.left(good.size() / 2); }, SyncStatus::State::Failed},
    {"a page", [](const QByteArray &) { return QByteArray("<html>log in</html>"); }, SyncStatus::State::Failed},
    {"newer format",
     [](const QByteArray &good) {
         return QByteArray(good)
             .replace("\"version\" : 6", "\"version\" : 7")
             .replace("\"version\": 6", "\"version\": 7");
     },
     SyncStatus::State::Failed},
    {"encrypted, without the passphrase", [](const QByteArray &good) { return *SyncCipher("secret").encrypt(good); },
     SyncStatus::State::NeedsPassphrase},
};

} // namespace

TEST_F(CloudSyncSafetyTest, whatCannotBeReadIsNeitherTakenNorReplaced)
{
    pair({u"x"_s});
    const QByteArray good = place.bytes(file);
    for (const BadDocument &bad : badDocuments) {
        SCOPED_TRACE(bad.situation);
        const QByteArray bytes = bad.bytes(good);
        ASSERT_NE(bytes, good);
        const LogCapture log;
        place.otherMachineWrites(file, bytes);
        clock.advance(1s);
        EXPECT_EQ(log.lines().filter(u"CloudSync: Check sync échoué: "_s).size(), 2) << "one on each machine";
        const SyncStatus status = a->sync().status();
        EXPECT_EQ(status.state, bad.state);
        EXPECT_TRUE(status.needsUser());
        EXPECT_FALSE(status.failure.isEmpty());
        const QString tree = here(*a);
        add(*a, QString::fromLatin1(bad.situation).remove(u' ').remove(u','));
        clock.advance(700s);
        EXPECT_EQ(place.bytes(file), bytes);
        EXPECT_TRUE(here(*a).startsWith(tree));

        place.otherMachineWrites(file, good);
        clock.advance(700s);
        EXPECT_EQ(inFile(), here(*a)) << "what waited is uploaded";
        EXPECT_EQ(a->sync().status().state, State::Current);
    }
}

TEST_F(CloudSyncSafetyTest, aDeletionTravelsAndWhatOthersDidNotSeeStays)
{
    pair({u"x"_s, u"y"_s, u"z"_s});
    b->container.setOnline(false);
    add(*b, u"unseen"_s);
    clock.advance(60s);
    remove(*a, u"x"_s);
    settle();
    add(*b, u"later"_s); // newer than A's document
    b->restart();        // what was in the file is known after it too
    clock.advance(20s);
    b->container.setOnline(true);
    clock.advance(400s);
    EXPECT_EQ(here(*b), u"y z unseen later"_s);
    EXPECT_EQ(here(*a), u"y z unseen later"_s);
    EXPECT_EQ(inFile(), u"y z unseen later"_s);
}

TEST_F(CloudSyncSafetyTest, anEarlierVersionThatComesAgainTakesNothing)
{
    pair({u"x"_s});
    add(*b, u"y"_s);
    settle();
    add(*a, u"z"_s);
    settle();
    for (qsizetype version = 0; version < 3; ++version) {
        place.deliversAgain(file, version);
        settle();
        EXPECT_EQ(here(*a), u"x y z"_s);
        EXPECT_EQ(here(*b), u"x y z"_s);
        EXPECT_EQ(inFile(), u"x y z"_s);
    }
}

TEST_F(CloudSyncSafetyTest, aDamagedNoteOfThePastCountsAsNone)
{
    pair({u"x"_s});
    const auto whole = b->defaults.get<QByteArray>(CloudSync::syncBaseBaseKey());
    ASSERT_TRUE(whole && SyncBase::fromBytes(*whole));
    const QByteArray plain = qUncompress(*whole);
    const QString identity = b->links().links().first().stableId;
    QByteArray endless = plain; // the count of the identities; behind it one of them with its length
    endless.replace(endless.size() - 2 * identity.size() - 8, 4, QByteArray(4, '\xfe'));
    const QByteArray damaged[] = {
        {}, "x", whole->first(whole->size() / 2), qCompress(plain.first(plain.size() - 1)), qCompress(endless)};
    for (const QByteArray &each : damaged) {
        EXPECT_FALSE(SyncBase::fromBytes(each)) << each.toHex().toStdString();
        b->stop();
        ASSERT_TRUE(b->defaults.write(CloudSync::syncBaseBaseKey(), each));
        b->start();
        settle();
        EXPECT_EQ(here(*b), u"x"_s);
    }
}

// A command on its own, while the program starts that was killed meanwhile.
TEST_F(CloudSyncSafetyTest, whatAnotherProcessMergedMeanwhileCountsForTheTreeToo)
{
    pair({u"x"_s});
    const QStringList keys = {LinkStore::linksBaseKey(), CloudSync::syncBaseBaseKey()};
    const auto stored = [&] { return QList{*b->defaults.value(keys[0]), *b->defaults.value(keys[1])}; };
    const auto before = stored();
    add(*a, u"y"_s);
    settle();
    ASSERT_EQ(here(*b), u"x y"_s);
    const auto after = stored();
    b->stop();
    for (qsizetype i = 0; i < keys.size(); ++i)
        ASSERT_TRUE(b->defaults.write(keys[i], before[i]));
    b->start();
    ASSERT_EQ(here(*b), u"x"_s);
    for (qsizetype i = 0; i < keys.size(); ++i)
        b->defaults.otherProcessWrites(keys[i], after[i]); // and the watch is slow to tell
    std::optional<bool> saved;
    b->sync().saveToCloud([&saved](const auto &result) { saved = result.hasValue(); });
    settle();
    EXPECT_EQ(saved, true);
    EXPECT_EQ(here(*a), u"x y"_s);
    EXPECT_EQ(here(*b), u"x y"_s);
}

TEST_F(CloudSyncSafetyTest, anotherProcessEditDuringAMergeIsUploadedToo)
{
    pair({u"x"_s});
    const QString key = LinkStore::linksBaseKey();
    LinkList outside = b->links().links();
    outside.append(namedLink(u"outside"_s));
    b->runner.hold();
    add(*a, u"a"_s);
    clock.advance(6s);
    ASSERT_GT(b->runner.waiting(), 0U);
    b->defaults.otherProcessWrites(key, encodeLinks(outside)); // and the watch is slow to tell
    b->runner.release();
    settle();
    EXPECT_EQ(sorted(here(*b)), (QStringList{u"a"_s, u"outside"_s, u"x"_s}));
    EXPECT_EQ(sorted(inFile()), sorted(here(*b)));
}

// What is damaged on one machine must not count as deleted everywhere.
TEST_F(CloudSyncSafetyTest, aTreeThatWasLostComesBack)
{
    pair({u"x"_s, u"y"_s});
    QStringList whole{u"x"_s, u"y"_s};
    for (const bool edited : {false, true}) {
        SCOPED_TRACE(edited);
        b->stop();
        ASSERT_TRUE(b->defaults.write(LinkStore::linksBaseKey(), edited ? QByteArray("again") : QByteArray("bad")));
        b->start();
        ASSERT_EQ(here(*b), QString());
        if (edited) {
            add(*b, u"z"_s);
            whole += u"z"_s;
        }
        settle();
        EXPECT_EQ(sorted(here(*a)), whole);
        EXPECT_EQ(sorted(here(*b)), whole);
        // From then on what goes there goes everywhere.
        remove(*b, whole.takeFirst());
        settle();
        EXPECT_EQ(sorted(here(*a)), whole);
    }
}

TEST_F(CloudSyncSafetyTest, aTreeThatCannotBeReadNowIsLeftAlone)
{
    pair({u"x"_s, u"y"_s});
    b->stop();
    b->defaults.failReads(LinkStore::linksBaseKey());
    b->start();
    ASSERT_EQ(here(*b), QString());
    add(*b, u"z"_s);
    std::optional<bool> saved;
    b->sync().saveToCloud([&saved](const auto &result) { saved = result.hasValue(); });
    settle();
    EXPECT_EQ(saved, false);
    EXPECT_EQ(inFile(), u"x y"_s);
    EXPECT_EQ(here(*a), u"x y"_s);
    b->defaults.failReads({});
    b->stop();
    b->start();
    settle();
    EXPECT_EQ(here(*b), u"x y"_s);
}

TEST_F(CloudSyncSafetyTest, anEditDuringAMergeIsMergedToo)
{
    pair({u"x"_s});
    b->runner.hold();
    add(*a, u"a"_s);
    clock.advance(6s);
    ASSERT_GT(b->runner.waiting(), 0U);
    remove(*b, u"x"_s);
    add(*b, u"b"_s);
    b->runner.release();
    settle();
    EXPECT_EQ(here(*b), u"b x a"_s) << "what was deleted here and is there comes back";
    EXPECT_EQ(here(*a), u"x a b"_s);
}

TEST_F(CloudSyncSafetyTest, aChangeThatRemovesMuchWaitsForTheUser)
{
    const QStringList names = many(30);
    pair(names);
    a->links().removeLinks(idsOf(names.mid(10)));
    settle();
    EXPECT_EQ(here(*b), names.join(u' '));
    const auto held = b->sync().heldBack();
    ASSERT_TRUE(held);
    EXPECT_EQ(held->device, u"A"_s);
    EXPECT_EQ(held->removal, (MassRemoval{20, 30}));
    EXPECT_EQ(held->analysis.count(SyncCategory::Removed), 20);
    EXPECT_EQ(b->sync().status().state, State::HeldBack);

    add(*b, u"mine"_s);
    settle();
    const int writes = place.writeCount();
    b->restart();
    settle();
    EXPECT_TRUE(b->sync().heldBack()) << "also after a restart";
    EXPECT_EQ(place.writeCount(), writes) << "uploads wait";

    b->sync().acceptHeldBack();
    settle();
    EXPECT_EQ(b->sync().status().state, State::Current);
    EXPECT_EQ(here(*b), (names.mid(0, 10) + QStringList{u"mine"_s}).join(u' '));
    EXPECT_EQ(here(*a), here(*b));
    // One click brings it back, and that is an edit.
    EXPECT_TRUE(b->links().restoreSnapshot(b->snapshots().list(false).first().name));
    settle();
    EXPECT_EQ(countAll(a->links().links()), 31);
}

TEST_F(CloudSyncSafetyTest, whatIsHeldBackIsNotMergedAtEachLook)
{
    const QStringList names = many(30);
    pair(names);
    a->links().removeLinks(idsOf(names.mid(10)));
    settle();
    for (const bool isCopy : {false, true}) {
        SCOPED_TRACE(isCopy);
        if (isCopy) {
            const ExportData copy = documentOf(treeFrom(u"n0"_s));
            clock.advance(1s);
            add(*b, u"mine"_s);
            ASSERT_TRUE(a->links().undo());
            settle();
            b->container.hasConflictCopy(u"copy"_s, encodeExchange(copy));
            settle();
        }
        const auto held = b->sync().heldBack();
        ASSERT_TRUE(held);
        int told = 0;
        const auto listening = QObject::connect(&b->notifications(), &Notifications::syncStatusChanged,
                                                &b->notifications(), [&told] { ++told; });
        clock.advance(300s);
        EXPECT_EQ(told, 0) << "as if it were worked on";
        add(*b, u"more%1"_s.arg(isCopy));
        settle();
        ASSERT_TRUE(b->sync().heldBack());
        EXPECT_NE(b->sync().heldBack()->removal, held->removal) << "what is here changed";
        EXPECT_EQ(b->sync().heldBack()->version, held->version);
        QObject::disconnect(listening);
    }
    b->sync().setGuardEnabled(false);
    settle();
    EXPECT_FALSE(b->sync().heldBack());
}

TEST_F(CloudSyncSafetyTest, aRefusedRemovalIsUndoneElsewhere)
{
    const QStringList names = many(30);
    pair(names);
    a->links().removeLinks(idsOf(names.mid(10)));
    add(*a, u"fresh"_s);
    settle();
    ASSERT_TRUE(b->sync().heldBack());
    b->sync().rejectHeldBack();
    settle();
    EXPECT_FALSE(b->sync().heldBack());
    EXPECT_EQ(countAll(b->links().links()), 31) << "what came in comes in";
    settle();
    EXPECT_EQ(countAll(a->links().links()), 31);
}

TEST_F(CloudSyncSafetyTest, whatIsNotThereAnyMoreIsNotHeldBackEither)
{
    const QStringList names = many(30);
    pair(names);
    a->links().removeLinks(idsOf(names.mid(10)));
    settle();
    ASSERT_TRUE(b->sync().heldBack());
    const ExportData copy = documentOf(treeFrom(u"n0"_s));
    clock.advance(1s);
    add(*b, u"mine"_s);
    ASSERT_TRUE(a->links().undo());
    settle();
    EXPECT_FALSE(b->sync().heldBack());
    settle();
    EXPECT_EQ(countAll(a->links().links()), 31) << "and what was changed meanwhile is written";

    // A copy beside the file stays there, and is decided about once.
    const LogCapture log;
    b->container.hasConflictCopy(u"copy"_s, encodeExchange(copy));
    clock.advance(600s);
    EXPECT_TRUE(b->sync().heldBack());
    EXPECT_EQ(log.lines().filter(u"Held back"_s).size(), 1);
}

TEST_F(CloudSyncSafetyTest, theGuardCanBeSwitchedOff)
{
    const QStringList names = many(30);
    pair(names);
    EXPECT_TRUE(b->sync().isGuardEnabled());
    b->sync().setGuardEnabled(false);
    a->links().removeLinks(idsOf(names.mid(10)));
    settle();
    EXPECT_FALSE(b->sync().heldBack());
    EXPECT_EQ(here(*b), names.mid(0, 10).join(u' '));
}

TEST_F(CloudSyncSafetyTest, loadingReplacesAfterASnapshotAndTheGuardAsks)
{
    const QStringList names = many(30);
    pair(names);
    b->sync().setAutoSyncEnabled(false);
    add(*b, u"mine"_s);
    std::optional<Result<SyncResult, CloudSyncError>> answer;
    const auto note = [&](const Result<SyncResult, CloudSyncError> &result) { answer.emplace(result); };
    b->sync().loadFromCloud(note);
    clock.advance(1s);
    ASSERT_TRUE(answer && *answer);
    EXPECT_EQ(**answer, (SyncResult{0, 0, 1, 0}));
    EXPECT_EQ(here(*b), names.join(u' '));
    EXPECT_EQ(b->snapshots().list(false).first().reason, u"replace"_s);

    otherWrites(u"n0 n1"_s);
    b->sync().loadFromCloud(note);
    clock.advance(1s);
    EXPECT_FALSE(*answer);
    ASSERT_TRUE(b->sync().heldBack());
    EXPECT_TRUE(b->sync().heldBack()->isLoad);
    EXPECT_EQ(here(*b), names.join(u' '));
    b->sync().acceptHeldBack();
    clock.advance(1s);
    EXPECT_EQ(here(*b), u"n0 n1"_s);
}

TEST_F(CloudSyncSafetyTest, conflictCopiesAreMergedAndPutAway)
{
    pair({u"x"_s});
    a->container.hasConflictCopy(u"copy 1"_s, encodeExchange(documentOf(treeFrom(u"x c"_s))));
    a->container.hasConflictCopy(u"copy 2"_s, "half a docu");
    settle();
    EXPECT_EQ(here(*a), u"x c"_s);
    EXPECT_EQ(here(*b), u"x c"_s);
    EXPECT_EQ(a->container.archived, QStringList{u"copy 1"_s}) << "what cannot be read stays";
}

TEST_F(CloudSyncSafetyTest, aCopyThatStaysIsTakenOnceAndAgainWhenItCanBeRead)
{
    pair({u"x"_s});
    a->container.failArchiving();
    a->container.hasConflictCopy(u"copy 1"_s, encodeExchange(documentOf(treeFrom(u"x c"_s))));
    settle();
    EXPECT_EQ(here(*b), u"x c"_s);
    const int reads = a->container.reads;
    clock.advance(300s);
    EXPECT_EQ(a->container.reads, reads + 10) << "the poll's";

    a->container.hasConflictCopy(u"copy 2"_s,
                                 *SyncCipher("secret").encrypt(encodeExchange(documentOf(treeFrom(u"x d"_s)))));
    settle();
    EXPECT_EQ(here(*a), u"x c"_s);
    a->sync().setPassphrase(u"secret"_s, [](const auto &) {});
    settle();
    EXPECT_EQ(here(*a), u"x c d"_s);
}

TEST_F(CloudSyncSafetyTest, withoutASnapshotNothingIsMerged)
{
    pair({u"x"_s});
    const QString folder = b->snapshotFolder();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    QFile inTheWay(folder);
    ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    add(*a, u"a"_s);
    settle();
    EXPECT_EQ(here(*b), u"x"_s);
    EXPECT_EQ(b->sync().status().state, State::Failed);
    ASSERT_TRUE(inTheWay.remove());
    clock.advance(400s);
    EXPECT_EQ(here(*b), u"x a"_s);
}

TEST_F(CloudSyncSafetyTest, whatWasMergedButNotStoredIsMergedAgainAfterACrash)
{
    pair({u"x"_s});
    b->defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    add(*a, u"a"_s);
    settle();
    EXPECT_EQ(here(*b), u"x a"_s);
    b->defaults.failWrites(std::nullopt);
    b->restart();
    EXPECT_EQ(here(*b), u"x"_s);
    settle();
    EXPECT_EQ(here(*b), u"x a"_s);
    EXPECT_EQ(inFile(), u"x a"_s);
}

TEST_F(CloudSyncSafetyTest, aSyncClientThatLetsTheLastWriterWinLosesNothing)
{
    FakeCloudPlace folder(clock, FakeCloudPlace::Kind::SyncedFolder);
    SyncMachine c(clock, folder, u"C"_s);
    SyncMachine d(clock, folder, u"D"_s);
    clock.advance(16s);
    add(c, u"x"_s);
    settle();
    ASSERT_EQ(here(d), u"x"_s);
    d.container.setOnline(false);
    add(c, u"c"_s);
    add(d, u"d"_s);
    settle();
    d.container.setOnline(true);
    clock.advance(200s);
    EXPECT_EQ(QSet<QString>({u"x c d"_s, u"x d c"_s}).contains(here(c)), true) << here(c).toStdString();
    EXPECT_EQ(countAll(d.links().links()), 3);
    EXPECT_EQ(d.container.archived.size(), 1);
}

} // namespace orvelle::test
