#include "links/LinkCodec.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/folder/FolderContainer.h"
#include "support/SpinUntil.h"
#include "support/SyncMachine.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <ctime>

using namespace Qt::StringLiterals;

// Large trees are read, merged and encoded beside the main thread. Time is
// counted as what the thread has worked, so that a busy machine does not
// matter, and beside encoding the tree once, so that a slow one does not.
namespace orvelle::test {
namespace {

double workedMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The most that this thread works between two turns of the event loop.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            const double now = workedMilliseconds();
            m_most = std::max(m_most, now - std::exchange(m_before, now));
        });
        m_timer.start(0);
    }
    void restart()
    {
        m_most = 0;
        m_before = workedMilliseconds();
    }
    double most() const { return m_most; }

private:
    QTimer m_timer;
    double m_before = workedMilliseconds();
    double m_most = 0;
};

/// A machine with threads of its own and a real folder.
struct ThreadedMachine : LinkStoreHooks {
    explicit ThreadedMachine(const QString &shared) : container(shared, u"here"_s, clock)
    {
        sync = std::make_unique<CloudSync>(CloudSync::Services{links, exchange, settings, bookmarks, defaults,
                                                               debugMode, notifications, clock, snapshots, secrets});
        sync->setContainer(&container);
    }
    ~ThreadedMachine() override { sync.reset(); }

    void hydrateFavicons(LinkList &) override {}
    void cleanupOrphanFavicons(const LinkList &) override {}
    void loadSyncState() override {}
    void scheduleAutoSync() override {}
    void systemDidWake() override {}

    Result<SyncResult, CloudSyncError> save()
    {
        std::optional<Result<SyncResult, CloudSyncError>> answer;
        sync->saveToCloud([&answer](const auto &result) { answer.emplace(result); });
        for (int patience = 0; patience < 12 && !answer; ++patience)
            spinUntil([&answer] { return answer.has_value(); });
        return answer.value_or(CloudSyncError{CloudSyncError::Kind::ReadFailed, u"no answer"_s});
    }
    void rename(qsizetype at, const QString &name)
    {
        LinkItem item = links.links().at(at);
        item.name = name;
        links.updateLink(item);
    }

    SystemClock clock;
    FakeClock idle;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakeFileBookmarks bookmarks;
    FakeVolumes volumes;
    FakePowerEvents power;
    QTemporaryDir folder;
    SnapshotStore snapshots{folder.filePath(u"snapshots"_s), clock};
    LinkStore links{{defaults, debugMode, notifications, clock, bookmarks, volumes, power, snapshots, *this}};
    FakeExchangeSettings settings{defaults, debugMode, notifications, u"here"_s};
    LinkExchange exchange{links, settings, bookmarks, clock};
    FakeSecretStore secrets{idle};
    FolderContainer container;
    std::unique_ptr<CloudSync> sync;
};

LinkList manyLinks()
{
    LinkList links;
    for (int i = 0; i < 10'000; ++i) {
        LinkItem item = LinkItem::make(u"Link %1"_s.arg(i), u"https://host%1.example/a/page"_s.arg(i), LinkType::Url,
                                       Timestamp{780'000'000.0 + i});
        item.bookmarkData = QByteArray(300, static_cast<char>('a' + i % 26));
        links += item;
    }
    return links;
}

TEST(SyncPauses, NoPartOfTheWorkOnAGreatTreeIsDoneOnTheMainThread)
{
    const LinkList tree = manyLinks();
    double onePart = 0;
    for (int i = 0; i < 3; ++i) {
        const double before = workedMilliseconds();
        ASSERT_FALSE(encodeLinks(tree).isEmpty());
        onePart = std::max(onePart, workedMilliseconds() - before);
    }

    const QTemporaryDir shared;
    ThreadedMachine a(shared.path());
    ThreadedMachine b(shared.path());
    a.links.edit(LinkStore::Step::Ordinary, u"test"_s, [&tree](LinkList &links) {
        links = tree;
        return true;
    });
    Heartbeat heart;
    const struct {
        const char *what;
        std::function<void()> edit;
        ThreadedMachine &machine;
    } steps[] = {
        {"the first upload", [] {}, a},
        {"the first merge", [] {}, b},
        {"a small upload", [&] { a.rename(17, u"there"_s); }, a},
        {"a small merge and an upload", [&] { b.rename(18, u"here"_s); }, b},
        {"the last merge", [] {}, a},
    };
    for (const auto &[what, edit, machine] : steps) {
        edit();
        heart.restart();
        const auto result = machine.save();
        ASSERT_TRUE(result) << what << ": " << result.error().description.toStdString();
        EXPECT_LT(heart.most(), onePart) << what << "; encoding the tree once takes " << onePart << " ms";
        printf("%s: %.1f ms of %.1f\n", what, heart.most(), onePart);
    }
    EXPECT_EQ(a.links.links().size(), 10'000);
    EXPECT_EQ(b.links.links().at(17).name, u"there"_s);
    EXPECT_EQ(a.links.links().at(18).name, u"here"_s);
}

} // namespace
} // namespace orvelle::test
