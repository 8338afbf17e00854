#include "platform/freedesktop/folder/FolderFiles.h"

#include "platform/freedesktop/PrivateMounts.h"
#include "platform/freedesktop/SharedFolder.h"
#include "platform/freedesktop/folder/ConflictCopies.h"
#include "platform/freedesktop/folder/FolderMounts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <barrier>

namespace orvelle::test {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = CloudError::Kind;

const QString name = u"orvelle-sync.ovexport"_s;
const QString lockName = u".~lock.orvelle-sync.ovexport"_s;

class FolderFilesTest : public testing::Test
{
protected:
    QByteArray pathOf(const QString &each = name) const { return QFile::encodeName(folder.file(each)); }
    QByteArray versionIn(const QByteArray &bytes) const { return versionOf(bytes); }

    SharedFolder folder;
    std::shared_ptr<FakeWorkerTime> time = std::make_shared<FakeWorkerTime>();
    FolderFiles files{folder.path(), u"here"_s, time};
};

} // namespace

TEST(ConflictCopies, areToldByTheirNames)
{
    const char *const copies[] = {
        "orvelle-sync (conflicted copy 2024-01-01 120000).ovexport",
        "orvelle-sync (conflicted copy).ovexport",
        "orvelle-sync (Ann's conflicted copy 2024-01-01).ovexport",
        "orvelle-sync (Ann's Conflicted Copy 2024-01-01) (2).ovexport",
        "orvelle-sync (conflicted copy Ann 2024-01-01 120000).ovexport",
        "orvelle-sync (Copie en conflit de PC-Ann 2024-01-01).ovexport",
        "orvelle-sync (In Konflikt stehende Kopie von Ann 2024-01-01).ovexport",
        "orvelle-sync (conflict 2024-01-01-12-00-00).ovexport",
        "orvelle-sync (conflict).ovexport",
        "orvelle-sync (SFConflict ann@example.org 2024-01-01-12-00-00).ovexport",
        "orvelle-sync.sync-conflict-20240101-120000-ABCDEFG.ovexport",
        "orvelle-sync.sync-conflict-20240101-120000.ovexport",
        "orvelle-sync_conflict-20240101-120000.ovexport",
        "orvelle-sync_conflict-ann-20240101-120000.ovexport",
        "orvelle-sync [conflicted].ovexport",
        "orvelle-sync.conflict.ovexport",
        "orvelle-sync-conflict-2.ovexport",
        "orvelle-sync.Conflict.1.ovexport",
        "orvelle-sync.ovexport.conflict",
    };
    for (const char *each : copies) {
        EXPECT_TRUE(isConflictCopy(QString::fromLatin1(each), name)) << each;
        EXPECT_FALSE(isConflictCopy(QString::fromLatin1(each), u"orvelle-sync-debug.ovexport"_s)) << each;
        EXPECT_FALSE(isConflictCopy(QString::fromLatin1(each), u"orvelle.ovexport"_s)) << each;
        const QString ofDebug = QString::fromLatin1(each).replace(u"orvelle-sync"_s, u"orvelle-sync-debug"_s);
        EXPECT_FALSE(isConflictCopy(ofDebug, name)) << each;
        EXPECT_TRUE(isConflictCopy(ofDebug, u"orvelle-sync-debug.ovexport"_s)) << each;
    }
    const char *const others[] = {
        "orvelle-sync.ovexport",
        "orvelle-sync-debug.ovexport",
        "orvelle-sync (1).ovexport",
        "orvelle-sync-laptop.ovexport",
        "orvelle-sync (my notes on a conflict).ovexport",
        "orvelle-sync.ovexport.nextcloud",
        "orvelle-sync.ovexport~",
        "orvelle-sync (conflicted copy 2024-01-01).txt",
        "orvelle-sync.sync-conflict-20240101.ovexport",
        "old orvelle-sync (conflicted copy 2024-01-01).ovexport",
        "orvelle-sync-conflicts-explained.ovexport",
        ".~lock.orvelle-sync.ovexport",
        ".~orvelle-sync.ovexport.0011aabb-00112233.part",
        "orvelle-sync-archive",
    };
    for (const char *each : others)
        EXPECT_FALSE(isConflictCopy(QString::fromLatin1(each), name)) << each;
    EXPECT_FALSE(isConflictCopy(u"orvelle-sync ("_s + QString(100'000, u'(') + u").ovexport"_s, name));
    EXPECT_TRUE(isConflictCopy(conflictCopyName(name, u"2026-11-21 120000 abc"_s), name));
}

TEST_F(FolderFilesTest, copiesAreReadWithinBoundsAndArchivedWithoutOverwriting)
{
    const QString copy = u"orvelle-sync (conflicted copy 2024-01-01 120000).ovexport"_s;
    const QDateTime date(QDate(2026, 11, 21), QTime(14, 30, 5));
    for (int i = 0; i < 2; ++i) {
        folder.put(copy, "copy " + QByteArray::number(i));
        EXPECT_EQ(files.archiveConflictCopy(copy, date).error().kind, Kind::Conflict) << "not read in this form";
        ASSERT_EQ(files.readConflictCopies(name)->size(), 1);
        EXPECT_TRUE(files.archiveConflictCopy(copy, date));
    }
    const QString archive = u"orvelle-sync-archive/2026-11-21 143005/"_s;
    EXPECT_EQ(folder.get(archive + copy), "copy 0");
    EXPECT_EQ(folder.get(archive + u"2 "_s + copy), "copy 1");
    EXPECT_EQ(folder.names(), QStringList(u"orvelle-sync-archive"_s));
    EXPECT_EQ(files.archiveConflictCopy(copy, date).error().kind, Kind::Missing);
    EXPECT_EQ(files.archiveConflictCopy(u"../"_s + copy, date).error().kind, Kind::Io);

    for (int i = 0; i < 30; ++i)
        folder.put(u"orvelle-sync.conflict%1.ovexport"_s.arg(i), "many");
    ASSERT_EQ(::mkfifo(pathOf(u"orvelle-sync.conflict.ovexport"_s).constData(), 0600), 0);
    int taken = 0;
    for (auto some = files.readConflictCopies(name); !some->isEmpty(); some = files.readConflictCopies(name)) {
        EXPECT_LE(some->size(), 20);
        for (const ConflictCopy &each : *some)
            taken += files.archiveConflictCopy(each.name, date).hasValue();
    }
    EXPECT_EQ(taken, 30);
}

TEST_F(FolderFilesTest, anArchiveThatIsALinkElsewhereTakesNothing)
{
    const QString copy = u"orvelle-sync.conflict.ovexport"_s;
    ASSERT_TRUE(QFile::link(folder.parent(), folder.file(u"orvelle-sync-archive"_s)));
    folder.put(copy, "x");
    ASSERT_TRUE(files.readConflictCopies(name));
    EXPECT_FALSE(files.archiveConflictCopy(copy, QDateTime(QDate(2026, 11, 21), QTime(1, 2, 3))));
    EXPECT_EQ(folder.get(copy), "x");
}

TEST_F(FolderFilesTest, whatIsNoDocumentIsRefusedAndNeverReplaced)
{
    const auto makeSparse = [](const QByteArray &path) {
        const Descriptor file(::open(path.constData(), O_WRONLY | O_CREAT, 0600));
        return ::ftruncate(file.get(), CloudContainer::maxFileBytes + 1);
    };
    const struct {
        const char *what;
        std::function<int(const QByteArray &)> make;
        Kind kind;
    } cases[] = {
        {"empty", [](const auto &path) { return ::mknod(path.constData(), S_IFREG | 0600, 0); }, Kind::NoData},
        {"pipe", [](const auto &path) { return ::mkfifo(path.constData(), 0600); }, Kind::Io},
        {"folder", [](const auto &path) { return ::mkdir(path.constData(), 0700); }, Kind::Io},
        {"link to a device", [](const auto &path) { return ::symlink("/dev/zero", path.constData()); }, Kind::Io},
        {"link to a file", [](const auto &path) { return ::symlink("/etc/passwd", path.constData()); }, Kind::Io},
        {"too large", makeSparse, Kind::TooLarge},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.what);
        ASSERT_EQ(each.make(pathOf()), 0);
        struct stat before;
        ASSERT_EQ(::lstat(pathOf().constData(), &before), 0);
        EXPECT_EQ(files.read(name).error().kind, each.kind);
        EXPECT_FALSE(files.write(name, "new", {}));
        EXPECT_FALSE(files.write(name, "new", versionIn({})));
        struct stat after;
        ASSERT_EQ(::lstat(pathOf().constData(), &after), 0);
        EXPECT_EQ(before.st_ino, after.st_ino);
        EXPECT_EQ(folder.names(), QStringList(name));
        ASSERT_EQ(::remove(pathOf().constData()), 0);
    }
    EXPECT_EQ(FolderFiles({}, u"here"_s, time).read(name).error().kind, Kind::Unavailable);
    EXPECT_EQ(FolderFiles(u"relative"_s, u"here"_s, time).write(name, "x", {}).error().kind, Kind::Unavailable);
    for (const QString &bad : {u"../x"_s, u"a/b"_s, u".."_s, QString(), QString(QChar(0)), QString(300, u'x')}) {
        EXPECT_EQ(files.read(bad).error().kind, Kind::Io);
        EXPECT_EQ(files.write(bad, "x", {}).error().kind, Kind::Io);
    }
}

TEST_F(FolderFilesTest, aPlaceholderIsNotAFileThatIsMissing)
{
    folder.put(name + u".nextcloud"_s, " ");
    EXPECT_EQ(files.look(name).status, DownloadStatus::Placeholder);
    EXPECT_EQ(files.read(name).error().kind, Kind::NoData);
    EXPECT_EQ(files.write(name, "new", {}).error().kind, Kind::Conflict);
    EXPECT_FALSE(QFile::exists(folder.file(name)));
    QFile::remove(folder.file(name + u".nextcloud"_s));

    folder.put(name, " ");
    if (::setxattr(pathOf().constData(), "user.nextcloud.hydrate_exec", "x", 1, 0) != 0)
        GTEST_SKIP() << "no attributes on this file system";
    EXPECT_EQ(files.look(name).status, DownloadStatus::Placeholder);
    EXPECT_EQ(files.read(name).error().kind, Kind::NoData);
    EXPECT_EQ(files.write(name, "new", versionIn(" ")).error().kind, Kind::Conflict);
    EXPECT_EQ(folder.get(name), " ");
}

TEST_F(FolderFilesTest, aFileThatIsBeingWrittenIsReadWhenItIsWhole)
{
    folder.put(name, "half");
    QFile writer(folder.file(name));
    ASSERT_TRUE(writer.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered));
    time->whilePausing = [&] {
        if (time->pauses == 3) {
            writer.write(" and half");
            writer.close();
        }
    };
    const auto file = files.read(name);
    ASSERT_TRUE(file) << file.error().detail.toStdString();
    EXPECT_EQ(file->file.bytes, "half and half");
    EXPECT_EQ(time->pauses, 3);

    ASSERT_TRUE(writer.open(QIODevice::WriteOnly | QIODevice::Append));
    time->whilePausing = {};
    EXPECT_EQ(files.read(name).error().kind, Kind::Locked) << "but is not waited for without end";
    EXPECT_EQ(files.write(name, "x", file->file.version).error().kind, Kind::Locked);
    EXPECT_EQ(folder.names(), QStringList(name));
}

TEST_F(FolderFilesTest, aLockIsRespectedUntilItHasNotChangedForItsLease)
{
    // As another machine's whose clock is a year ahead.
    const QByteArray theirs = "Orvelle lock 1\nmachine: there\nboot: another\nprocess: 1\ntoken: t\nseconds: 15\n";
    folder.put(lockName, theirs);
    const timespec ahead[2] = {{::time(nullptr) + 31'536'000, 0}, {::time(nullptr) + 31'536'000, 0}};
    ::utimensat(AT_FDCWD, pathOf(lockName).constData(), ahead, 0);
    int beats = 0;
    const auto start = time->now();
    time->whilePausing = [&] { // it lives: seven seconds between two
        if (time->now() - start >= (beats + 1) * 7s)
            folder.put(lockName, theirs + "beat " + QByteArray::number(++beats));
    };
    EXPECT_EQ(files.write(name, "one", {}).error().kind, Kind::Locked);
    EXPECT_EQ(beats, 2);
    EXPECT_EQ(folder.names(), QStringList(lockName));

    time->whilePausing = [&] { EXPECT_EQ(folder.names().contains(name), false); };
    const auto last = time->now();
    EXPECT_TRUE(files.write(name, "one", {}));
    EXPECT_EQ(folder.names(), QStringList(name));
    // It had been watched for six seconds before.
    EXPECT_GE(time->now() - last, SharedFileLock::lease - 7s);
    EXPECT_LE(time->now() - last, SharedFileLock::lease - 5s);

    folder.put(lockName, theirs);
    time->pauses = 0;
    time->whilePausing = [&] {
        if (time->pauses == 5)
            QFile::remove(folder.file(lockName));
    };
    EXPECT_TRUE(files.write(name, "two", versionIn("one"))) << "as soon as it is given back";
    EXPECT_EQ(time->pauses, 5);
}

TEST_F(FolderFilesTest, aLockOfAProcessHereThatIsGoneIsTakenOverAtOnce)
{
    const struct {
        const char *what;
        QByteArray from;
        QByteArray to;
        bool isWaitedFor;
    } cases[] = {
        {"living", {}, {}, true},
        {"gone", "process: ", "process: 4194304", false},
        {"another of its number", "started: ", "started: 1", false},
        {"of another machine", "boot: ", "boot: x", true},
        {"in a sandbox", "processes: ", "processes: x", true},
    };
    const Descriptor at(::open(QFile::encodeName(folder.path()).constData(), O_RDONLY | O_DIRECTORY));
    for (const auto &each : cases) {
        SCOPED_TRACE(each.what);
        SharedFileLock first(name, u"m"_s, time);
        ASSERT_FALSE(first.acquire(at.get(), true));
        QByteArrayList lines = folder.get(lockName).split('\n');
        for (QByteArray &line : lines) {
            if (!each.from.isEmpty() && line.startsWith(each.from))
                line = each.to;
        }
        folder.put(lockName, lines.join('\n'));
        time->pauses = 0;
        EXPECT_TRUE(files.write(name, "x", folder.get(name).isEmpty() ? QByteArray() : versionIn("x")));
        EXPECT_EQ(time->pauses > 0, each.isWaitedFor);
    }
}

TEST_F(FolderFilesTest, aFreshLockThatIsCaughtInTheMomentOfTakingOverGoesBack)
{
    // When its time is over, the lock is looked at once more and then the time:
    // between that and the taking over another has done it.
    const Descriptor at(::open(QFile::encodeName(folder.path()).constData(), O_RDONLY | O_DIRECTORY));
    SharedFileLock lock(name, u"m"_s, time);
    folder.put(lockName, "Orvelle lock 1\ntoken: old\n");
    int asked = 0;
    time->whenAsked = [&] {
        if (time->pauses * 100ms == SharedFileLock::lease && ++asked == 2)
            folder.put(lockName, "Orvelle lock 1\ntoken: fresh\n");
    };
    EXPECT_TRUE(lock.acquire(at.get(), false)) << "the fresh one holds";
    EXPECT_GE(asked, 2);
    EXPECT_EQ(folder.get(lockName), "Orvelle lock 1\ntoken: fresh\n");
    EXPECT_EQ(folder.names(), QStringList(lockName));
}

TEST_F(FolderFilesTest, aLockThatIsNoLockFileStandsInTheWayAndStays)
{
    ASSERT_EQ(::mkdir(pathOf(lockName).constData(), 0700), 0);
    EXPECT_EQ(files.write(name, "x", {}).error().kind, Kind::Io);
    EXPECT_EQ(folder.names(), QStringList(lockName));
}

TEST_F(FolderFilesTest, ofTwoThatFindAnAbandonedLockAtMostOneGetsIt)
{
    const Descriptor at(::open(QFile::encodeName(folder.path()).constData(), O_RDONLY | O_DIRECTORY));
    int total = 0;
    for (int round = 0; round < 200; ++round) {
        folder.put(lockName, "Orvelle lock 1\ntoken: old\n");
        std::barrier both(2);
        std::atomic<int> owners = 0;
        const auto take = [&] {
            const auto own = std::make_shared<FakeWorkerTime>();
            SharedFileLock lock(name, u"m"_s, own);
            own->whilePausing = [&, begin = own->now()] {
                if (own->now() - begin == SharedFileLock::lease - 100ms)
                    both.arrive_and_wait(); // both have watched the old one
            };
            if (!lock.acquire(at.get(), false) && lock.isStillOurs(at.get()))
                ++owners;
        };
        {
            std::jthread a(take), b(take);
        }
        ASSERT_LE(owners, 1) << round;
        EXPECT_EQ(folder.names(), QStringList(lockName));
        total += owners;
    }
    EXPECT_GT(total, 100) << "rarely none, when the slower one catches the quicker's lock and gives it back";
}

TEST_F(FolderFilesTest, aVersionThatComesAtTheLastMomentIsNotLost)
{
    // A sync client knows no locks: it comes when the lock is held and the
    // version was compared, which is when the age of the lock is asked for.
    time->whenAsked = [&] {
        if (QFile::exists(folder.file(lockName)))
            folder.put(name, "theirs");
    };
    EXPECT_EQ(files.write(name, "ours", {}).error().kind, Kind::Conflict);
    EXPECT_EQ(folder.get(name), "theirs");
    time->whenAsked = {};
    ASSERT_TRUE(files.write(name, "merged", versionIn("theirs")));

    time->whenAsked = [&] {
        if (QFile::exists(folder.file(lockName)))
            folder.put(name, "theirs again");
    };
    EXPECT_TRUE(files.write(name, "ours again", versionIn("merged")));
    time->whenAsked = {};
    EXPECT_EQ(folder.get(name), "ours again");
    const auto copies = files.readConflictCopies(name);
    ASSERT_EQ(copies->size(), 1);
    EXPECT_EQ(copies->first().bytes, "theirs again");
    EXPECT_EQ(folder.names().size(), 2);
}

TEST_F(FolderFilesTest, whatKilledProcessesLeftIsSweptAwayAndOthersIsNot)
{
    ASSERT_TRUE(files.write(name, "one", {}));
    const QString tag = QString::fromLatin1(versionOf(bootId()).first(8));
    const QString ours = u".~"_s + name + u'.' + tag + u"-0123456789abcdef.part"_s;
    const QString theirs = u".~"_s + name + u".01234567-0123456789abcdef.part"_s;
    const QString oldTheirs = u".~"_s + name + u".01234567-0123456789abcde0.part"_s;
    const QString users = u"holiday.part"_s;
    for (const QString &each : {ours, theirs, oldTheirs, users})
        folder.put(each, "half");
    const timespec old[2] = {{::time(nullptr) - 7200, 0}, {::time(nullptr) - 7200, 0}};
    for (const QString &each : {oldTheirs, users})
        ::utimensat(AT_FDCWD, pathOf(each).constData(), old, 0);
    ASSERT_TRUE(files.write(name, "two", versionIn("one")));
    EXPECT_EQ(folder.names(), (QStringList{theirs, users, name}));
}

TEST_F(FolderFilesTest, filesAreForTheirOwnerAlone)
{
    ASSERT_TRUE(files.write(name, "one", {}));
    struct stat info;
    ASSERT_EQ(::stat(pathOf().constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600U);
}

TEST_F(FolderFilesTest, afterAFullDiskTheOldFileIsWhole)
{
    const QByteArray path = QFile::encodeName(folder.path());
    if (!havePrivateMounts() || ::mount("tmpfs", path.constData(), "tmpfs", 0, "size=1m,mode=755") != 0)
        GTEST_SKIP() << "mounting a file system is not permitted here";
    FolderFiles small(folder.path(), u"here"_s, time);
    ASSERT_TRUE(small.write(name, "old", {}));
    EXPECT_EQ(small.write(name, QByteArray(2 << 20, 'n'), versionIn("old")).error().kind, Kind::NoSpace);
    EXPECT_EQ(small.read(name)->file.bytes, "old");
    EXPECT_EQ(folder.names(), QStringList(name)) << "and leaves no half file in the way of others";
    EXPECT_TRUE(small.write(name, QByteArray(100'000, 'n'), versionIn("old")));

    // The folder below the mount is another one.
    ::umount2(path.constData(), MNT_DETACH);
    EXPECT_EQ(small.read(name).error().kind, Kind::Unavailable);
    EXPECT_EQ(small.write(name, "x", {}).error().kind, Kind::Unavailable);
    EXPECT_FALSE(small.look(name).isAvailable);
    EXPECT_TRUE(folder.names().isEmpty());
}

TEST_F(FolderFilesTest, theProbeSaysWhatFailed)
{
    EXPECT_TRUE(files.probe());
    EXPECT_TRUE(folder.names().isEmpty());
    const QByteArray path = QFile::encodeName(folder.path());
    if (!havePrivateMounts() || ::mount("tmpfs", path.constData(), "tmpfs", MS_RDONLY, "size=1m") != 0)
        GTEST_SKIP() << "mounting a file system is not permitted here";
    const auto found = FolderFiles(folder.path(), u"here"_s, time).probe();
    ::umount2(path.constData(), MNT_DETACH);
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error().kind, Kind::Authentication);
    EXPECT_TRUE(found.error().detail.startsWith(u"creating a file"_s)) << found.error().detail.toStdString();
}

TEST(FolderMounts, whatTheTableNamesAndIsNotMountedIsUnavailable)
{
    const QByteArray table = "# a comment\nUUID=1 / ext4 defaults 0 1\nnas:/x /mnt/nas nfs noauto 0 0\n"
                             "//s/t /home/a/My\\040Share cifs user 0 0\nUUID=2 none swap sw 0 0\n";
    const QByteArray root = "21 1 8:1 / / rw - ext4 /dev/sda1 rw\n";
    const QByteArray both = root + "22 21 0:5 / /mnt/nas rw - nfs nas:/x rw\n"
                                   "23 21 0:6 / /home/a/My\\040Share rw - cifs //s/t rw\n";
    const struct {
        const char *path;
        bool whenOnlyRoot;
    } cases[] = {{"/home/a/Cloud", false}, {"/mnt/nas", true},           {"/mnt/nas/docs", true},
                 {"/mnt/nas2", false},     {"/home/a/My Share/d", true}, {"/", false}};
    for (const auto &each : cases) {
        EXPECT_EQ(isUnmounted(each.path, table, root), each.whenOnlyRoot) << each.path;
        EXPECT_FALSE(isUnmounted(each.path, table, both)) << each.path;
        EXPECT_FALSE(isUnmounted(each.path, {}, root)) << each.path;
    }
}

} // namespace orvelle::test
