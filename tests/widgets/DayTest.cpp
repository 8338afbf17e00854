#include "support/LogCapture.h"
#include "widgets/EveryWidget.h"

#include <gtest/gtest.h>
#include <malloc.h>

namespace orvelle::test {
namespace {

class DayTest : public testing::Test, protected EveryWidget
{
};

TEST_F(DayTest, OfRestAsksForTheWeatherHourlyAndForNothingElse)
{
    pass(1min);
    LogCapture log;
    const std::size_t timers = world.clock.pending();
    const qsizetype requests = http.requests.size();
    const int fetches = store.fetches;
    for (int hour = 0; hour < 24; ++hour) {
        pass(1h);
        EXPECT_EQ(world.clock.pending(), timers) << "after " << hour + 1 << " h";
    }
    EXPECT_EQ(http.requests.size() - requests, 24);
    EXPECT_EQ(geocoder.asked.size(), 1) << "the machine has not moved";
    EXPECT_EQ(pasteboard.asked, QStringList()) << "nobody has copied";
    EXPECT_LE(store.fetches - fetches, 24 * 12);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(DayTest, OfWorkLeavesNothingBehind)
{
    LogCapture log;
    QHash<QString, double> lastSaid;
    qsizetype said = 0;
    std::size_t timers = 0;
    std::size_t bytes = 0;
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const int hour = minute / 60;
        liveThrough(minute);

        for (; said < log.lines().size(); ++said) {
            const QString line = log.lines().at(said);
            const double now = world.clock.runningTime();
            EXPECT_GE(now - lastSaid.value(line, -1000), 60) << line.toStdString() << " in hour " << hour;
            lastSaid.insert(line, now);
        }
        if (minute % 60 != 59)
            continue;
        if (hour == 4) {
            timers = world.clock.pending();
            bytes = mallinfo2().uordblks;
        }
        EXPECT_TRUE(hour <= 4 || world.clock.pending() <= timers) << "after " << hour + 1 << " h";
        forgetWhatWasAsked();
    }
    EXPECT_LT(mallinfo2().uordblks, bytes + 256 * 1024);
    EXPECT_EQ(clipboard.clipboardHistory().size(), ClipboardManager::maxHistoryCount);
    EXPECT_EQ(network.speedHistory().size(), NetworkManager::maxHistoryCount);
    EXPECT_EQ(world.sounds.alarms, 24);
    EXPECT_FALSE(weather.lastFetchFailed());
}

} // namespace
} // namespace orvelle::test
