#include "platform/freedesktop/DefaultsFolder.h"
#include "platform/freedesktop/SharedFolder.h"

#include <QElapsedTimer>
#include <QSet>

#include <algorithm>
#include <csignal>
#include <limits>
#include <random>

namespace orvelle::test {

namespace {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

const QString name = u"orvelle-sync.ovexport"_s;

/// A document of entries, padded so that writing takes its time, closed by how
/// long it is: a part of it, or two mixed, is noticed.
QByteArray documentOf(const QByteArrayList &entries)
{
    QByteArray body = entries.join('\n') + "\n#" + QByteArray(200'000 + 37 * entries.size(), 'p') + '\n';
    return body + QByteArray::number(body.size()) + '\n';
}
bool isWhole(const QByteArray &bytes)
{
    const qsizetype end = bytes.lastIndexOf('\n', -2) + 1;
    return bytes.endsWith('\n') && bytes.sliced(end).trimmed().toLongLong() == end;
}
QByteArrayList entriesOf(const QByteArray &bytes)
{
    const QByteArray lines = bytes.first(std::max<qsizetype>(0, bytes.indexOf("\n#")));
    return lines.isEmpty() ? QByteArrayList() : lines.split('\n');
}

[[noreturn]] void fail(int pipe, int code)
{
    code = -code;
    (void)!::write(pipe, &code, sizeof code);
    ::_exit(1);
}

/// Reads, adds an entry and writes, over and over, telling each entry through
/// the pipe once it is stored.
void addEntries(const SharedFolder &folder, const QByteArray &who, int from, int pipe)
{
    FolderFiles files(folder.path(), QString::fromLatin1(who), std::make_shared<RealWorkerTime>());
    for (int n = from;;) {
        const auto file = files.read(name);
        if (!file && file.error().kind != Kind::Missing)
            fail(pipe, 100 + static_cast<int>(file.error().kind));
        if (file && !isWhole(file->file.bytes))
            fail(pipe, 1);
        QByteArrayList entries = file ? entriesOf(file->file.bytes) : QByteArrayList();
        entries += who + QByteArray::number(n);
        const auto written = files.write(name, documentOf(entries), file ? file->file.version : QByteArray());
        if (!written && written.error().kind == Kind::Conflict)
            continue;
        if (!written)
            fail(pipe, 200 + static_cast<int>(written.error().kind));
        if (::write(pipe, &n, sizeof n) != sizeof n)
            ::_exit(1);
        ++n;
    }
}

/// One process after another under one name.
class Writer
{
public:
    Writer(const SharedFolder &folder, QByteArray who) : m_folder(folder), m_who(std::move(who)) {}

    void start()
    {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        m_process = std::make_unique<ChildProcess>([&] { addEntries(m_folder, m_who, m_next, ends[1]); });
        ::close(ends[1]);
        m_pipe = ends[0];
    }
    bool isRunning() const { return m_process != nullptr; }
    /// Until it told of so many entries that they are stored, or of its end.
    void await(int count)
    {
        for (int n = 0; count > 0 && ::read(m_pipe, &n, sizeof n) == sizeof n; --count) {
            EXPECT_GT(n, 0) << "failed by itself";
            m_next = n + 1;
            stored.insert(m_who + QByteArray::number(n));
        }
    }
    void kill()
    {
        m_process->kill();
        await(std::numeric_limits<int>::max());
        ::close(m_pipe);
        m_process.reset();
        ++m_next; // that one may have been stored without being told
    }

    QSet<QByteArray> stored;

private:
    const SharedFolder &m_folder;
    QByteArray m_who;
    int m_next = 1;
    int m_pipe = -1;
    std::unique_ptr<ChildProcess> m_process;
};

} // namespace

TEST(FolderProcesses, twoThatAreKilledAtAnyMomentLoseNothingAndLeaveNothingHalf)
{
    const SharedFolder folder;
    FolderFiles reader(folder.path(), u"reader"_s, std::make_shared<RealWorkerTime>());
    std::mt19937 random(20'261'121);
    Writer writers[] = {{folder, "a"}, {folder, "b"}};
    const bool isLong = qEnvironmentVariableIsSet("ORVELLE_SOAK");
    QElapsedTimer timer;
    timer.start();
    int kills = 0;
    // A machine that is busy gets the time that it needs for a few entries.
    const auto isEnough = [&] {
        return timer.elapsed() > 4000 &&
               std::ranges::all_of(writers, [](const Writer &each) { return each.stored.size() > 5; });
    };
    for (; kills < 200 && (isLong || !isEnough()); ++kills) {
        for (Writer &each : writers) {
            if (!each.isRunning())
                each.start();
        }
        Writer &victim = writers[random() % 2];
        victim.await(static_cast<int>(random() % 3));
        ::usleep(static_cast<useconds_t>(random() % 8'000));
        victim.kill();
        const auto file = reader.read(name);
        if (file)
            ASSERT_TRUE(isWhole(file->file.bytes));
        else
            ASSERT_EQ(file.error().kind, Kind::Missing) << file.error().detail.toStdString();
    }
    for (Writer &each : writers) {
        if (each.isRunning())
            each.kill();
    }
    const auto last = reader.read(name);
    ASSERT_TRUE(last) << last.error().detail.toStdString();
    const QByteArrayList entries = entriesOf(last->file.bytes);
    const QSet<QByteArray> all(entries.begin(), entries.end());
    EXPECT_EQ(all.size(), entries.size()) << "none twice";
    for (const Writer &each : writers) {
        EXPECT_GT(each.stored.size(), 5);
        EXPECT_TRUE(all.contains(each.stored)) << "an entry that was stored is lost";
    }
    // What the killed ones left goes with the next write.
    ASSERT_TRUE(reader.write(name, "end", last->file.version));
    EXPECT_EQ(folder.names(), QStringList(name));
    RecordProperty("kills", kills);
    RecordProperty("entries", static_cast<int>(entries.size()));
}

} // namespace orvelle::test
