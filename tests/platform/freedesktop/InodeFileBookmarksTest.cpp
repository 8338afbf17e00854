#include "platform/freedesktop/InodeFileBookmarks.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace orvelle::test {

namespace {

void writeFile(const QString &path, const QByteArray &content = "x")
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void rename(const QString &from, const QString &to)
{
    ASSERT_EQ(std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()), 0);
}

/// What becomes of the object "a" in a folder, and where a bookmark of it then
/// leads.
struct Row {
    const char *situation;
    std::function<void(const QString &a, const QString &b)> happens;
    const char *leadsTo; ///< none: an error
    bool stale = false;
};

const Row rows[] = {
    {"nothing", [](auto &, auto &) {}, "a"},
    {"renamed", [](auto &a, auto &b) { rename(a, b); }, "b", true},
    {"renamed, another took its name",
     [](auto &a, auto &b) {
         rename(a, b);
         writeFile(a);
     },
     "b", true},
    {"replaced by an editor's save",
     [](auto &a, auto &b) {
         writeFile(b);
         rename(b, a);
     },
     "a", true},
    {"deleted and made anew, perhaps with the same number",
     [](auto &a, auto &) {
         QFile::remove(a);
         writeFile(a);
     },
     "a", true},
    {"deleted, its number perhaps given to another",
     [](auto &a, auto &b) {
         QFile::remove(a);
         writeFile(b);
     },
     nullptr},
    {"a folder took its name",
     [](auto &a, auto &) {
         QFile::remove(a);
         QDir().mkdir(a);
     },
     "a", true},
    {"deleted", [](auto &a, auto &) { QFile::remove(a); }, nullptr},
    {"moved to another folder",
     [](auto &a, auto &b) {
         QDir().mkdir(b);
         rename(a, b + QStringLiteral("/a"));
     },
     nullptr},
    {"its folder deleted", [](auto &a, auto &) { QDir(QFileInfo(a).path()).removeRecursively(); }, nullptr},
};

} // namespace

TEST(InodeFileBookmarks, followARenameAndTellAReplacement)
{
    const InodeFileBookmarks bookmarks;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.situation);
        QTemporaryDir folder;
        const QString a = folder.filePath(QStringLiteral("a"));
        writeFile(a);
        const auto bookmark = bookmarks.create(a);
        ASSERT_TRUE(bookmark);
        row.happens(a, folder.filePath(QStringLiteral("b")));
        const auto resolved = bookmarks.resolve(*bookmark);
        ASSERT_EQ(resolved.hasValue(), row.leadsTo != nullptr);
        if (!resolved) {
            EXPECT_FALSE(resolved.error().detail.isEmpty());
            continue;
        }
        EXPECT_EQ(resolved->path, folder.filePath(QString::fromLatin1(row.leadsTo)));
        EXPECT_EQ(resolved->stale, row.stale);
    }
}

TEST(InodeFileBookmarks, foldersAndOddNamesAreFollowedToo)
{
    const InodeFileBookmarks bookmarks;
    QTemporaryDir folder;
    const QString before = folder.filePath(QStringLiteral("dossier \u00e9\n"));
    const QString after = folder.filePath(QStringLiteral("\U0001F427"));
    ASSERT_TRUE(QDir().mkdir(before));
    const auto bookmark = bookmarks.create(before + QLatin1Char('/'));
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(bookmarks.resolve(*bookmark)->path, before);
    rename(before, after);
    EXPECT_EQ(bookmarks.resolve(*bookmark)->path, after);
    for (const char *path : {"", "relative", "/nowhere/at/all"})
        EXPECT_FALSE(bookmarks.create(QString::fromLatin1(path))) << path;
}

TEST(InodeFileBookmarks, aMountThatComesBackUnderAnotherDeviceNumberIsTheSame)
{
    const InodeFileBookmarks bookmarks;
    QTemporaryDir folder;
    const QString a = folder.filePath(QStringLiteral("a"));
    writeFile(a);
    QByteArray bookmark = *bookmarks.create(a);
    constexpr int deviceAt = 8;
    bookmark[deviceAt] = static_cast<char>(~bookmark[deviceAt]);
    EXPECT_FALSE(bookmarks.resolve(bookmark)->stale);
}

TEST(InodeFileBookmarks, theSearchOfAFolderIsBounded)
{
    QTemporaryDir folder;
    const QString a = folder.filePath(QStringLiteral("a"));
    writeFile(a);
    const QByteArray bookmark = *InodeFileBookmarks().create(a);
    rename(a, folder.filePath(QStringLiteral("b")));
    EXPECT_TRUE(InodeFileBookmarks(3).resolve(bookmark));
    EXPECT_FALSE(InodeFileBookmarks(0).resolve(bookmark));
}

TEST(InodeFileBookmarks, hostileBytesAreAnError)
{
    const InodeFileBookmarks bookmarks;
    const QByteArray good = *bookmarks.create(QStringLiteral("/"));
    ASSERT_TRUE(bookmarks.resolve(good));
    for (qsizetype length = 0; length < good.size(); ++length)
        EXPECT_FALSE(bookmarks.resolve(good.left(length))) << length;
    constexpr int versionAt = 7;
    constexpr int kindAt = 32;
    const auto with = [&](qsizetype at, char byte) {
        QByteArray bytes = good;
        bytes[at] = byte;
        return bytes;
    };
    const QByteArray hostile[] = {
        with(0, 'X'),
        with(versionAt, 2),
        with(kindAt, 7),
        with(kindAt + 1, 'r'),
        good + QByteArray("etc\0passwd", 10),
        good + QByteArray(20'000, 'a'),
        good + QByteArray(5'000, 'a'),
        QByteArray(33, '\xff'),
        "bplist00",
    };
    for (const QByteArray &bytes : hostile)
        EXPECT_FALSE(bookmarks.resolve(bytes)) << bytes.left(48).toHex().toStdString();
}

TEST(InodeFileBookmarks, accessNeedsAReadableObject)
{
    InodeFileBookmarks bookmarks;
    EXPECT_TRUE(bookmarks.startAccess(QStringLiteral("/")));
    EXPECT_FALSE(bookmarks.startAccess(QStringLiteral("/nowhere")));
    bookmarks.stopAccess(QStringLiteral("/"));
}

} // namespace orvelle::test
