#include "app/SyncServices.h"

#include "links/SnapshotStore.h"
#include "support/FakeHttp.h"
#include "support/Outline.h"
#include "support/SpinUntil.h"
#include "support/SyncMachine.h"
#include "sync/SyncSetup.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {
namespace {

SyncPlace server(const QString &address, const QString &user)
{
    return {SyncPlace::Kind::WebDav, {}, QUrl(address), user};
}

class SyncServicesTest : public testing::Test
{
protected:
    /// As in the settings window. The answer to the question is `choice`.
    Result<ConfigureCloudSyncResult, QString> configure(const SyncPlace &place,
                                                        const std::optional<QString> &password = {})
    {
        std::optional<Result<ConfigureCloudSyncResult, QString>> told;
        const auto ask = [this](const auto &answer) { answer(choice); };
        configureCloudSync(*sync, place, password, ask, [&told](const auto &result) { told.emplace(result); });
        wait([&told] { return told.has_value(); });
        return told.value_or(u"no answer"_s);
    }
    /// Requests are answered as by a server with an empty folder.
    void wait(const std::function<bool()> &condition)
    {
        EXPECT_TRUE(spinUntil([&] {
            clock.advance(1s);
            http.deliver();
            return condition();
        }));
    }
    /// Also when there is no answer from it.
    void take(const SyncPlace &place, const std::optional<QString> &password = {})
    {
        std::ignore = configure(place, password);
        EXPECT_EQ(sync->place(), place);
    }
    QStringList passwords() const { return secrets.secrets.keys(); }
    static QString account(const SyncPlace &place)
    {
        return u"webdav/%1 %2"_s.arg(place.user, place.server.toString());
    }

    FakeClock clock;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakeFileBookmarks bookmarks;
    FakeVolumes volumes;
    FakePowerEvents power;
    FakeLinkStoreHooks hooks;
    QTemporaryDir folder;
    SnapshotStore snapshots{folder.filePath(u"snapshots"_s), clock};
    LinkStore links{{defaults, debugMode, notifications, clock, bookmarks, volumes, power, snapshots, hooks}};
    FakeExchangeSettings settings{defaults, debugMode, notifications, u"here"_s};
    LinkExchange exchange{links, settings, bookmarks, clock};
    FakeSecretStore secrets{clock};
    FakeHttp http;
    FakeSyncRunner runner{clock};
    std::unique_ptr<SyncServices> sync = std::make_unique<SyncServices>(SyncServices::Services{
        {links, exchange, settings, bookmarks, defaults, debugMode, notifications, clock, snapshots, secrets, &runner},
        http,
        volumes,
        folder.filePath(u"cache"_s),
        u"here"_s});
    ConfigureCloudSyncResult choice = ConfigureCloudSyncResult::Cancelled;
};

// As on a disk that is not plugged in.
TEST_F(SyncServicesTest, CancellingGoesBackAlsoToAFolderThatIsNotThereNow)
{
    QTemporaryDir before;
    const SyncPlace old{SyncPlace::Kind::Folder, before.path()};
    const SyncPlace other{SyncPlace::Kind::Folder, folder.path()};
    take(other); // leaves a document there
    take(old);
    ASSERT_TRUE(sync->autoSyncEnabled());
    ASSERT_TRUE(before.remove());
    choice = ConfigureCloudSyncResult::Cancelled;
    const auto outcome = configure(other);
    ASSERT_TRUE(outcome) << outcome.error().toStdString();
    EXPECT_EQ(*outcome, ConfigureCloudSyncResult::Cancelled);
    EXPECT_EQ(sync->place(), old);
    EXPECT_TRUE(sync->autoSyncEnabled());
}

TEST_F(SyncServicesTest, APasswordStaysInTheKeyringAsLongAsAPlaceNeedsIt)
{
    const SyncPlace one = server(u"https://one.example/dav/"_s, u"ann"_s);
    const SyncPlace two = server(u"https://two.example/dav/"_s, u"ann"_s);
    const SyncPlace shared{SyncPlace::Kind::Folder, folder.path()};
    const SyncPlace none;
    struct Step {
        const char *what;
        std::function<void()> happens;
        QList<SyncPlace> kept;
    };
    const Step steps[] = {
        {"a server", [&] { take(one, u"a"_s); }, {one}},
        {"another password", [&] { take(one, u"b"_s); }, {one}},
        {"another server", [&] { take(two, u"c"_s); }, {two}},
        {"a folder", [&] { take(shared); }, {}},
        {"back to a server", [&] { take(one, u"a"_s); }, {one}},
        {"the same one for tests",
         [&] {
             debugMode.toggle();
             take(one, u"a"_s);
         },
         {one}},
        {"which are over",
         [&] {
             take(none);
             debugMode.toggle();
         },
         {one}},
        {"only switched off", [&] { sync->setAutoSyncEnabled(false); }, {one}},
        {"disabled",
         [&] {
             bool done = false;
             sync->disable([&done] { done = true; });
             wait([&done] { return done; });
         },
         {}},
        {"begun again", [&] { take(one, u"a"_s); }, {one}},
        {"no place", [&] { take(none); }, {}},
    };
    for (const Step &step : steps) {
        step.happens();
        QStringList kept;
        for (const SyncPlace &place : step.kept)
            kept += account(place);
        EXPECT_EQ(passwords(), kept) << step.what;
    }
}

TEST_F(SyncServicesTest, ASetUpThatIsCancelledLeavesTheOldPasswordAndNotTheNew)
{
    const SyncPlace one = server(u"https://one.example/dav/"_s, u"ann"_s);
    take(one, u"a"_s);
    ASSERT_EQ(passwords(), QStringList(account(one)));
    // At the folder is a document, and the user thinks better of it.
    FakeCloudPlace elsewhere(clock);
    SyncMachine other(clock, elsewhere, u"B"_s);
    clock.advance(16s);
    other.links().addLink(namedLink(u"theirs"_s));
    clock.advance(60s);
    const QString file = u"orvelle-sync.ovexport"_s;
    QFile document(folder.filePath(file));
    ASSERT_TRUE(document.open(QFile::WriteOnly) && document.write(elsewhere.bytes(file)) > 0);
    document.close();
    const auto result = configure({SyncPlace::Kind::Folder, folder.path()});
    ASSERT_TRUE(result) << result.error().toStdString();
    EXPECT_EQ(*result, ConfigureCloudSyncResult::Cancelled);
    EXPECT_EQ(sync->place(), one);
    EXPECT_EQ(passwords(), QStringList(account(one)));

    // And the other way about: from the folder to a server with a document.
    choice = ConfigureCloudSyncResult::CreatedNew;
    ASSERT_TRUE(configure({SyncPlace::Kind::Folder, folder.path()}));
    EXPECT_TRUE(passwords().isEmpty());
    choice = ConfigureCloudSyncResult::Cancelled;
    http.answers(u"*"_s, HttpResponse{200, {{"ETag", "\"1\""}}, elsewhere.bytes(file), {}});
    ASSERT_TRUE(configure(one, u"a"_s));
    EXPECT_EQ(sync->place().kind, SyncPlace::Kind::Folder);
    EXPECT_TRUE(passwords().isEmpty());
}

TEST_F(SyncServicesTest, EveryTrialOfAPlaceIsAnswered)
{
    const SyncPlace shared{SyncPlace::Kind::Folder, folder.path()};
    QStringList answers;
    const auto note = [&answers](const std::optional<QString> &failure) { answers += failure.value_or(u"works"_s); };
    sync->testPlace(shared, {}, [&](const std::optional<QString> &failure) {
        note(failure);
        sync->testPlace(shared, {}, note);
    });
    sync->testPlace(shared, {}, note);
    wait([&answers] { return answers.size() == 3; });
    EXPECT_EQ(answers, QStringList(3, u"works"_s));
}

TEST_F(SyncServicesTest, BeginningAnewKeepsWhatWasThereAsASnapshot)
{
    FakeCloudPlace elsewhere(clock);
    SyncMachine other(clock, elsewhere, u"B"_s);
    clock.advance(16s);
    for (int i = 0; i < 30; ++i)
        other.links().addLink(namedLink(u"their%1"_s.arg(i)));
    clock.advance(60s);
    const QString file = u"orvelle-sync.ovexport"_s;
    QFile document(folder.filePath(file));
    ASSERT_TRUE(document.open(QFile::WriteOnly) && document.write(elsewhere.bytes(file)) > 0);
    document.close();
    links.addLink(namedLink(u"mine"_s));
    choice = ConfigureCloudSyncResult::CreatedNew;
    const auto result = configure({SyncPlace::Kind::Folder, folder.path()});
    ASSERT_TRUE(result) << result.error().toStdString();
    wait([this] { return sync->status().state == SyncStatus::State::Current; });
    EXPECT_EQ(outlineOf(links.links()), u"mine"_s);
    EXPECT_FALSE(sync->heldBack());
    ASSERT_TRUE(document.open(QFile::ReadOnly));
    const auto written = decodeExchange(document.readAll());
    ASSERT_TRUE(written);
    EXPECT_EQ(outlineOf(written->links), u"mine"_s);
    const QList<SnapshotInfo> kept = snapshots.list(false);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept.first().machine, u"B"_s);
    const auto tree = snapshots.load(kept.first().name, false);
    ASSERT_TRUE(tree);
    EXPECT_EQ(tree->size(), 30);
}

} // namespace
} // namespace orvelle::test
