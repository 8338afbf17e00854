#include "SyncTest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

using CloudSyncMonitorTest = SyncTest;

} // namespace

TEST_F(CloudSyncMonitorTest, nothingIsAskedUnlessSwitchedOnAndReachable)
{
    otherWrites(u"x"_s);
    SyncMachine off(clock, place, u"A"_s, false);
    settle();
    EXPECT_EQ(off.container.reads, 0);
    EXPECT_EQ(off.sync().status().state, State::Off);

    off.container.becomesAvailable(false);
    off.sync().setAutoSyncEnabled(true);
    off.sync().handleSystemDidWake();
    settle();
    EXPECT_EQ(off.container.reads, 0);
    EXPECT_EQ(off.sync().status().state, State::Unavailable);

    off.container.becomesAvailable(true);
    settle();
    EXPECT_EQ(here(off), u"x"_s) << "the place came back";
    EXPECT_EQ(off.sync().status().state, State::Current);
}

TEST_F(CloudSyncMonitorTest, theFileIsLookedAtAtOnceAndEvery30Seconds)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(0s);
    EXPECT_EQ(here(a), u"x"_s);
    clock.advance(5s);
    const int reads = a.container.reads;
    clock.advance(24999ms);
    EXPECT_EQ(a.container.reads, reads);
    clock.advance(1ms);
    EXPECT_EQ(a.container.reads, reads + 1);
    clock.advance(30s);
    EXPECT_EQ(a.container.reads, reads + 2);
}

TEST_F(CloudSyncMonitorTest, checksWithinFiveSecondsAreOneRead)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    const int reads = a.container.reads;
    a.sync().checkSyncIfNeeded();
    clock.advance(4999ms);
    a.sync().checkSyncIfNeeded();
    clock.advance(0s);
    EXPECT_EQ(a.container.reads, reads + 1);
    clock.advance(1ms);
    a.sync().checkSyncIfNeeded();
    clock.advance(0s);
    EXPECT_EQ(a.container.reads, reads + 2);
}

struct SlowStart {
    const char *situation;
    DownloadStatus status;
    int seconds;
    const char *line;
};

class SlowStartTest : public SyncTest, public testing::WithParamInterface<SlowStart>
{
};

TEST_P(SlowStartTest, uploadsWaitForTheFirstDownloadOrItsTimeOut)
{
    const auto &[situation, status, seconds, line] = GetParam();
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s, false);
    if (status == DownloadStatus::Placeholder)
        a.container.becomesPlaceholder(file);
    else
        a.container.becomesInvisible(file);
    a.container.letDownloadsEnd(false);
    const LogCapture log;
    a.sync().setAutoSyncEnabled(true);
    EXPECT_EQ(count(log, QString::fromUtf8(line)), 1);
    clock.advance(1s);
    add(a, u"a"_s);
    EXPECT_EQ(a.sync().status().state, State::Waiting);
    clock.advance(std::chrono::seconds(seconds) - 1001ms);
    const QString timedOut =
        u"Timeout download iCloud (%1s) — autorisation des writes locales sans merge initial"_s.arg(seconds);
    EXPECT_EQ(count(log, timedOut), 0);
    EXPECT_EQ(count(log, u"AutoSync reporté — check initial pas encore terminé"_s), 1);
    EXPECT_EQ(a.container.writes, 0);
    clock.advance(1ms);
    EXPECT_EQ(count(log, timedOut), 1);
    // Uploading is allowed, and still replaces nothing that was not merged.
    clock.advance(60s);
    EXPECT_EQ(inFile(), u"x"_s);
    a.container.letDownloadsEnd(true);
    clock.advance(400s);
    EXPECT_EQ(inFile(), u"a x"_s) << "without another edit";
}

INSTANTIATE_TEST_SUITE_P(
    Starts, SlowStartTest,
    testing::Values(
        SlowStart{"placeholder", DownloadStatus::Placeholder, 60,
                  "Fichier de synchro placeholder, attente du téléchargement avant d'autoriser les writes locales"},
        SlowStart{"not visible", DownloadStatus::NotVisible, 15,
                  "Fichier de synchro non visible localement, tentative de download avant d'autoriser les writes"}),
    [](const auto &given) {
        return std::string(given.param.status == DownloadStatus::Placeholder ? "placeholder" : "notVisible");
    });

TEST_F(CloudSyncMonitorTest, aCheckTakesPrecedenceOverAPendingUploadAndThenItGoesOn)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    const LogCapture log;
    add(a, u"a"_s);
    clock.advance(4s);
    otherWrites(u"x y"_s);
    clock.advance(0s);
    EXPECT_EQ(count(log, u"Annulation de l'autoSync en attente — un check distant prend la priorité"_s), 1);
    EXPECT_EQ(here(a), u"x a y"_s);
    clock.advance(4999ms);
    EXPECT_EQ(inFile(), u"x y"_s);
    clock.advance(1ms);
    EXPECT_EQ(inFile(), u"x a y"_s);
}

TEST_F(CloudSyncMonitorTest, thePollRepeatsNoLine)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    const LogCapture log;
    clock.advance(300s);
    const QStringList lines = log.lines();
    for (const QString &line : lines)
        EXPECT_LE(lines.count(line), 1) << line.toStdString();
    EXPECT_TRUE(
        lines.contains(u"CloudSync: Fichier de synchro déjà importé (hash identique) — ignoré [background check]"_s));
}

TEST_F(CloudSyncMonitorTest, aPlaceThatWentAwayIsWatchedUntilItIsBack)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    a.container.becomesAvailable(false);
    clock.advance(10s);
    EXPECT_EQ(a.container.watched, file) << "otherwise nobody asks whether it is there again";
    otherWrites(u"x"_s);
    a.container.becomesAvailable(true);
    clock.advance(10s);
    EXPECT_EQ(here(a), u"x"_s);
    a.container.becomesAvailable(false);
    a.sync().setAutoSyncEnabled(false);
    EXPECT_EQ(a.container.watched, QString());
}

TEST_F(CloudSyncMonitorTest, aFileThatIsNotThereYetIsToldOnceForEachTimeThatItGoes)
{
    const QString line = u"Fichier de synchro pas encore téléchargé, téléchargement demandé"_s;
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s, false);
    a.container.letDownloadsEnd(false);
    a.container.becomesInvisible(file);
    const LogCapture log;
    a.sync().setAutoSyncEnabled(true);
    clock.advance(100s);
    a.sync().handleSystemDidWake();
    clock.advance(100s);
    EXPECT_EQ(count(log, line), 1);
    a.container.letDownloadsEnd(true);
    clock.advance(100s);
    EXPECT_EQ(here(a), u"x"_s);
    a.container.letDownloadsEnd(false);
    a.container.becomesOutdated(file);
    clock.advance(100s);
    EXPECT_EQ(count(log, line), 2);
}

TEST_F(CloudSyncMonitorTest, aNewerVersionIsDownloadedThenTakenIn)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    const LogCapture log;
    a.container.letDownloadsEnd(false);
    otherWrites(u"x y"_s);
    a.container.becomesOutdated(file);
    clock.advance(1s);
    EXPECT_EQ(count(log, u"NSMetadataQuery: nouvelle version disponible, téléchargement..."_s), 1);
    EXPECT_EQ(here(a), u"x"_s);
    a.sync().checkSyncIfNeeded();
    EXPECT_EQ(count(log, u"Fichier de synchro pas encore téléchargé, téléchargement demandé"_s), 1);
    a.container.letDownloadsEnd(true);
    clock.advance(30s);
    EXPECT_EQ(here(a), u"x y"_s);
}

TEST_F(CloudSyncMonitorTest, aPlaceThatCannotBeReachedTroublesNobody)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(10s);
    a.container.setOnline(false);
    clock.advance(60s);
    const SyncStatus status = a.sync().status();
    EXPECT_EQ(status.state, State::Unavailable);
    EXPECT_FALSE(status.needsUser());
    EXPECT_FALSE(status.failure.isEmpty());
    a.container.setOnline(true);
    clock.advance(60s);
    EXPECT_EQ(a.sync().status().state, State::Current);
}

TEST_F(CloudSyncMonitorTest, debugModeHasAFileOfItsOwn)
{
    SyncMachine a(clock, place, u"A"_s);
    add(a, u"real"_s);
    settle();
    ASSERT_TRUE(a.defaults.write(u"debug_orvelle_autoSyncEnabled"_s, true));
    a.debugMode().toggle();
    settle();
    EXPECT_EQ(a.container.watched, u"orvelle-sync-debug.ovexport"_s);
    add(a, u"trial"_s);
    settle();
    EXPECT_EQ(inFile(), u"real"_s);
    EXPECT_TRUE(place.bytes(u"orvelle-sync-debug.ovexport"_s).contains("trial"));
    a.debugMode().toggle();
    settle();
    EXPECT_EQ(here(a), u"real"_s);
    EXPECT_EQ(inFile(), u"real"_s);
    EXPECT_EQ(a.container.watched, file);
}

TEST_F(CloudSyncMonitorTest, aWakeUpLooksAgain)
{
    otherWrites(u"x"_s);
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(1s);
    a.container.holdDeliveries(true);
    otherWrites(u"x y"_s);
    clock.advance(1s);
    const LogCapture log;
    a.power.systemWakes();
    clock.advance(0s);
    EXPECT_EQ(count(log, u"Réveil système — relance du monitoring de synchro iCloud"_s), 1);
    EXPECT_EQ(count(log, u"NSMetadataQuery démarrée pour le container iCloud"_s), 1);
    EXPECT_EQ(count(log, u"NSMetadataQuery: gathering terminé, 1 résultat(s)"_s), 1);
    EXPECT_EQ(here(a), u"x y"_s);
}

TEST_F(CloudSyncMonitorTest, whatEarlierVersionsKeptElsewhereComesIntoThePlace)
{
    QTemporaryDir folder;
    QFile old(folder.filePath(u"old.ovexport"_s));
    ASSERT_TRUE(old.open(QFile::WriteOnly));
    old.write(encodeExchange(documentOf(treeFrom(u"old"_s))));
    old.close();
    SyncMachine a(clock, place, u"A"_s, false);
    const auto bookmark = [&] {
        ASSERT_TRUE(
            a.defaults.write(CloudSync::cloudSyncBookmarkBaseKey(), FakeFileBookmarks::bookmarkOf(old.fileName())));
    };
    bookmark();
    const LogCapture log;
    a.sync().setAutoSyncEnabled(true);
    settle();
    EXPECT_EQ(here(a), u"old"_s);
    EXPECT_FALSE(a.sync().hasCloudSyncBookmark());
    EXPECT_EQ(count(log, u"Migration: fichier de synchro copié vers le container iCloud"_s), 1);
    EXPECT_EQ(count(log, u"Migration: ancien bookmark supprimé"_s), 1);

    bookmark();
    a.sync().startSyncFileMonitoring();
    settle();
    EXPECT_FALSE(a.sync().hasCloudSyncBookmark());
    EXPECT_EQ(count(log, u"Migration: ancien bookmark supprimé (fichier déjà dans le container iCloud)"_s), 1);
}

TEST_F(CloudSyncMonitorTest, whatEarlierVersionsKeptIsNotCutOff)
{
    QTemporaryDir folder;
    QFile old(folder.filePath(u"old.ovexport"_s));
    ASSERT_TRUE(old.open(QFile::WriteOnly) && old.resize(CloudContainer::maxFileBytes + 1));
    SyncMachine a(clock, place, u"A"_s, false);
    ASSERT_TRUE(a.defaults.write(CloudSync::cloudSyncBookmarkBaseKey(), FakeFileBookmarks::bookmarkOf(old.fileName())));
    a.sync().setAutoSyncEnabled(true);
    settle();
    EXPECT_EQ(place.writeCount(), 0);
    EXPECT_TRUE(a.sync().hasCloudSyncBookmark());
}

struct Operation {
    const char *name;
    /// Tells what it failed with; absent after success.
    std::function<void(CloudSync &, const std::function<void(const std::optional<CloudSyncError> &)> &)> begin;
};

/// All that users wait for.
QList<Operation> operations()
{
    const auto as = [](const auto &tell) {
        return [tell](const auto &result) { tell(result ? std::nullopt : std::optional(result.error())); };
    };
    return {{"save", [as](CloudSync &sync, const auto &tell) { sync.saveToCloud(as(tell)); }},
            {"begin anew", [as](CloudSync &sync, const auto &tell) { sync.beginAnew(as(tell)); }},
            {"load", [as](CloudSync &sync, const auto &tell) { sync.loadFromCloud(as(tell)); }},
            {"find", [as](CloudSync &sync, const auto &tell) { sync.readForConfigure(as(tell)); }},
            {"encrypt", [as](CloudSync &sync, const auto &tell) { sync.setPassphrase(u"pass"_s, as(tell)); }}};
}

// Resuming from suspend begins anew and drops what was under way.
TEST_F(CloudSyncMonitorTest, whoWaitsIsToldWhenItIsInterrupted)
{
    for (const bool interrupts : {true, false}) {
        for (const auto &[name, begin] : operations()) {
            otherWrites(u"x"_s);
            SyncMachine a(clock, place, u"A"_s);
            settle();
            a.runner.hold();
            QList<std::optional<CloudSyncError>> told;
            begin(a.sync(), [&told](const auto &failure) { told += failure; });
            clock.advance(20s);
            EXPECT_EQ(told.size(), 0) << name;
            if (interrupts)
                a.sync().handleSystemDidWake();
            a.runner.release();
            settle();
            ASSERT_EQ(told.size(), 1) << name;
            EXPECT_EQ(told.first().has_value(), interrupts) << name;
            EXPECT_FALSE(told.first() && told.first()->description.isEmpty()) << name;
        }
    }
}

// A disk may take its time to say that it is there.
TEST_F(CloudSyncMonitorTest, whatIsAskedForByHandLooksOnceMoreWhetherThePlaceIsThere)
{
    for (const bool enabled : {true, false}) {
        for (const auto &[name, begin] : operations()) {
            otherWrites(u"x"_s);
            SyncMachine a(clock, place, u"A"_s, enabled);
            a.container.isNotLookedAtYet();
            a.sync().setContainer(&a.container);
            QList<std::optional<CloudSyncError>> told;
            begin(a.sync(), [&told](const auto &failure) { told += failure; });
            settle();
            ASSERT_EQ(told.size(), 1) << name << enabled;
            EXPECT_FALSE(told.first()) << name << enabled << told.first()->description.toStdString();
        }
    }
}

} // namespace orvelle::test
