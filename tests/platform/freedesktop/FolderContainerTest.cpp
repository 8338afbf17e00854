#include "platform/freedesktop/folder/FolderContainer.h"

#include "platform/freedesktop/SharedFolder.h"
#include "platform/freedesktop/SystemClock.h"
#include "support/CloudContainerContract.h"

#include <QLocalServer>
#include <QLocalSocket>

namespace orvelle::test {

namespace {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

class FolderSubject
{
public:
    FolderSubject() : m_container(m_folder.path(), u"here"_s, m_clock) {}

    CloudContainer &container() { return m_container; }
    void otherMachineWrites(const QString &name, const QByteArray &bytes) { m_folder.put(name, bytes); }
    void otherMachineRemoves(const QString &name) { QFile::remove(m_folder.file(name)); }
    std::unique_ptr<CloudContainer> anotherMachine()
    {
        return std::make_unique<FolderContainer>(m_folder.path(), u"there"_s, m_clock);
    }
    void goesAway() { QDir().rename(m_folder.path(), m_folder.path() + u".away"_s); }
    void comesBack() { QDir().rename(m_folder.path() + u".away"_s, m_folder.path()); }

protected:
    SharedFolder m_folder;
    SystemClock m_clock;
    FolderContainer m_container;
};

const QString name = u"orvelle-sync.ovexport"_s;

/// A watching container, and how often it told of a change.
class FolderContainerTest : public testing::Test
{
protected:
    void watch()
    {
        bool gathered = false;
        QObject::connect(&container, &CloudContainer::gathered, &container, [&](int) { gathered = true; });
        QObject::connect(&container, &CloudContainer::changed, &container, [this] { ++changes; });
        container.startWatching(name);
        ASSERT_TRUE(spinUntil([&] { return gathered; }));
    }
    Result<CloudFile, CloudError> read()
    {
        std::optional<Result<CloudFile, CloudError>> got;
        container.read(name, [&](const auto &file) { got = file; });
        EXPECT_TRUE(spinUntil([&] { return got.has_value(); }));
        return *got;
    }

    SharedFolder folder;
    SystemClock clock;
    FolderContainer container{folder.path(), u"here"_s, clock};
    int changes = 0;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Folder, CloudContainerContract, FolderSubject);

TEST_F(FolderContainerTest, theWatchTellsOfWhatConcernsTheFileAndOfNothingElse)
{
    watch();
    const struct {
        const char *what;
        std::function<void()> happens;
        DownloadStatus status;
    } news[] = {
        {"a placeholder comes", [&] { folder.put(name + u".nextcloud"_s, " "); }, DownloadStatus::Placeholder},
        {"it is downloaded",
         [&] {
             folder.put(name, "one");
             QFile::remove(folder.file(name + u".nextcloud"_s));
         },
         DownloadStatus::Current},
        {"replaced by rename", [&] { folder.put(name, "two"); }, DownloadStatus::Current},
        {"written in place",
         [&] {
             QFile file(folder.file(name));
             ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Append));
             file.write("more");
         },
         DownloadStatus::Current},
        {"a copy comes", [&] { folder.put(u"orvelle-sync (conflicted copy 2026-11-21 120000).ovexport"_s, "x"); },
         DownloadStatus::Current},
        {"removed", [&] { QFile::remove(folder.file(name)); }, DownloadStatus::NotVisible},
    };
    for (const auto &each : news) {
        SCOPED_TRACE(each.what);
        changes = 0;
        each.happens();
        EXPECT_TRUE(spinUntil([&] { return changes > 0 && container.downloadStatus(name) == each.status; }));
    }

    changes = 0;
    folder.put(u"orvelle-sync-debug.ovexport"_s, "x");
    folder.put(u"holiday.jpg"_s, "x");
    bool written = false;
    container.write(name, "ours", {}, [&](const auto &file) { written = file.hasValue(); });
    EXPECT_TRUE(spinUntil([&] { return written; }));
    for (int i = 0; i < 3; ++i) // past the looks that the notices of all this led to
        EXPECT_EQ(read()->bytes, "ours");
    EXPECT_EQ(changes, 0);
    folder.put(name, "theirs");
    EXPECT_TRUE(spinUntil([&] { return changes == 1; }));
}

TEST_F(FolderContainerTest, thePlaceholdersClientIsAskedForTheFile)
{
    const QTemporaryDir runtime;
    ASSERT_TRUE(QDir(runtime.path()).mkdir(u"Nextcloud"_s));
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    folder.put(name + u".nextcloud"_s, " ");
    watch();
    EXPECT_EQ(container.downloadStatus(name), DownloadStatus::Placeholder);
    container.startDownload(name); // while no client runs
    EXPECT_EQ(read().error().kind, Kind::NoData);

    QLocalServer client;
    ASSERT_TRUE(client.listen(runtime.filePath(u"Nextcloud/socket"_s)));
    container.startDownload(name);
    ASSERT_TRUE(spinUntil([&] { return client.hasPendingConnections(); }));
    QLocalSocket *request = client.nextPendingConnection();
    ASSERT_TRUE(spinUntil([&] { return request->canReadLine(); }));
    EXPECT_EQ(request->readAll(), "MAKE_AVAILABLE_LOCALLY:" + folder.file(name).toUtf8() + ".nextcloud\n");
    qputenv("XDG_RUNTIME_DIR", before);

    QFile::rename(folder.file(name + u".nextcloud"_s), folder.file(name));
    EXPECT_TRUE(spinUntil([&] { return container.downloadStatus(name) == DownloadStatus::Current; }));
    EXPECT_GT(changes, 0);
}

TEST_F(FolderContainerTest, aFolderThatIsReplacedByAnotherIsWatchedThere)
{
    watch();
    QStringList told;
    QObject::connect(&container, &CloudContainer::availabilityChanged, &container,
                     [&] { told += container.isAvailable() ? u"there"_s : u"gone"_s; });
    for (int round = 0; round < 3; ++round) {
        told.clear();
        ASSERT_TRUE(QDir(folder.path()).removeRecursively());
        EXPECT_TRUE(spinUntil([&] { return told == QStringList(u"gone"_s); }));
        EXPECT_EQ(read().error().kind, Kind::Unavailable);
        EXPECT_FALSE(QDir(folder.path()).exists()) << "it is not made anew here";
        ASSERT_TRUE(QDir().mkpath(folder.path()));
        EXPECT_TRUE(spinUntil([&] { return told == QStringList({u"gone"_s, u"there"_s}); }));
        changes = 0;
        folder.put(name, "round " + QByteArray::number(round));
        EXPECT_TRUE(spinUntil([&] { return changes > 0; }));
        EXPECT_EQ(read()->bytes, "round " + QByteArray::number(round));
    }
}

TEST_F(FolderContainerTest, aFolderWhoseParentsAreMissingIsFoundWhenAllHaveCome)
{
    const QString deep = folder.path() + u"/a/b/c"_s;
    FolderContainer late(deep, u"here"_s, clock);
    EXPECT_FALSE(late.isAvailable());
    bool refused = false;
    late.write(name, "x", {}, [&](const auto &file) { refused = !file && file.error().kind == Kind::Unavailable; });
    EXPECT_TRUE(spinUntil([&] { return refused; }));
    EXPECT_TRUE(folder.names().isEmpty());
    QDir().mkpath(deep);
    EXPECT_TRUE(spinUntil([&] { return late.isAvailable(); }));
}

TEST_F(FolderContainerTest, nothingOfTheMainThreadWaitsForALockedFolder)
{
    folder.put(u".~lock."_s + name, "some other program's");
    std::optional<Result<CloudFile, CloudError>> written;
    auto other = std::make_unique<FolderContainer>(folder.path(), u"there"_s, clock);
    other->write(name, "x", {}, [&](const auto &file) { written = file; });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(other->downloadStatus(name), DownloadStatus::NotVisible);
    other.reset();
    EXPECT_LT(timer.elapsed(), 1000) << "what waits is given up";
    QCoreApplication::processEvents();
    EXPECT_FALSE(written);
    EXPECT_EQ(folder.names(), QStringList(u".~lock."_s + name)) << "and leaves nothing";
}

} // namespace orvelle::test
