#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/systeminfo/SystemInfoManager.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr quint64 gibibyte = 1'073'741'824;

TEST(SystemInfo, BytesAsText)
{
    struct {
        quint64 bytes;
        const char16_t *expected;
    } const cases[] = {
        {0, u"0.0G"},
        {gibibyte, u"1.0G"},
        {8 * gibibyte, u"8.0G"},
        {gibibyte * 999 / 100, u"10.0G"},
        {10 * gibibyte, u"10G"},
        {gibibyte * 176 / 10, u"18G"},
        {gibibyte * 999 / 10, u"100G"},
        {100 * gibibyte, u"100G"},
        {gibibyte * 2509 / 10, u"250G"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(formatBytes(each.bytes), QString::fromUtf16(each.expected)) << each.bytes;
}

TEST(SystemInfo, LoadIsTheBusyShareOfWhatHasPassed)
{
    const CpuTicks before{100, 50, 1000, 10};
    struct {
        CpuTicks now;
        double expected;
    } const cases[] = {
        {before, 0},
        {{120, 60, 1060, 20}, 40},
        {{150, 50, 1000, 10}, 100},
        {{100, 50, 1050, 10}, 0},
        {{50, 50, 1050, 60}, 50}, // a processor was taken away
    };
    for (const auto &each : cases)
        EXPECT_DOUBLE_EQ(cpuLoad(before, each.now), each.expected);
}

class SystemInfoTest : public testing::Test
{
protected:
    SystemInfoManager &start(const char *mode)
    {
        EXPECT_TRUE(world.defaults.write(u"SystemInfoDisplayMode"_s, QString::fromLatin1(mode)));
        manager = std::make_unique<SystemInfoManager>(SystemInfoManager::Services{
            world.defaults, world.debugMode, world.notifications, world.power, world.sampler, world.host});
        if (manager->isEnabled())
            manager->startMonitoring();
        return *manager;
    }
    int samplesIn(std::chrono::milliseconds time)
    {
        const int before = world.sampler.samples;
        world.clock.advance(time);
        return world.sampler.samples - before;
    }

    WidgetWorld world{&Notifications::systemInfoChanged};
    std::unique_ptr<SystemInfoManager> manager;
};

TEST_F(SystemInfoTest, SettingsReadAsStoredOrByTheirDefaults)
{
    EXPECT_EQ(start("graph").displayMode(), SystemInfoDisplayMode::Disabled);
    EXPECT_TRUE(manager->menuBarOnly());
    EXPECT_TRUE(world.defaults.write(u"SystemInfoMenuBarOnly"_s, u"no"_s));
    EXPECT_EQ(start("terminal").displayMode(), SystemInfoDisplayMode::Terminal);
    EXPECT_TRUE(manager->menuBarOnly()) << "not a boolean";
    EXPECT_TRUE(world.defaults.write(u"SystemInfoMenuBarOnly"_s, false));
    EXPECT_FALSE(start("discreet").menuBarOnly());
}

TEST_F(SystemInfoTest, ChangedSettingsAreStoredAnnouncedAndFollowed)
{
    start("disabled");
    EXPECT_EQ(samplesIn(60s), 0);
    manager->setDisplayMode(SystemInfoDisplayMode::Discreet);
    EXPECT_EQ(world.defaults.get<QString>(u"SystemInfoDisplayMode"_s), u"discreet"_s);
    EXPECT_EQ(samplesIn(0s), 1) << "at once";
    manager->setDisplayMode(SystemInfoDisplayMode::Terminal);
    manager->setMenuBarOnly(false);
    manager->setMenuBarOnly(false);
    EXPECT_EQ(world.syncable, 3);
    EXPECT_EQ(samplesIn(10s), 2) << "went on at its pace";
    manager->setDisplayMode(SystemInfoDisplayMode::Disabled);
    EXPECT_EQ(samplesIn(60s), 0);
}

TEST_F(SystemInfoTest, FollowsSettingsThatAnImportWrote)
{
    SystemInfoManager &info = start("disabled");
    ASSERT_TRUE(world.defaults.write(u"SystemInfoDisplayMode"_s, u"terminal"_s));
    emit world.notifications.syncableSettingsChanged();
    EXPECT_EQ(info.displayMode(), SystemInfoDisplayMode::Terminal);
    EXPECT_EQ(world.changes, 1);
    EXPECT_GT(samplesIn(6s), 0);
    world.changes = 0;
    emit world.notifications.syncableSettingsChanged();
    EXPECT_EQ(world.changes, 0) << "nothing is other than it was";
}

TEST_F(SystemInfoTest, SamplesBySpeedOfNeed)
{
    start("terminal");
    EXPECT_EQ(samplesIn(60s), 1 + 12);
    manager->startLiveRefresh();
    EXPECT_EQ(samplesIn(10s), 1 + 10);
    manager->stopLiveRefresh();
    EXPECT_EQ(samplesIn(60s), 12);
    world.power.screensGoDark();
    EXPECT_EQ(samplesIn(1h), 0);
    manager->startLiveRefresh();
    EXPECT_EQ(samplesIn(1h), 0) << "dark, whatever is open";
    world.power.screensComeBack();
    EXPECT_EQ(samplesIn(10s), 1 + 10);
    manager->setDisplayMode(SystemInfoDisplayMode::Disabled);
    world.power.screensGoDark();
    world.power.screensComeBack();
    EXPECT_EQ(samplesIn(1h), 0) << "off";
}

TEST_F(SystemInfoTest, PublishesWhatWasRead)
{
    world.host.ticks = {100, 100, 100, 100};
    world.host.ram = {3, 8};
    world.host.disk = {20, 50};
    start("discreet");
    EXPECT_FALSE(manager->systemInfo());
    world.clock.advance(0s);
    EXPECT_EQ(manager->systemInfo(), (SystemInfoData{0, 3, 8, 20, 50}));
    world.host.ticks = {110, 100, 130, 100};
    world.clock.advance(5s);
    EXPECT_DOUBLE_EQ(manager->systemInfo()->cpuUsage, 25);
    EXPECT_EQ(world.changes, 2);
}

TEST_F(SystemInfoTest, EachReadingFailsByItself)
{
    LogCapture log;
    world.host.ticks = {100, 100, 100, 100};
    world.host.failure = 13;
    start("discreet");
    world.clock.advance(0s);
    EXPECT_EQ(manager->systemInfo(), SystemInfoData());
    EXPECT_EQ(log.lines().mid(log.lines().size() - 3),
              QStringList({u"SystemInfoManager: Failed to get CPU info: 13"_s,
                           u"SystemInfoManager: Failed to get RAM info: 13"_s,
                           u"SystemInfoManager: Failed to get disk info: Permission denied"_s}));
}

TEST_F(SystemInfoTest, NothingArrivesAfterTheManagerHasGone)
{
    start("discreet");
    world.sampler.slow = true;
    world.clock.advance(5s);
    manager->setDisplayMode(SystemInfoDisplayMode::Disabled);
    const int before = world.changes;
    world.sampler.deliver();
    EXPECT_EQ(world.changes, before) << "switched off meanwhile";
    manager->setDisplayMode(SystemInfoDisplayMode::Discreet);
    world.clock.advance(5s);
    manager.reset();
    world.sampler.deliver();
    EXPECT_EQ(samplesIn(60s), 0);
}

TEST_F(SystemInfoTest, DebugModeHasSettingsOfItsOwn)
{
    start("discreet");
    world.debugMode.toggle();
    EXPECT_FALSE(manager->isEnabled());
    EXPECT_EQ(samplesIn(60s), 0);
    manager->setDisplayMode(SystemInfoDisplayMode::Terminal);
    world.debugMode.toggle();
    EXPECT_EQ(manager->displayMode(), SystemInfoDisplayMode::Discreet);
    EXPECT_EQ(world.defaults.get<QString>(u"debug_SystemInfoDisplayMode"_s), u"terminal"_s);
}

} // namespace
} // namespace orvelle::test
