#include "platform/freedesktop/DefaultsFolder.h"
#include "support/FakeClock.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>

namespace orvelle::test {

namespace {

using Kind = DefaultsError::Kind;

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = static_cast<char>((i * 2654435761U) >> 13);
    return bytes;
}

const DefaultsValue values[] = {
    true,
    false,
    std::numeric_limits<qint64>::min(),
    std::numeric_limits<qint64>::max(),
    qint64(0),
    0.1,
    3.0,
    -0.0,
    std::numeric_limits<double>::infinity(),
    std::numeric_limits<double>::denorm_min(),
    QString(),
    QStringLiteral("r\u00e9sum\u00e9 \U0001F427"),
    QStringLiteral("a") + QChar(0) + QStringLiteral("b"),
    QString(2, QChar(QChar::ByteOrderMark)) + QStringLiteral("x"),
    QString(QChar(0xD800)) + QStringLiteral("unpaired"),
    QByteArray(),
    QByteArray("\0\xff\0", 3),
    pattern(8'300'000),
    Timestamp::distantPast(),
    Timestamp{811'929'302.123456789},
    QStringList(),
    QStringList{QString(), QStringLiteral("b\n"), QString(QChar(0xDC00)), QStringLiteral("\U0001F427")},
    QList<QByteArray>(),
    QList<QByteArray>{QByteArray(), QByteArray("\0x", 2), pattern(70'000)},
    QList<qint64>{},
    QList<qint64>{-1, std::numeric_limits<qint64>::min(), 7},
};

bool sameBits(const DefaultsValue &a, const DefaultsValue &b)
{
    const auto *left = std::get_if<double>(&a);
    const auto *right = std::get_if<double>(&b);
    return a == b && (!left || std::signbit(*left) == std::signbit(*right));
}

} // namespace

TEST(SqliteUserDefaults, everyTypeComesBackAsItWasInALaterRunAndInAnotherProcess)
{
    DefaultsFolder folder;
    {
        const auto defaults = folder.open();
        for (std::size_t i = 0; i < std::size(values); ++i)
            ASSERT_TRUE(defaults->write(QString::number(i), values[i])) << i;
    }
    const auto check = [&] {
        const auto defaults = folder.open();
        for (std::size_t i = 0; i < std::size(values); ++i) {
            const auto stored = defaults->value(QString::number(i));
            if (!stored || !sameBits(*stored, values[i]))
                throw std::runtime_error(std::to_string(i));
        }
    };
    EXPECT_NO_THROW(check());
    EXPECT_TRUE(ChildProcess(check).wait());
}

TEST(SqliteUserDefaults, valuesReplaceEachOtherWhateverTheirTypeAndSize)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    const QString key = QStringLiteral("k");
    for (std::size_t i = 0; i < std::size(values); ++i) {
        ASSERT_EQ(defaults->write(key, values[i]).value(), qint64(i + 1));
        EXPECT_TRUE(sameBits(defaults->value(key).value(), values[i])) << i;
    }
}

TEST(SqliteUserDefaults, keysAreAnyTextAndListedByCodePoint)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    const QStringList sorted{
        QString(),           QString(QChar(0)),        QStringLiteral("A"),      QStringLiteral("A") + QChar(0),
        QStringLiteral("a"), QStringLiteral("\u00e9"), QStringLiteral("\uFFFD"), QStringLiteral("\U0001F427")};
    for (auto it = sorted.rbegin(); it != sorted.rend(); ++it)
        ASSERT_TRUE(defaults->write(*it, *it));
    EXPECT_EQ(defaults->keys(), sorted);
    for (const QString &key : sorted)
        EXPECT_EQ(defaults->get<QString>(key), key);
    ASSERT_TRUE(defaults->remove(sorted[2]));
    EXPECT_EQ(defaults->keys().size(), sorted.size() - 1);
}

TEST(SqliteUserDefaults, refusesWhatItCouldNotGiveBack)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    const QString key = QStringLiteral("k");
    ASSERT_TRUE(defaults->write(key, 1.5));
    int reported = 0;
    QObject::connect(defaults.get(), &UserDefaults::writeFailed, [&] { ++reported; });

    EXPECT_EQ(defaults->write(key, std::nan("")).error().kind, Kind::Other);
    EXPECT_EQ(defaults->write(key, Timestamp{std::nan("")}).error().kind, Kind::Other);
    EXPECT_EQ(defaults->write(QString(QChar(0xDFFF)), true).error().kind, Kind::Other);
    EXPECT_EQ(reported, 3);
    EXPECT_EQ(defaults->get<double>(key), 1.5);
    EXPECT_FALSE(defaults->value(QString(QChar(0xDFFF))));
}

TEST(SqliteUserDefaults, revisionsCountChangesOfAKeyAndSurviveItsRemoval)
{
    DefaultsFolder folder;
    const QString key = QStringLiteral("k");
    auto defaults = folder.open();
    EXPECT_EQ(defaults->read(key).revision, 0);
    EXPECT_EQ(defaults->remove(key).value(), 0) << "nothing to remove";
    EXPECT_EQ(defaults->compareAndSet(key, 0, true).value(), 1);
    EXPECT_EQ(defaults->write(QStringLiteral("other"), true).value(), 1);
    EXPECT_EQ(defaults->remove(key).value(), 2);
    defaults.reset();
    defaults = folder.open();
    EXPECT_EQ(defaults->read(key).revision, 2);
    EXPECT_EQ(defaults->compareAndSet(key, 0, true).error().kind, Kind::Conflict);
    EXPECT_EQ(defaults->compareAndSet(key, 1, true).error().kind, Kind::Conflict);
    EXPECT_FALSE(defaults->value(key));
    EXPECT_EQ(defaults->compareAndSet(key, 2, false).value(), 3);
    EXPECT_EQ(defaults->get<bool>(key), false);
}

TEST(SqliteUserDefaults, onlyTheOwnerMayReadWhateverTheUmask)
{
    for (const mode_t mask : {0000, 0022, 0277}) {
        DefaultsFolder folder;
        const mode_t before = ::umask(mask);
        const auto defaults = folder.open();
        EXPECT_TRUE(defaults->write(QStringLiteral("k"), true));
        ::umask(before);
        const auto modeOf = [](const QString &path) {
            struct stat info = {};
            ::stat(QFile::encodeName(path).constData(), &info);
            return info.st_mode & 07777;
        };
        EXPECT_EQ(modeOf(folder.path()), 0700U);
        for (const char *part : {"", "-wal", "-shm"})
            EXPECT_EQ(modeOf(folder.file(part)), 0600U) << part << " under umask " << mask;
    }
}

TEST(SqliteUserDefaults, theLogIsMovedIntoTheDatabaseWhenIdle)
{
    DefaultsFolder folder;
    FakeClock clock;
    const auto opened = SqliteUserDefaults::open(folder.path(), clock);
    ASSERT_TRUE(opened->defaults->write(QStringLiteral("k"), QByteArray("needle")));
    clock.advance(std::chrono::milliseconds(2900));
    EXPECT_FALSE(folder.bytes().contains("needle"));
    clock.advance(std::chrono::milliseconds(200));
    EXPECT_TRUE(folder.bytes().contains("needle"));
    EXPECT_EQ(clock.pending(), 0U);
}

TEST(SqliteUserDefaults, theLogStaysBoundedWithoutAnIdleMoment)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    for (int i = 0; i < 12; ++i) {
        ASSERT_TRUE(defaults->write(QStringLiteral("big"), pattern(8'000'000 + i * 10'000)));
        EXPECT_LT(QFileInfo(folder.file("-wal")).size(), 56'000'000);
    }
}

TEST(SqliteUserDefaults, damageFoundWhileRunningIsReportedAndNothingIsWrittenOverIt)
{
    DefaultsFolder folder;
    const QString key = QStringLiteral("big");
    {
        const auto defaults = folder.open();
        for (const char *name : {"a", "b", "big", "c"})
            ASSERT_TRUE(defaults->write(QString::fromLatin1(name), pattern(3'000'000)));
    }
    const auto defaults = folder.open();
    QStringList failed;
    QObject::connect(defaults.get(), &UserDefaults::writeFailed, [&](const QString &k) { failed += k; });
    QByteArray bytes = folder.bytes();
    bytes.replace(16'384, bytes.size() - 16'384, QByteArray(bytes.size() - 16'384, '\xee'));
    folder.put(bytes);

    EXPECT_FALSE(defaults->value(key));
    EXPECT_FALSE(defaults->write(key, true));
    EXPECT_FALSE(defaults->write(QStringLiteral("new"), true));
    EXPECT_GE(failed.size(), 3);
    EXPECT_EQ(folder.bytes(), bytes);
}

TEST(SqliteUserDefaults, aValueOfUnknownFormIsKeptUntilItIsRemoved)
{
    DefaultsFolder folder;
    ASSERT_TRUE(folder.open()->write(QStringLiteral("k"), qint64(1)));
    sqlite3 *other = nullptr;
    sqlite3_open(QFile::encodeName(folder.file()).constData(), &other);
    sqlite3_exec(other, "UPDATE defaults SET type='strings', value=x'ffffffff00'", nullptr, nullptr, nullptr);
    sqlite3_close(other);

    const auto defaults = folder.open();
    int reported = 0;
    QObject::connect(defaults.get(), &UserDefaults::writeFailed, [&] { ++reported; });
    EXPECT_FALSE(defaults->value(QStringLiteral("k")));
    EXPECT_FALSE(defaults->value(QStringLiteral("k")));
    EXPECT_EQ(reported, 1);
    EXPECT_FALSE(defaults->write(QStringLiteral("k"), true));
    EXPECT_TRUE(defaults->remove(QStringLiteral("k")));
    EXPECT_TRUE(defaults->write(QStringLiteral("k"), true));
}

} // namespace orvelle::test
