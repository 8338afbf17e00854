#include "platform/freedesktop/DefaultsFolder.h"

#include <QRegularExpression>

#include <sqlite3.h>
#include <sys/stat.h>

namespace orvelle::test {

namespace {

using OpenKind = DefaultsOpenError::Kind;

void runSql(const QString &file, const char *sql)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(file).constData(), &database);
    char *error = nullptr;
    sqlite3_exec(database, sql, nullptr, nullptr, &error);
    EXPECT_EQ(error, nullptr) << error;
    sqlite3_free(error);
    sqlite3_close(database);
}

/// A folder with settings worth keeping, closed cleanly.
void fill(DefaultsFolder &folder)
{
    const auto defaults = folder.open();
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(defaults->write(QStringLiteral("key%1").arg(i), QByteArray(3000, static_cast<char>(i))));
}

struct Damage {
    const char *name;
    std::function<void(DefaultsFolder &)> apply;
};

const Damage damages[] = {
    {"truncated", [](DefaultsFolder &f) { f.put(f.bytes().left(f.bytes().size() / 2)); }},
    {"header only", [](DefaultsFolder &f) { f.put(f.bytes().left(100)); }},
    {"a few bytes", [](DefaultsFolder &f) { f.put("SQLite"); }},
    {"garbage", [](DefaultsFolder &f) { f.put(QByteArray(50'000, 'x')); }},
    {"garbage after the first page",
     [](DefaultsFolder &f) { f.put(f.bytes().left(8192) + QByteArray(f.bytes().size() - 8192, '\x5a')); }},
    {"another program's database",
     [](DefaultsFolder &f) {
         QFile::remove(f.file());
         runSql(f.file(), "CREATE TABLE defaults(name, value); INSERT INTO defaults VALUES('a', 'b')");
     }},
    {"our mark on another table",
     [](DefaultsFolder &f) { runSql(f.file(), "ALTER TABLE defaults RENAME COLUMN revision TO version"); }},
    {"a log without its database",
     [](DefaultsFolder &f) {
         QFile::remove(f.file());
         f.put("log that may hold something", "-wal");
     }},
    {"a log beside an empty file",
     [](DefaultsFolder &f) {
         f.put({});
         f.put("log that may hold something", "-wal");
     }},
};

} // namespace

TEST(SqliteDefaultsFile, aDamagedDatabaseIsMovedAsideWholeAndANewOneServes)
{
    for (const Damage &damage : damages) {
        SCOPED_TRACE(damage.name);
        DefaultsFolder folder;
        fill(folder);
        damage.apply(folder);
        const QByteArray database = folder.bytes();
        const QByteArray log = folder.bytes("-wal");

        auto opened = folder.tryOpen();
        ASSERT_TRUE(opened) << opened.error().detail.toStdString();
        ASSERT_TRUE(opened->damagedCopy);
        const QString copy = *opened->damagedCopy;
        static const QRegularExpression dated(
            QStringLiteral("/defaults\\.sqlite\\.corrupt-\\d{4}-\\d\\d-\\d\\dT\\d\\d-\\d\\d-\\d\\d(-wal)?$"));
        EXPECT_TRUE(dated.match(copy).hasMatch()) << copy.toStdString();
        QFile moved(copy);
        ASSERT_TRUE(moved.open(QIODevice::ReadOnly));
        const bool logOnly = copy.endsWith(QStringLiteral("-wal"));
        EXPECT_EQ(moved.readAll(), logOnly ? log : database);
        if (!logOnly && !log.isEmpty()) {
            QFile movedLog(copy + QStringLiteral("-wal"));
            ASSERT_TRUE(movedLog.open(QIODevice::ReadOnly));
            EXPECT_EQ(movedLog.readAll(), log);
        }
        EXPECT_EQ(opened->defaults->keys(), QStringList());
        EXPECT_TRUE(opened->defaults->write(QStringLiteral("k"), true));
        const auto again = folder.tryOpen();
        EXPECT_FALSE(again->damagedCopy);
        EXPECT_EQ(again->defaults->get<bool>(QStringLiteral("k")), true);
    }
}

TEST(SqliteDefaultsFile, damageInTheSameSecondGetsANameOfItsOwn)
{
    DefaultsFolder folder;
    QSet<QString> copies;
    for (int i = 0; i < 5; ++i) {
        folder.put(QByteArray(5000, static_cast<char>('a' + i)));
        copies += folder.tryOpen()->damagedCopy.value();
    }
    EXPECT_EQ(copies.size(), 5);
}

TEST(SqliteDefaultsFile, anEmptyFileBecomesTheDatabase)
{
    DefaultsFolder folder;
    folder.put({});
    const auto opened = folder.tryOpen();
    EXPECT_FALSE(opened->damagedCopy);
    EXPECT_TRUE(opened->defaults->write(QStringLiteral("k"), true));
}

TEST(SqliteDefaultsFile, aNewerSchemaIsRefusedAndUntouched)
{
    for (const bool withLog : {false, true}) {
        DefaultsFolder folder;
        fill(folder);
        if (withLog) {
            // A process that died: the version is in the log only.
            ChildProcess([&] {
                sqlite3 *database = nullptr;
                sqlite3_open(QFile::encodeName(folder.file()).constData(), &database);
                sqlite3_exec(database, "PRAGMA user_version=2", nullptr, nullptr, nullptr);
            }).wait();
            ASSERT_FALSE(folder.bytes("-wal").isEmpty());
        } else {
            runSql(folder.file(), "PRAGMA user_version=2");
        }
        const QByteArray database = folder.bytes();
        const QByteArray log = folder.bytes("-wal");
        for (int i = 0; i < 2; ++i) {
            const auto opened = folder.tryOpen();
            ASSERT_FALSE(opened);
            EXPECT_EQ(opened.error().kind, OpenKind::NewerSchema);
            EXPECT_EQ(opened.error().path, folder.file());
        }
        EXPECT_EQ(folder.bytes(), database);
        EXPECT_EQ(folder.bytes("-wal"), log);
    }
}

TEST(SqliteDefaultsFile, aNewerVersionThatTakesOverMeanwhileIsNotWrittenTo)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    ASSERT_TRUE(defaults->write(QStringLiteral("k"), true));
    runSql(folder.file(), "PRAGMA user_version=2");
    EXPECT_EQ(defaults->write(QStringLiteral("k"), false).error().kind, DefaultsError::Kind::Other);
    EXPECT_EQ(defaults->get<bool>(QStringLiteral("k")), true);
}

TEST(SqliteDefaultsFile, whatIsNoFileOrNoFolderIsRefused)
{
    const auto refused = [](auto prepare) {
        DefaultsFolder folder;
        prepare(folder);
        const auto opened = folder.tryOpen();
        return !opened && opened.error().kind == OpenKind::Inaccessible && !opened.error().detail.isEmpty();
    };
    EXPECT_TRUE(refused([](DefaultsFolder &f) { QDir().mkpath(f.file()); })) << "a folder for a file";
    EXPECT_TRUE(refused([](DefaultsFolder &f) { QFile(f.path()).open(QIODevice::WriteOnly); }))
        << "a file for a folder";
    EXPECT_TRUE(refused([](DefaultsFolder &f) {
        QDir().mkpath(f.path());
        ::mkfifo(QFile::encodeName(f.file()).constData(), 0600);
    })) << "a pipe, which must not be waited for";
    EXPECT_TRUE(refused([](DefaultsFolder &f) {
        QDir().mkpath(f.path());
        QFile::link(f.parent() + QStringLiteral("/nowhere/x"), f.file());
    })) << "a link to nothing";
}

TEST(SqliteDefaultsFile, aLinkedDatabaseIsUsedWhereItIs)
{
    DefaultsFolder folder;
    QDir().mkpath(folder.path());
    const QString real = folder.parent() + QStringLiteral("/elsewhere.sqlite");
    QFile(real).open(QIODevice::WriteOnly);
    ASSERT_TRUE(QFile::link(real, folder.file()));
    {
        const auto defaults = folder.open();
        EXPECT_EQ(defaults->path(), QFileInfo(real).canonicalFilePath());
        EXPECT_TRUE(defaults->write(QStringLiteral("k"), true));
    }
    EXPECT_TRUE(QFileInfo(folder.file()).isSymLink());
    EXPECT_EQ(folder.open()->get<bool>(QStringLiteral("k")), true);
}

TEST(SqliteDefaultsFile, aDeletedOrReplacedDatabaseIsNoticedBeforeTheNextWrite)
{
    DefaultsFolder folder;
    DefaultsFolder other;
    ASSERT_TRUE(other.open()->write(QStringLiteral("restored"), true));
    const auto defaults = folder.open();
    ASSERT_TRUE(defaults->write(QStringLiteral("k"), qint64(1)));

    ASSERT_TRUE(QDir(folder.path()).removeRecursively());
    ASSERT_TRUE(defaults->write(QStringLiteral("k"), qint64(2)));
    EXPECT_EQ(folder.open()->get<qint64>(QStringLiteral("k")), 2);

    for (const char *part : {"", "-wal", "-shm"})
        QFile::remove(folder.file(part));
    ASSERT_TRUE(QFile::copy(other.file(), folder.file()));
    EXPECT_EQ(defaults->get<bool>(QStringLiteral("restored")), true);
}

} // namespace orvelle::test
