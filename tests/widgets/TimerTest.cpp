#include "base/Text.h"
#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/timer/TimerManager.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(Timer, Texts)
{
    struct {
        QString (*write)(qint64);
        qint64 value;
        const char16_t *expected;
    } const cases[] = {
        {countdown, 0, u"00:00"},      {countdown, 90, u"01:30"},       {countdown, 3599, u"59:59"},
        {countdown, 3600, u"1:00:00"}, {countdown, 3725, u"1:02:05"},   {countdown, 360000, u"100:00:00"},
        {durationLabel, 45, u"45 s"},  {durationLabel, 59, u"59 s"},    {durationLabel, 60, u"1 min"},
        {durationLabel, 61, u"1:01"},  {durationLabel, 90, u"1:30"},    {durationLabel, 300, u"5 min"},
        {durationLabel, 3600, u"1 h"}, {durationLabel, 3660, u"1 h 1"}, {durationLabel, 5400, u"1 h 30"},
        {durationLabel, 7200, u"2 h"}, {durationLabel, 3661, u"61:01"}, {capsuleLabel, 25, u"25m"},
        {capsuleLabel, 60, u"1h"},     {capsuleLabel, 90, u"1h30"},     {capsuleLabel, 120, u"2h"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(each.write(each.value), QString::fromUtf16(each.expected)) << each.value;
}

class TimerTest : public testing::Test
{
protected:
    TimerManager make()
    {
        return TimerManager({world.defaults, world.debugMode, world.notifications, world.clock, world.alerts,
                             world.sounds, world.desktop, [this] { ++world.activated; }});
    }
    /// Within a millisecond, the fake clock's step.
    void expectFiredAt(Timestamp date)
    {
        EXPECT_NEAR(firedAt.value_or(Timestamp()).seconds, date.seconds, 0.002);
        firedAt.reset();
    }

    WidgetWorld world{&Notifications::timerChanged};
    std::optional<Timestamp> firedAt;
};

TEST_F(TimerTest, SettingsReadAsStoredOrByTheirDefaults)
{
    EXPECT_FALSE(make().isEnabled());
    EXPECT_TRUE(make().menuBarOnly());
    struct {
        QList<qint64> stored;
        QList<qint64> expected;
    } const cases[] = {
        {{}, {300, 600, 1500}},           {{60, 120}, {300, 600, 1500}},
        {{60, 120, 180}, {60, 120, 180}}, {{60, 120, 180, 240}, {60, 120, 180}},
        {{60, 0, 180}, {300, 600, 1500}}, {{60, -5, 180}, {300, 600, 1500}},
    };
    for (const auto &each : cases) {
        EXPECT_TRUE(world.defaults.write(u"TimerPresets"_s, each.stored));
        EXPECT_EQ(make().presets(), each.expected);
    }
    EXPECT_TRUE(world.defaults.write(u"TimerMenuBarOnly"_s, u"false"_s));
    EXPECT_TRUE(make().menuBarOnly()) << "not a boolean";
}

TEST_F(TimerTest, ChangedSettingsAreStoredAndAnnouncedButNotSynced)
{
    TimerManager manager = make();
    manager.setEnabled(true);
    manager.setMenuBarOnly(false);
    manager.setPresets({10, 20, 30});
    manager.setPresets({10, 20});
    EXPECT_EQ(world.changes, 3);
    EXPECT_EQ(world.syncable, 0);
    TimerManager other = make();
    EXPECT_TRUE(other.isEnabled());
    EXPECT_FALSE(other.menuBarOnly());
    EXPECT_EQ(other.presets(), QList<qint64>({10, 20, 30}));
    world.debugMode.toggle();
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_EQ(manager.presets(), TimerManager::defaultPresets());
}

TEST_F(TimerTest, CountsDownAndTells)
{
    LogCapture log;
    TimerManager manager = make();
    EXPECT_EQ(manager.remainingSeconds(), 0);
    manager.start(90);
    EXPECT_TRUE(log.contains(u"TimerManager: Minuteur démarré: 90s"_s));
    EXPECT_EQ(manager.remainingSeconds(), 90);
    world.clock.advance(45s);
    EXPECT_NEAR(manager.progress(), 0.5, 1e-6);
    world.clock.advance(44s + 800ms);
    EXPECT_EQ(countdown(manager.remainingSeconds()), u"00:01"_s);
    EXPECT_TRUE(world.alerts.shown.isEmpty());
    world.clock.advance(201ms);
    EXPECT_FALSE(manager.isRunning());
    EXPECT_EQ(manager.remainingSeconds(), 0);
    EXPECT_EQ(world.changes, 2);
    EXPECT_EQ(world.sounds.alarms, 1);
    EXPECT_EQ(world.activated, 1);
    ASSERT_EQ(world.alerts.shown.size(), 1);
    EXPECT_EQ(world.alerts.shown.first().symbol, u"timer"_s);
    EXPECT_EQ(world.alerts.shown.first().informativeText, text("timer.doneMessage %@"_text, u"1:30"_s));
    EXPECT_EQ(world.desktop.shown.value(u"timer"_s).title, text("timer.doneTitle"_text));
    world.alerts.userChooses(0);
    EXPECT_TRUE(world.desktop.shown.isEmpty());
}

TEST_F(TimerTest, TurningTheWidgetOffCancelsWhoeverDoesIt)
{
    TimerManager manager = make();
    const struct {
        const char *who;
        std::function<void()> turnsOff;
        bool running;
    } cases[] = {
        {"the user", [&] { manager.setEnabled(false); }, false},
        {"another process",
         [&] {
             world.defaults.otherProcessWrites(u"TimerEnabled"_s, false);
             world.defaults.announceOutsideChanges();
         },
         false},
        {"another process changes something else",
         [&] {
             world.defaults.otherProcessWrites(u"TimerMenuBarOnly"_s, false);
             world.defaults.announceOutsideChanges();
         },
         true},
        {"nobody: debug mode has settings of its own", [&] { world.debugMode.toggle(); }, true},
    };
    for (const auto &each : cases) {
        manager.setEnabled(true);
        manager.start(90);
        each.turnsOff();
        EXPECT_EQ(manager.isRunning(), each.running) << each.who;
    }
}

TEST_F(TimerTest, StartsAnewInPlaceOfTheOldAndCancels)
{
    TimerManager manager = make();
    manager.start(10);
    manager.start(100);
    world.clock.advance(99s);
    EXPECT_EQ(manager.remainingSeconds(), 1);
    manager.cancel();
    manager.cancel();
    manager.start(0);
    manager.start(-5);
    world.clock.advance(1h);
    EXPECT_EQ(world.alerts.shown.size(), 0);
    EXPECT_EQ(world.changes, 3) << "two starts, one cancel";
    manager.setEnabled(true);
    manager.start(10);
    manager.setEnabled(false);
    world.clock.advance(1h);
    EXPECT_EQ(world.alerts.shown.size(), 0) << "off";
}

TEST_F(TimerTest, ADayOfSleepAndClocksThatAreSet)
{
    TimerManager manager = make();
    QObject::connect(&world.notifications, &Notifications::timerChanged, [&] {
        if (!manager.endDate())
            firedAt = world.clock.now();
    });
    const Timestamp begin = world.clock.now();
    const auto hour = [&](double hours) { return begin + hours * 3600; };

    manager.start(24 * 3600);
    world.clock.advance(6h);
    world.clock.sleep(8h); // over the night
    world.clock.advance(2h);
    EXPECT_EQ(manager.remainingSeconds(), 8 * 3600);
    world.clock.advance(8h);
    expectFiredAt(hour(24));

    manager.start(3600);
    world.clock.advance(10min);
    world.clock.sleep(3h); // past the end
    world.clock.advance(0s);
    expectFiredAt(hour(24 + 3) + 600);

    const Timestamp third = world.clock.now();
    manager.start(3600);
    world.clock.setNow(third + -7200); // set back
    world.clock.advance(2h);
    EXPECT_EQ(manager.remainingSeconds(), 3600);
    world.clock.setNow(third + 3599); // and put right
    EXPECT_EQ(manager.remainingSeconds(), 1);
    world.clock.advance(999ms);
    EXPECT_FALSE(firedAt);
    world.clock.advance(2ms);
    expectFiredAt(third + 3600);

    manager.start(60);
    world.clock.setNow(world.clock.now() + 86400); // set a day ahead
    world.clock.advance(0s);
    EXPECT_TRUE(firedAt);
    EXPECT_EQ(world.alerts.shown.size(), 4);
}

TEST_F(TimerTest, ItsEndEndsTheCountdown)
{
    {
        TimerManager manager = make();
        manager.start(10);
    }
    world.clock.advance(1h);
    EXPECT_EQ(world.sounds.alarms, 0);
    EXPECT_EQ(world.clock.pending(), 0U);
}

} // namespace
} // namespace orvelle::test
