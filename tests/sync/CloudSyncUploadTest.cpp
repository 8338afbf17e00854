#include "SyncTest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

class CloudSyncUploadTest : public SyncTest
{
protected:
    /// A machine that has looked at an empty place.
    std::unique_ptr<SyncMachine> machine(const QString &name)
    {
        auto made = std::make_unique<SyncMachine>(clock, place, name);
        clock.advance(16s);
        return made;
    }
};

} // namespace

TEST_F(CloudSyncUploadTest, editsWithinFiveSecondsAreOneUploadAfterTheLast)
{
    const auto a = machine(u"A"_s);
    for (int i = 0; i < 10; ++i) {
        add(*a, u"n%1"_s.arg(i));
        if (i < 9)
            clock.advance(440ms);
    }
    clock.advance(4999ms);
    EXPECT_EQ(place.writeCount(), 0);
    clock.advance(1ms);
    EXPECT_EQ(place.writeCount(), 1);
    settle();
    EXPECT_EQ(place.writeCount(), 1) << "an unchanged tree is not written again";
    EXPECT_EQ(a->sync().status().state, State::Current);
    EXPECT_EQ(a->sync().status().lastSyncDate, a->defaults.get<Timestamp>(CloudSync::lastSyncDateBaseKey()));
    const auto document = decodeExchange(place.bytes(file));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->lastModifiedByMachineId, a->links().machineId());
    EXPECT_EQ(document->checksum, a->defaults.get<QString>(CloudSync::lastWrittenChecksumBaseKey()));
}

TEST_F(CloudSyncUploadTest, anEditDuringAnUploadIsOneMoreUpload)
{
    const auto a = machine(u"A"_s);
    place.latency = 3s;
    add(*a, u"one"_s);
    clock.advance(9s); // read, and being written
    EXPECT_EQ(a->sync().status().state, State::Working);
    const LogCapture log;
    add(*a, u"two"_s);
    clock.advance(2s);
    place.latency = 4s;
    settle();
    EXPECT_EQ(place.writeCount(), 2);
    EXPECT_EQ(inFile(), u"one two"_s);
}

TEST_F(CloudSyncUploadTest, anUploadThatIsDueWhileOneRunsComesFiveSecondsLater)
{
    const auto a = machine(u"A"_s);
    place.latency = 12s;
    add(*a, u"one"_s);
    clock.advance(6s);
    add(*a, u"two"_s);
    const LogCapture log;
    clock.advance(5s);
    EXPECT_EQ(count(log, u"Autosync silencieux déjà en cours — re-planification dans 5s"_s), 1);
    place.latency = 0s;
    settle();
    EXPECT_EQ(inFile(), u"one two"_s);
}

TEST_F(CloudSyncUploadTest, takingADocumentInIsNoReasonToWrite)
{
    const auto a = machine(u"A"_s);
    otherWrites(u"x g[y]"_s);
    settle();
    EXPECT_EQ(here(*a), u"x g[y]"_s);
    EXPECT_EQ(a->container.writes, 0);
    EXPECT_EQ(a->sync().status().lastSyncedFromDevice, u"Elsewhere"_s);
    EXPECT_FALSE(a->links().canUndo());
    const auto snapshots = a->snapshots().list(false);
    ASSERT_EQ(snapshots.size(), 1);
    EXPECT_EQ(snapshots.first().reason, u"sync"_s);
    EXPECT_EQ(snapshots.first().machine, u"Elsewhere"_s);

    // A document that brings nothing new leaves nothing behind.
    const int stored = a->defaults.read(LinkStore::linksBaseKey()).revision;
    otherWrites(u"x g[y]"_s);
    clock.advance(1s);
    otherWrites(u"g[y] x"_s); // in another order
    settle();
    EXPECT_EQ(a->defaults.read(LinkStore::linksBaseKey()).revision, stored);
    EXPECT_EQ(a->snapshots().list(false).size(), 1);
    EXPECT_EQ(a->container.writes, 0);
}

TEST_F(CloudSyncUploadTest, anOwnDocumentIsIgnoredSilently)
{
    const auto a = machine(u"A"_s);
    ExportData own = documentOf(treeFrom(u"x"_s));
    own.lastModifiedByMachineId = a->links().machineId();
    const LogCapture log;
    place.otherMachineWrites(file, encodeExchange(own));
    clock.advance(1s);
    EXPECT_EQ(here(*a), QString());
    EXPECT_EQ(log.lines().filter(u"Fichier de synchro"_s).size(), 0);
    EXPECT_EQ(log.lines().filter(u"Merge"_s).size(), 0);
    // It may come from a copy of this installation, so that nothing is written
    // over it unmerged.
    add(*a, u"a"_s);
    settle();
    EXPECT_EQ(inFile(), u"a x"_s);
}

TEST_F(CloudSyncUploadTest, anOlderOwnVersionThatComesBackIsReplaced)
{
    const auto a = machine(u"A"_s);
    add(*a, u"one"_s);
    settle();
    add(*a, u"two"_s);
    settle();
    remove(*a, u"one"_s);
    settle();
    place.deliversAgain(file, 0);
    settle();
    EXPECT_EQ(inFile(), u"two"_s);
    EXPECT_EQ(here(*a), u"two"_s);
}

TEST_F(CloudSyncUploadTest, aFailedWriteIsToldAndTriedAgainWithPauses)
{
    const auto a = machine(u"A"_s);
    int told = 0;
    QObject::connect(&a->notifications(), &Notifications::syncUploadFailed, &a->notifications(), [&] { ++told; });
    const LogCapture log;
    a->container.failWrites(CloudError{CloudError::Kind::Io, u"broken"_s, {}});
    add(*a, u"one"_s);
    clock.advance(5s);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(count(log, u"Autosync write failed: failed: broken"_s), 1);
    EXPECT_FALSE(a->defaults.get<QString>(CloudSync::lastWrittenChecksumBaseKey()));
    const SyncStatus status = a->sync().status();
    EXPECT_EQ(status.state, State::Waiting);
    EXPECT_FALSE(status.failure.isEmpty());
    EXPECT_EQ(status.retryAt, clock.now() + 5);
    clock.advance(5s);
    EXPECT_EQ(told, 2);
    clock.advance(9999ms);
    EXPECT_EQ(told, 2);
    clock.advance(1ms);
    EXPECT_EQ(told, 3);
    clock.advance(3600s);
    EXPECT_LE(told, 3 + 4 + 3600 / 300);
    a->container.failWrites(std::nullopt);
    clock.advance(330s);
    EXPECT_EQ(inFile(), u"one"_s) << "without another edit";
    EXPECT_EQ(a->sync().status().state, State::Current);
    EXPECT_TRUE(a->sync().status().failure.isEmpty());
}

TEST_F(CloudSyncUploadTest, aPlaceThatAsksForAPauseGetsIt)
{
    const auto a = machine(u"A"_s);
    a->container.failWrites(CloudError{CloudError::Kind::Locked, {}, 600s});
    add(*a, u"one"_s);
    clock.advance(5s);
    const int asked = a->container.writes + a->container.reads;
    EXPECT_EQ(a->sync().status().retryAt, clock.now() + 600);
    a->container.failWrites(std::nullopt);
    add(*a, u"two"_s);
    clock.advance(599s);
    EXPECT_EQ(a->container.writes + a->container.reads, asked);
    clock.advance(30s);
    EXPECT_EQ(inFile(), u"one two"_s);
}

// A clock that was ahead when a pause began must not stretch it.
TEST_F(CloudSyncUploadTest, pausesEndWhenTheClockIsSetBack)
{
    struct Case {
        const char *what;
        CloudError error;
        bool ofReads;
    };
    for (const Case &c : {Case{"asked for by the place", {CloudError::Kind::Locked, {}, 600s}, true},
                          Case{"asked for, in an upload", {CloudError::Kind::Locked, {}, 600s}, false},
                          Case{"after a failure", {CloudError::Kind::Io}, false}}) {
        SCOPED_TRACE(c.what);
        place.otherMachineRemoves(file);
        const auto a = machine(u"A"_s);
        add(*a, u"one"_s);
        settle();
        const Timestamp right = clock.now();
        clock.setNow(right + 86400);
        a->container.failReads(c.ofReads ? std::optional(c.error) : std::nullopt);
        a->container.failWrites(c.ofReads ? std::nullopt : std::optional(c.error));
        add(*a, u"two"_s);
        clock.advance(40s);
        clock.setNow(right);
        a->container.failReads({});
        a->container.failWrites({});
        add(*a, u"three"_s);
        clock.advance(60s);
        EXPECT_EQ(inFile(), u"one two three"_s);
    }
}

TEST_F(CloudSyncUploadTest, aDocumentThatIsGoneIsMadeAnew)
{
    for (const char *how : {"seen", "not told", "while it was ended", "with an edit"}) {
        SCOPED_TRACE(how);
        const auto a = machine(u"A"_s);
        add(*a, u"one"_s);
        settle();
        const bool isEnded = how == std::string_view("while it was ended");
        if (isEnded)
            a->stop();
        a->container.holdDeliveries(how == std::string_view("not told"));
        place.otherMachineRemoves(file);
        if (isEnded)
            a->start();
        if (how == std::string_view("with an edit")) {
            add(*a, u"two"_s);
            clock.advance(3s);
            a->sync().handleSystemDidWake(); // and the pending upload is dropped
        }
        settle();
        EXPECT_TRUE(inFile().startsWith(u"one"_s)) << inFile().toStdString();
        EXPECT_EQ(inFile(), here(*a));
        EXPECT_EQ(a->sync().status().state, State::Current);
        place.otherMachineRemoves(file);
    }
}

TEST_F(CloudSyncUploadTest, whatIsAskedForByHandWaitsForAMinuteAtMost)
{
    for (const auto latency : {20s, 86400s}) {
        otherWrites(u"x"_s);
        const auto a = machine(u"A"_s);
        place.latency = latency;
        a->sync().checkSyncIfNeeded();
        clock.advance(1s);
        place.latency = 0s;
        std::optional<Result<SyncResult, CloudSyncError>> answer;
        a->sync().saveToCloud([&answer](const auto &result) { answer.emplace(result); });
        clock.advance(65s);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->hasValue(), latency == 20s);
        EXPECT_TRUE(*answer || answer->error().description == cloudErrorText({CloudError::Kind::TimedOut}));
    }
}

TEST_F(CloudSyncUploadTest, aWriteWhoseAnswerIsLostIsNotMadeTwice)
{
    const auto a = machine(u"A"_s);
    a->container.failWrites(CloudError{CloudError::Kind::TimedOut}, true);
    add(*a, u"one"_s);
    clock.advance(5s);
    a->container.failWrites(std::nullopt);
    settle();
    EXPECT_EQ(place.writeCount(), 1);
    EXPECT_EQ(a->sync().status().state, State::Current);
}

TEST_F(CloudSyncUploadTest, machinesThatSaveAtOnceBothKeepTheirEdits)
{
    const auto a = machine(u"A"_s);
    const auto b = machine(u"B"_s);
    place.latency = 200ms;
    add(*a, u"one"_s);
    add(*b, u"two"_s);
    settle();
    EXPECT_EQ(here(*a), u"one two"_s);
    EXPECT_EQ(here(*b), u"two one"_s);
    const int writes = place.writeCount();
    clock.advance(600s);
    EXPECT_EQ(place.writeCount(), writes);
}

TEST_F(CloudSyncUploadTest, aChangeOfSettingsAloneIsWritten)
{
    const auto a = machine(u"A"_s);
    const auto b = machine(u"B"_s);
    add(*a, u"one"_s);
    settle();
    a->settings().setIcon(u"star"_s);
    settle();
    EXPECT_EQ(b->settings().icon(), u"star"_s);
    const QString date = u"orvelle_settingsModifiedAt"_s;
    EXPECT_EQ(b->defaults.get<Timestamp>(date)->seconds, std::floor(a->defaults.get<Timestamp>(date)->seconds));
    EXPECT_EQ(place.writeCount(), 2) << "and not sent back";
    settle();
    EXPECT_EQ(place.writeCount(), 2);

    // Both at once: they end with the same.
    a->settings().setIcon(u"heart"_s);
    b->settings().setIcon(u"moon"_s);
    settle();
    EXPECT_EQ(a->settings().icon(), b->settings().icon());
}

TEST_F(CloudSyncUploadTest, olderAndEquallyOldSettingsAreNotApplied)
{
    const auto a = machine(u"A"_s);
    const LogCapture log;
    a->settings().setIcon(u"mine"_s);
    settle();
    for (const double age : {100.0, 0.0}) {
        ExportData document = documentOf(treeFrom(u"x"_s));
        document.settingsModifiedAt = a->defaults.get<Timestamp>(u"orvelle_settingsModifiedAt"_s).value() + -age;
        document.generalSettings.emplace();
        document.generalSettings->menuletIcon = u"theirs"_s;
        place.otherMachineWrites(file, encodeExchange(document));
        clock.advance(1s);
        EXPECT_EQ(a->settings().icon(), u"mine"_s);
        EXPECT_EQ(log.lines().filter(u"plus récents ou égaux au distant"_s).size(), age == 0 ? 2 : 1);
    }
}

TEST_F(CloudSyncUploadTest, aTextWrittenInTheSecondInWhichTheNoteWasMadeArrives)
{
    clock.advance(700ms);
    const auto a = machine(u"A"_s);
    const auto b = machine(u"B"_s);
    const Timestamp made = clock.now();
    for (const char *before : {"", "first"}) {
        LinkItem note = LinkItem::make(u"note"_s + QLatin1StringView(before), {}, LinkType::Note, made);
        note.noteContent = QString::fromLatin1(before);
        a->links().addLink(note);
        settle();
        LinkItem rewritten = b->links().links().last();
        ASSERT_EQ(rewritten.name, note.name);
        rewritten.noteContent = u"text"_s;
        rewritten.contentModifiedAt = *rewritten.modifiedAt + 0.2; // by a clock that is behind
        b->links().updateLink(rewritten);
        settle();
        settle();
        for (SyncMachine *one : {a.get(), b.get()})
            EXPECT_EQ(one->links().links().last().noteContent, u"text"_s);
    }
}

TEST_F(CloudSyncUploadTest, theManualUploadTellsWhatItDid)
{
    SyncMachine a(clock, place, u"A"_s, false);
    otherWrites(u"x"_s);
    add(a, u"one"_s);
    const LogCapture log;
    std::optional<Result<SyncResult, CloudSyncError>> answer;
    const auto note = [&](const Result<SyncResult, CloudSyncError> &result) { answer.emplace(result); };
    a.sync().saveToCloud(note);
    EXPECT_FALSE(answer);
    settle();
    ASSERT_TRUE(answer && *answer);
    EXPECT_EQ(**answer, (SyncResult{0, 1, 0, 0}));
    EXPECT_EQ(count(log, u"Merge depuis fichier de synchro réussi [saveToCloud manuel]"_s), 1);
    EXPECT_EQ(inFile(), u"one x"_s);
    a.container.becomesAvailable(false);
    a.sync().saveToCloud(note);
    settle();
    EXPECT_FALSE(*answer);
    EXPECT_FALSE(answer->error().description.isEmpty());
}

TEST_F(CloudSyncUploadTest, switchingOffForgetsAndLeavesTheFile)
{
    const auto a = machine(u"A"_s);
    add(*a, u"one"_s);
    settle();
    a->sync().disableCloudSync();
    EXPECT_FALSE(a->sync().autoSyncEnabled());
    for (const QString &key :
         {CloudSync::lastSyncDateBaseKey(), CloudSync::lastWrittenChecksumBaseKey(), CloudSync::syncBaseBaseKey()})
        EXPECT_FALSE(a->defaults.value(key)) << key.toStdString();
    EXPECT_EQ(a->sync().status(), SyncStatus{});
    EXPECT_EQ(inFile(), u"one"_s);
}

} // namespace orvelle::test
