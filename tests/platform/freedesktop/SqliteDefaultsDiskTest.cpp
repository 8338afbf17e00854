#include "platform/freedesktop/DefaultsFolder.h"
#include "platform/freedesktop/PrivateMounts.h"

namespace orvelle::test {

namespace {

using Kind = DefaultsError::Kind;

/// A file system of 3 MB of our own, in a mount name space of our own.
class SmallDisk
{
public:
    SmallDisk() : m_path(QFile::encodeName(m_folder.path()))
    {
        m_mounted = havePrivateMounts() && ::mount("tmpfs", m_path.constData(), "tmpfs", 0, "size=3m,mode=755") == 0;
    }
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(m_path.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_folder.path(); }
    QString settings() const { return path() + QStringLiteral("/orvelle"); }

    void setReadOnly(bool readOnly) const
    {
        ASSERT_EQ(::mount("tmpfs", m_path.constData(), "tmpfs", MS_REMOUNT | (readOnly ? MS_RDONLY : 0), "size=3m"), 0);
    }
    void setFull(bool full) const
    {
        QFile filler(path() + QStringLiteral("/filler"));
        if (!full) {
            filler.remove();
            return;
        }
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'f')) == 4096) {
        }
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_path;
    bool m_mounted = false;
};

struct Trouble {
    const char *name;
    Kind kind;
    void (SmallDisk::*set)(bool) const;
};

const Trouble troubles[] = {
    {"read-only", Kind::ReadOnly, &SmallDisk::setReadOnly},
    {"full", Kind::DiskFull, &SmallDisk::setFull},
};

const QString key = QStringLiteral("k");

auto openAt(const SmallDisk &disk, Clock &clock)
{
    return SqliteUserDefaults::open(disk.settings(), clock);
}

} // namespace

#define SKIP_WITHOUT_MOUNTS(disk)                                                                                      \
    if (!(disk).isMounted())                                                                                           \
    GTEST_SKIP() << "mounting a file system is not permitted here"

TEST(SqliteDefaultsDisk, aDiskThatTurnsFullKeepsTheOldData)
{
    SystemClock clock;
    const SmallDisk disk;
    SKIP_WITHOUT_MOUNTS(disk);
    const auto opened = openAt(disk, clock);
    auto &defaults = *opened->defaults;
    const QByteArray before(100'000, 'o');
    ASSERT_TRUE(defaults.write(key, before));
    QStringList failed;
    QObject::connect(&defaults, &UserDefaults::writeFailed, [&](const QString &k) { failed += k; });

    disk.setFull(true);
    EXPECT_EQ(defaults.write(key, QByteArray(200'000, 'n')).error().kind, Kind::DiskFull);
    EXPECT_EQ(defaults.get<QByteArray>(key), before);
    EXPECT_EQ(openAt(disk, clock)->defaults->get<QByteArray>(key), before);

    disk.setFull(false);
    EXPECT_EQ(defaults.write(key, QByteArray(4'000'000, 'n')).error().kind, Kind::DiskFull) << "while writing";
    EXPECT_EQ(defaults.get<QByteArray>(key), before);
    EXPECT_EQ(failed, (QStringList{key, key}));
    EXPECT_TRUE(defaults.write(key, QByteArray(200'000, 'n')));
    EXPECT_EQ(openAt(disk, clock)->defaults->get<QByteArray>(key), QByteArray(200'000, 'n'));
}

TEST(SqliteDefaultsDisk, theLogMakesRoomForWhatFollows)
{
    SystemClock clock; // whose event loop never runs here
    const SmallDisk disk;
    SKIP_WITHOUT_MOUNTS(disk);
    const auto valueOf = [](char letter) { return QByteArray(300'000, letter); };
    ASSERT_TRUE(openAt(disk, clock)->defaults->write(key, valueOf('-')));
    for (const char last : {'k', 't'}) {
        ChildProcess([&] {
            const auto opened = openAt(disk, clock);
            for (char letter = static_cast<char>(last - 10); letter <= last; ++letter)
                std::ignore = opened->defaults->write(key, valueOf(letter));
            ::_exit(0); // as if killed, so that the log stays
        }).wait();
        EXPECT_EQ(openAt(disk, clock)->defaults->get<QByteArray>(key), valueOf(last));
    }
}

TEST(SqliteDefaultsDisk, opensForReadingWhereNothingCanBeWritten)
{
    SystemClock clock;
    for (const Trouble &trouble : troubles) {
        for (const bool killed : {false, true}) {
            SCOPED_TRACE(std::string(trouble.name) + (killed ? ", log left by a killed process" : ", cleanly closed"));
            const SmallDisk disk;
            SKIP_WITHOUT_MOUNTS(disk);
            ChildProcess([&] {
                auto opened = openAt(disk, clock);
                const bool stored = opened->defaults->write(key, qint64(7)).hasValue();
                if (!killed)
                    std::move(opened).value().defaults.reset();
                ::_exit(stored ? 0 : 1);
            }).wait();
            QFile::remove(disk.settings() + QStringLiteral("/defaults.sqlite-shm"));
            (disk.*trouble.set)(true);

            const auto opened = openAt(disk, clock);
            ASSERT_TRUE(opened) << opened.error().detail.toStdString();
            ASSERT_TRUE(opened->notWritable);
            EXPECT_EQ(opened->notWritable->kind, trouble.kind);
            auto &defaults = *opened->defaults;
            EXPECT_EQ(defaults.get<qint64>(key), 7);
            EXPECT_EQ(defaults.keys(), QStringList{key});
            EXPECT_EQ(defaults.write(key, qint64(8)).error().kind, trouble.kind);
            EXPECT_EQ(defaults.remove(key).error().kind, trouble.kind);
            EXPECT_EQ(defaults.get<qint64>(key), 7);

            (disk.*trouble.set)(false);
            EXPECT_EQ(defaults.read(key).revision, 1);
            EXPECT_TRUE(defaults.write(key, qint64(8))) << "as soon as it can be written";
            EXPECT_EQ(openAt(disk, clock)->defaults->get<qint64>(key), 8);
        }
    }
}

TEST(SqliteDefaultsDisk, startsEmptyWhereNothingWasEverStored)
{
    SystemClock clock;
    for (const Trouble &trouble : troubles) {
        SCOPED_TRACE(trouble.name);
        const SmallDisk disk;
        SKIP_WITHOUT_MOUNTS(disk);
        (disk.*trouble.set)(true);
        const auto opened = openAt(disk, clock);
        ASSERT_TRUE(opened) << opened.error().detail.toStdString();
        ASSERT_TRUE(opened->notWritable);
        EXPECT_EQ(opened->notWritable->kind, trouble.kind);
        EXPECT_EQ(opened->defaults->write(key, true).error().kind, trouble.kind);
        (disk.*trouble.set)(false);
        EXPECT_TRUE(opened->defaults->write(key, true));
        EXPECT_EQ(openAt(disk, clock)->defaults->get<bool>(key), true);
    }
}

} // namespace orvelle::test
