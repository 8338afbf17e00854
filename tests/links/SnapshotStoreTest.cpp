#include "links/SnapshotStore.h"

#include "links/LinkCodec.h"
#include "support/FakeClock.h"
#include "support/Outline.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <zstd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {
/// What writing a folder's entries to the disk fails with; 0 for not at all.
int folderSyncError = 0;
} // namespace

/// In place of the C library's, as no file system for tests refuses it.
extern "C" int fsync(int file)
{
    struct stat info = {};
    if (folderSyncError != 0 && ::fstat(file, &info) == 0 && S_ISDIR(info.st_mode)) {
        errno = folderSyncError;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, file));
}

namespace orvelle::test {
namespace {

class SnapshotTest : public ::testing::Test
{
protected:
    QString take(const QString &outline, const QString &reason = u"remove"_s, bool debugMode = false)
    {
        const auto name = snapshots.take(treeFrom(outline), reason, debugMode);
        EXPECT_TRUE(name);
        return name ? *name : QString();
    }

    QTemporaryDir folder;
    FakeClock clock;
    QString path = folder.filePath(u"a/b"_s);
    SnapshotStore snapshots{path, clock};
};

TEST_F(SnapshotTest, ComesBackAsItWasAndStaysPrivate)
{
    const QString name = take(u"a f[b]"_s);
    const QString other = take(u"x"_s, u"import"_s, true);
    const auto links = snapshots.load(name, false);
    ASSERT_TRUE(links);
    EXPECT_EQ(*links, treeFrom(u"a f[b]"_s));
    EXPECT_EQ(snapshots.list(false).size(), 1);
    EXPECT_EQ(snapshots.list(false).first().itemCount, 3);
    EXPECT_EQ(snapshots.list(false).first().reason, u"remove");
    EXPECT_EQ(snapshots.list(false).first().takenAt, clock.now());
    EXPECT_EQ(snapshots.list(true).first().name, other);
    EXPECT_FALSE(snapshots.load(other, false));
    const auto everyone = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther;
    EXPECT_EQ(QFile::permissions(path) & everyone, QFile::Permissions());
    EXPECT_EQ(QFile::permissions(path + u'/' + name) & everyone, QFile::Permissions());
    EXPECT_EQ(QDir(path).entryList(QDir::Files).size(), 1) << "no stray files";
}

TEST_F(SnapshotTest, AFolderThatCannotBeSyncedIsNoFailureButABrokenDiskIs)
{
    for (const int error : {EINVAL, ENOTSUP, EIO}) {
        folderSyncError = error;
        EXPECT_EQ(snapshots.take(treeFrom(u"a"_s), u"remove"_s, false).hasValue(), error != EIO) << error;
    }
    folderSyncError = 0;
}

TEST_F(SnapshotTest, WhatAKilledProcessLeftIsRemovedAfterADay)
{
    take(u"a"_s);
    const QString reserved = u"00000009_20010101T000000000Z_remove_1.json.zst"_s;
    for (const QString &name : {reserved, u"abcdef.part"_s}) {
        QFile leftover(path + u'/' + name);
        ASSERT_TRUE(leftover.open(QFile::WriteOnly));
    }
    clock.setNow(Timestamp::fromDateTime(QDateTime::currentDateTimeUtc().addSecs(23 * 3600)));
    take(u"b"_s);
    EXPECT_EQ(QDir(path).entryList(QDir::Files).size(), 4) << "it may still be writing";
    clock.setNow(clock.now() + 2 * 3600.0);
    take(u"c"_s);
    EXPECT_EQ(QDir(path).entryList(QDir::Files).size(), 3);
}

TEST_F(SnapshotTest, NewestFirstEvenWhenTheClockGoesBack)
{
    const QString first = take(u"a"_s);
    clock.setNow(clock.now() + -86400.0 * 3);
    const QString second = take(u"a b"_s);
    const QString third = take(u"a b c"_s);
    const QList<SnapshotInfo> all = snapshots.list(false);
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(all[0].name, third);
    EXPECT_EQ(all[1].name, second);
    EXPECT_EQ(all[2].name, first);
}

TEST_F(SnapshotTest, KeepsTheNewestFiftyAndTheLastOfEachDayForThirtyDays)
{
    // Two a day over 60 days, then 50 in a row.
    for (int day = 0; day < 60; ++day) {
        take(u"a"_s);
        clock.advance(std::chrono::hours(1));
        take(u"a b"_s);
        clock.advance(std::chrono::hours(23));
    }
    for (int i = 0; i < 50; ++i)
        take(u"a b c"_s);
    const QList<SnapshotInfo> all = snapshots.list(false);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(all[i].itemCount, 3);
    EXPECT_EQ(all.size(), 50 + 30);
    for (qsizetype i = 50; i < all.size(); ++i) {
        EXPECT_EQ(all[i].itemCount, 2) << "the day's last";
        EXPECT_LE(clock.now() - all[i].takenAt, 30 * 86400.0);
    }
}

TEST_F(SnapshotTest, RefusesNamesAndFilesThatAreNotItsOwn)
{
    const QString name = take(u"a"_s);
    QFile secret(folder.filePath(u"secret"_s));
    ASSERT_TRUE(secret.open(QFile::WriteOnly));
    for (const QString &bad : {u"../../secret"_s, u"/etc/passwd"_s, u""_s, u"."_s, u"debug/"_s + name,
                               QString(name).replace(u"remove"_s, u"../x"_s), name + u"\n"_s})
        EXPECT_FALSE(snapshots.load(bad, false)) << qPrintable(bad);

    QFile file(path + u'/' + name);
    ASSERT_TRUE(file.open(QFile::ReadWrite));
    const QByteArray whole = file.readAll();
    for (qsizetype cut = 0; cut < whole.size(); ++cut) {
        QByteArray damaged = whole;
        damaged[cut] = static_cast<char>(damaged[cut] ^ 0x20);
        // Not every bit of a frame carries content.
        const auto unpacked = unpackSnapshot(damaged);
        EXPECT_TRUE(!unpacked || *unpacked == treeFrom(u"a"_s)) << "bit flipped at " << cut;
        EXPECT_FALSE(unpackSnapshot(whole.left(cut))) << "cut at " << cut;
    }
    EXPECT_TRUE(unpackSnapshot(whole));
    EXPECT_FALSE(unpackSnapshot(whole + whole)) << "trailing bytes";
    EXPECT_EQ(snapshots.take({}, u"../Odd Reason"_s, false).hasValue(), true);
    EXPECT_EQ(snapshots.list(false).first().reason, u"ddeason");
}

TEST(Snapshot, ABombIsRefusedBeforeItFillsTheMemory)
{
    const QByteArray zeros(64 << 20, ' ');
    QByteArray bomb(static_cast<qsizetype>(ZSTD_compressBound(std::size_t(zeros.size()))), '\0');
    bomb.truncate(static_cast<qsizetype>(
        ZSTD_compress(bomb.data(), std::size_t(bomb.size()), zeros.constData(), std::size_t(zeros.size()), 3)));
    const auto refused = unpackSnapshot(bomb, 1 << 20);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().detail, u"unpacks to too much");
}

} // namespace
} // namespace orvelle::test
