#include "platform/freedesktop/ProcHostStatistics.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

class ProcTest : public testing::Test
{
protected:
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir folder;
    ProcHostStatistics host{folder.path()};
};

TEST_F(ProcTest, TicksOfTheFirstLine)
{
    struct {
        QByteArray content;
        CpuTicks expected;
        int error;
    } const cases[] = {
        {"cpu  100 20 30 4000 50 6 7 8 9 10\ncpu0 1 2 3 4 5 6 7 8 9 10\n", {100, 51, 4050, 20}, 0},
        {"cpu 18446744073709551615 0 1 2\n", {18446744073709551615ULL, 1, 2, 0}, 0},
        {"cpu 1 2 3\n", {}, EPROTO},
        {"", {}, EPROTO},
        {"intr 1 2 3 4\n", {}, EPROTO},
    };
    EXPECT_EQ(host.cpuTicks().error(), ENOENT);
    for (const auto &each : cases) {
        write(u"stat"_s, each.content);
        const auto ticks = host.cpuTicks();
        ASSERT_EQ(ticks.hasValue(), each.error == 0) << each.content.constData();
        if (ticks)
            EXPECT_EQ(*ticks, each.expected);
        else
            EXPECT_EQ(ticks.error(), each.error);
    }
}

TEST_F(ProcTest, AvailableMemory)
{
    struct {
        QByteArray content;
        Capacity expected;
        int error;
    } const cases[] = {
        {"MemTotal:       16303072 kB\nMemFree: 1 kB\nMemAvailable:    8151536 kB\n", {8347172864, 16694345728}, 0},
        {"MemTotal: 10 kB\nMemAvailable: 11 kB\n", {10240, 10240}, 0},
        {"MemTotal: 10 kB\nMemFree: 5 kB\n", {}, EPROTO},
        {"HugeMemTotal: 10 kB\nMemAvailable: 5 kB\n", {}, EPROTO},
    };
    for (const auto &each : cases) {
        write(u"meminfo"_s, each.content);
        const auto memory = host.memory();
        ASSERT_EQ(memory.hasValue(), each.error == 0) << each.content.constData();
        if (memory)
            EXPECT_EQ(*memory, each.expected);
        else
            EXPECT_EQ(memory.error(), each.error);
    }
}

TEST(HostFigures, OfThisMachine)
{
    const ProcHostStatistics host;
    const auto before = host.cpuTicks();
    const auto memory = host.memory();
    const auto volume = host.volume(u"/"_s);
    ASSERT_TRUE(before && memory && volume);
    EXPECT_GT(before->user + before->nice, 0U);
    EXPECT_GT(before->idle, 0U);
    EXPECT_EQ(memory->total / 4096 / 1024,
              quint64(sysconf(_SC_PHYS_PAGES)) * quint64(sysconf(_SC_PAGESIZE)) / 4096 / 1024);
    EXPECT_GT(memory->free, 0U);
    EXPECT_LT(memory->free, memory->total);
    struct statvfs root = {};
    ASSERT_EQ(statvfs("/", &root), 0);
    EXPECT_EQ(volume->total, quint64(root.f_blocks) * root.f_frsize);
    EXPECT_LE(volume->free, volume->total);
    EXPECT_EQ(host.volume(u"/no such folder"_s).error(), ENOENT);
}

} // namespace
} // namespace orvelle::test
