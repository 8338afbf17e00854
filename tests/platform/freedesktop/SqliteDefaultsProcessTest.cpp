#include "platform/freedesktop/DefaultsFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <sqlite3.h>

#include <csignal>
#include <limits>
#include <optional>
#include <random>

namespace orvelle::test {

namespace {

QString numbered(qint64 n)
{
    return QStringLiteral("key%1").arg(n % 50);
}

/// Tells of itself, so that a mixture of two is noticed.
QByteArray tree(qint64 n)
{
    return (QByteArray::number(n) + ',').repeated(4'000 + n % 40 * 1'401);
}

/// Saves a small and a large value again and again, telling each one's number
/// through the pipe once it is stored.
void saveAndAcknowledge(DefaultsFolder &folder, qint64 from, int pipe)
{
    const auto defaults = folder.open();
    for (qint64 n = from;; ++n) {
        if (!defaults->write(numbered(n), n) || !defaults->write(QStringLiteral("tree"), tree(n)))
            ::_exit(1);
        if (::write(pipe, &n, sizeof n) != sizeof n)
            ::_exit(0);
    }
}

/// The last number that comes through the pipe, of at most `count`; absent
/// when none comes before it is closed.
std::optional<qint64> lastAcknowledged(int pipe, unsigned count = std::numeric_limits<unsigned>::max())
{
    std::optional<qint64> last;
    qint64 n = 0;
    for (unsigned i = 0; i < count && ::read(pipe, &n, sizeof n) == sizeof n; ++i)
        last = n;
    return last;
}

bool eventually(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 5000;) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        if (condition())
            return true;
    }
    return false;
}

} // namespace

TEST(SqliteDefaultsProcesses, nothingAcknowledgedIsLostWhenTheWriterIsKilled)
{
    DefaultsFolder folder;
    std::mt19937 random(20'261'121);
    qint64 acknowledged = 0;
    int kills = 0;
    for (; acknowledged < 1000 || kills < 40; ++kills) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        ChildProcess writer([&] { saveAndAcknowledge(folder, acknowledged + 1, pipe[1]); });
        ::close(pipe[1]);
        // Anywhere: while opening, between two saves or within one.
        const auto beforeKill = lastAcknowledged(pipe[0], random() % 40);
        ::usleep(static_cast<useconds_t>(random() % 4'000));
        writer.kill();
        writer.wait();
        const qint64 last = lastAcknowledged(pipe[0]).value_or(beforeKill.value_or(acknowledged));
        ::close(pipe[0]);

        auto opened = folder.tryOpen();
        ASSERT_TRUE(opened) << opened.error().detail.toStdString();
        ASSERT_FALSE(opened->damagedCopy);
        const auto &defaults = opened->defaults;
        for (qint64 n = std::max<qint64>(1, last - 48); n <= last; ++n)
            ASSERT_GE(defaults->get<qint64>(numbered(n)).value_or(0), n);
        if (last > 0) {
            const auto stored = defaults->get<QByteArray>(QStringLiteral("tree"));
            ASSERT_TRUE(stored == tree(last) || stored == tree(last + 1)) << "after save " << last;
        }
        acknowledged = last;
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1) << "files left behind";
    RecordProperty("acknowledged", std::to_string(acknowledged));
    RecordProperty("kills", kills);
}

TEST(SqliteDefaultsProcesses, concurrentWritersLoseNoUpdate)
{
    DefaultsFolder folder;
    const QString counter = QStringLiteral("counter");
    const auto count = [&] {
        const auto defaults = folder.open();
        for (int i = 0; i < 150;) {
            const auto before = defaults->read(counter);
            const qint64 next = before.value ? std::get<qint64>(*before.value) + 1 : 1;
            const auto result = defaults->compareAndSet(counter, before.revision, next);
            if (!result && result.error().kind != DefaultsError::Kind::Conflict)
                throw std::runtime_error(result.error().detail.toStdString());
            i += result.hasValue();
        }
    };
    {
        // Also four that make the same new database.
        ChildProcess a(count), b(count), c(count);
        count();
        EXPECT_TRUE(a.wait() && b.wait() && c.wait());
    }
    const auto stored = folder.open()->read(counter);
    EXPECT_EQ(std::get<qint64>(stored.value.value()), 600);
    EXPECT_EQ(stored.revision, 600);
}

TEST(SqliteDefaultsProcesses, ofSeveralThatFindADamagedDatabaseOneMovesItAside)
{
    for (int round = 0; round < 10; ++round) {
        DefaultsFolder folder;
        folder.put(QByteArray(50'000, 'x'));
        int gate[2];
        ASSERT_EQ(::pipe(gate), 0);
        const auto openAndWrite = [&](int n) {
            char byte = 0;
            ::close(gate[1]);
            const bool open = ::read(gate[0], &byte, 1) == 0; // until all may go
            ::_exit(open && folder.open()->write(QString::number(n), true) ? 0 : 1);
        };
        {
            ChildProcess a([&] { openAndWrite(1); }), b([&] { openAndWrite(2); }), c([&] { openAndWrite(3); });
            ::close(gate[1]);
            EXPECT_TRUE(a.wait() && b.wait() && c.wait());
        }
        ::close(gate[0]);
        EXPECT_EQ(folder.open()->keys().size(), 3);
        EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("*corrupt*")}).size(), 1);
    }
}

TEST(SqliteDefaultsProcesses, anotherProcessesChangesAreSeenAtOnceAndAnnouncedOnce)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    ASSERT_TRUE(defaults->write(QStringLiteral("a"), true));
    QList<QStringList> announced;
    QObject::connect(defaults.get(), &UserDefaults::changedExternally, [&](const QStringList &k) { announced += k; });
    defaults->startWatching();

    ASSERT_TRUE(defaults->write(QStringLiteral("own"), true));
    EXPECT_TRUE(ChildProcess([&] {
                    const auto other = folder.open();
                    const bool stored = other->write(QStringLiteral("b"), QByteArray(8'000'000, 'x')).hasValue() &&
                                        other->write(QStringLiteral("c"), true) && other->remove(QStringLiteral("a"));
                    ::_exit(stored ? 0 : 1);
                }).wait());
    EXPECT_EQ(defaults->get<bool>(QStringLiteral("c")), true) << "without an event loop";
    ASSERT_TRUE(defaults->write(QStringLiteral("own"), false));
    EXPECT_TRUE(announced.isEmpty());

    const QStringList theirs{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    EXPECT_TRUE(eventually([&] { return !announced.isEmpty(); }));
    EXPECT_EQ(announced, QList<QStringList>{theirs});

    announced.clear();
    ASSERT_TRUE(defaults->write(QStringLiteral("own"), qint64(3)));
    EXPECT_TRUE(ChildProcess([&] { ::_exit(folder.open()->write(QStringLiteral("own"), qint64(4)) ? 0 : 1); }).wait());
    EXPECT_TRUE(eventually([&] { return !announced.isEmpty(); }));
    EXPECT_EQ(announced, QList<QStringList>{{QStringLiteral("own")}});
}

TEST(SqliteDefaultsProcesses, aDatabaseThatIsReplacedIsFollowedAndAnnounced)
{
    DefaultsFolder folder;
    DefaultsFolder other;
    ASSERT_TRUE(other.open()->write(QStringLiteral("theirs"), true));
    const auto defaults = folder.open();
    ASSERT_TRUE(defaults->write(QStringLiteral("ours"), true));
    QStringList announced;
    QObject::connect(defaults.get(), &UserDefaults::changedExternally, [&](const QStringList &k) { announced += k; });
    defaults->startWatching();
    ASSERT_TRUE(QDir(folder.path()).removeRecursively());
    QDir().mkpath(folder.path());
    ASSERT_TRUE(QFile::copy(other.file(), folder.file()));
    EXPECT_TRUE(eventually([&] { return !announced.isEmpty(); }));
    EXPECT_EQ(announced, (QStringList{QStringLiteral("ours"), QStringLiteral("theirs")}));

    announced.clear();
    EXPECT_TRUE(ChildProcess([&] { ::_exit(folder.open()->write(QStringLiteral("new"), true) ? 0 : 1); }).wait());
    EXPECT_TRUE(eventually([&] { return !announced.isEmpty(); }));
    EXPECT_EQ(announced, QStringList{QStringLiteral("new")});
}

TEST(SqliteDefaultsProcesses, aStoreHeldByAnotherProcessTooLongIsBusyAndUnchanged)
{
    DefaultsFolder folder;
    const auto defaults = folder.open();
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    ChildProcess holder([&] {
        const auto opened = folder.open();
        sqlite3 *database = nullptr;
        sqlite3_open(QFile::encodeName(folder.file()).constData(), &database);
        sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        (void)!::write(ready[1], "x", 1);
        ::pause();
    });
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(defaults->write(QStringLiteral("k"), true).error().kind, DefaultsError::Kind::Busy);
    EXPECT_LT(timer.elapsed(), 8000);
    holder.kill();
    holder.wait();
    EXPECT_TRUE(defaults->write(QStringLiteral("k"), true));
}

} // namespace orvelle::test
