#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/network/NetworkManager.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(Network, SpeedAsText)
{
    struct {
        double rate;
        const char16_t *expected;
    } const cases[] = {
        {0, u"0 B/s"},          {1023, u"1023 B/s"},          {1024, u"1 KB/s"},         {1048575, u"1024 KB/s"},
        {1048576, u"1.0 MB/s"}, {1073741823, u"1024.0 MB/s"}, {1610612736, u"1.5 GB/s"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(formatSpeed(each.rate), QString::fromUtf16(each.expected));
}

/// "2 br0 bridge" or "3 eth0 - <2": index, name, kind, and what it is a port of.
QList<InterfaceCounters> interfaces(const QStringList &lines)
{
    QList<InterfaceCounters> result;
    for (const QString &line : lines) {
        const QStringList words = line.split(u' ');
        InterfaceCounters each;
        each.index = words.at(0).toInt();
        each.name = words.at(1);
        each.kind = words.value(2) == u"-"_s ? QString() : words.value(2);
        each.master = words.value(3).mid(1).toInt();
        result += each;
    }
    return result;
}

TEST(Network, CountsTheWayOutOnce)
{
    struct {
        const char *what;
        QStringList interfaces;
        QStringList counted;
    } const cases[] = {
        {"hardware by name",
         {u"1 lo"_s, u"2 enp3s0"_s, u"3 eth0"_s, u"4 wlan0"_s, u"5 wwan0 wwan"_s, u"6 ifb0 ifb"_s, u"7 usb0"_s},
         {u"enp3s0"_s, u"eth0"_s, u"wlan0"_s, u"wwan0"_s}},
        {"VPNs, also when they are named like a card",
         {u"2 eth0"_s, u"3 tun0 tun"_s, u"4 wg0 wireguard"_s, u"5 en-vpn tun"_s, u"6 wl-home wireguard"_s},
         {u"eth0"_s}},
        {"a VLAN repeats its card", {u"2 eth0"_s, u"3 eth0.10 vlan"_s}, {u"eth0"_s}},
        {"a bridge in place of its port", {u"2 eth0 - <4"_s, u"4 br0 bridge"_s}, {u"br0"_s}},
        {"a bridge over a bond",
         {u"2 eth0 - <5"_s, u"3 eth1 - <5"_s, u"4 bridge0 bridge"_s, u"5 bond0 bond <4"_s},
         {u"bridge0"_s}},
        {"a bond without a bridge", {u"2 eth0 - <5"_s, u"3 eth1 - <5"_s, u"5 bond0 bond"_s}, {u"eth0"_s, u"eth1"_s}},
        {"containers behind their bridge",
         {u"2 enp3s0"_s, u"3 docker0 bridge"_s, u"4 br-1b2c3d4e5f60 bridge"_s, u"5 veth12ab veth <4"_s,
          u"6 vethcd34 veth <3"_s},
         {u"enp3s0"_s}},
        {"virtual machines bridged to the card",
         {u"2 enp3s0 - <3"_s, u"3 br0 bridge"_s, u"4 vnet0 tun <3"_s},
         {u"br0"_s}},
        {"inside a container", {u"1 lo"_s, u"2 eth0 veth"_s}, {u"eth0"_s}},
        {"masters in a circle", {u"2 eth0 - <3"_s, u"3 bond0 bond <4"_s, u"4 bond1 bond <3"_s}, {u"eth0"_s}},
        {"a master in another name space", {u"2 eth0 - <99"_s}, {u"eth0"_s}},
    };
    for (const auto &each : cases) {
        QStringList counted;
        for (const InterfaceCounters &one : countedInterfaces(interfaces(each.interfaces)))
            counted += one.name;
        EXPECT_EQ(counted, each.counted) << each.what;
    }
}

InterfaceCounters card(int index, quint64 in, quint64 out, const char *name = "eth0", int master = 0)
{
    return {index, QString::fromLatin1(name), {}, master, in, out};
}

TEST(Network, SpeedBetweenTwoReadings)
{
    const InterfaceCounters bridge{9, u"br0"_s, u"bridge"_s, 0, 7, 7};
    struct {
        const char *what;
        NetworkReading before;
        NetworkReading now;
        NetworkSpeed expected;
    } const cases[] = {
        {"plainly", {{card(2, 100, 10)}}, {{card(2, 300, 20)}}, {100, 5}},
        {"over 4 GiB", {{card(2, 5'000'000'000, 0)}}, {{card(2, 5'000'000'200, 0)}}, {100, 0}},
        {"32 bits wrapped", {{card(2, 4'294'967'195, 0)}, true}, {{card(2, 101, 0)}, true}, {100.5, 0}},
        {"64 bits began anew", {{card(2, 9'000'000, 0)}}, {{card(2, 50, 0)}}, {25, 0}},
        {"a new card", {{card(2, 100, 0)}}, {{card(2, 100, 0), card(3, 80, 4, "wlan0")}}, {40, 2}},
        {"a card that was pulled", {{card(2, 100, 0), card(3, 80, 4, "wlan0")}}, {{card(2, 120, 0)}}, {10, 0}},
        {"its number used again", {{card(2, 100, 0, "eth1")}}, {{card(2, 30, 0)}}, {15, 0}},
        {"a card that left its bridge", {{card(2, 900, 0, "eth0", 9), bridge}}, {{card(2, 940, 0), bridge}}, {20, 0}},
    };
    for (const auto &each : cases)
        EXPECT_EQ(networkSpeed(each.before, each.now, 2), each.expected) << each.what;
}

class NetworkTest : public testing::Test
{
protected:
    NetworkManager &start(const char *mode)
    {
        EXPECT_TRUE(world.defaults.write(u"NetworkDisplayMode"_s, QString::fromLatin1(mode)));
        manager = std::make_unique<NetworkManager>(NetworkManager::Services{
            world.defaults, world.debugMode, world.notifications, world.power, world.sampler, world.counters});
        if (manager->isEnabled())
            manager->startMonitoring();
        world.clock.advance(0s);
        return *manager;
    }
    void transfer(quint64 in, quint64 out)
    {
        total.bytesIn += in;
        total.bytesOut += out;
        world.counters.reading = {{total}};
    }

    WidgetWorld world{&Notifications::networkChanged};
    InterfaceCounters total = card(2, 1'000'000, 1'000'000);
    std::unique_ptr<NetworkManager> manager;
};

TEST_F(NetworkTest, SettingsReadAsStoredOrByTheirDefaults)
{
    EXPECT_EQ(start("terminal").displayMode(), NetworkDisplayMode::Disabled);
    EXPECT_TRUE(manager->menuBarOnly());
    EXPECT_EQ(start("graph").displayMode(), NetworkDisplayMode::Graph);
    manager->setMenuBarOnly(false);
    manager->setDisplayMode(NetworkDisplayMode::Discreet);
    EXPECT_EQ(world.syncable, 2);
    EXPECT_EQ(start("discreet").displayMode(), NetworkDisplayMode::Discreet);
    EXPECT_FALSE(manager->menuBarOnly());
}

TEST_F(NetworkTest, TheFirstRefreshAfterTheStartYieldsASpeed)
{
    transfer(0, 0);
    start("graph");
    EXPECT_FALSE(manager->currentSpeed());
    EXPECT_EQ(world.changes, 0);
    transfer(5000, 500);
    world.clock.advance(5s);
    EXPECT_EQ(manager->currentSpeed(), (NetworkSpeed{1000, 100}));
    manager->startLiveRefresh();
    transfer(300, 0);
    world.clock.advance(1s);
    EXPECT_EQ(manager->currentSpeed(), (NetworkSpeed{300, 0}));
}

TEST_F(NetworkTest, WhatPassedInTheDarkCountsForNoSpeed)
{
    transfer(0, 0);
    start("graph");
    world.power.screensGoDark();
    transfer(9'000'000, 0);
    world.clock.advance(1h);
    world.power.screensComeBack();
    world.clock.advance(0s);
    EXPECT_FALSE(manager->currentSpeed());
    transfer(5000, 0);
    world.clock.advance(5s);
    EXPECT_EQ(manager->currentSpeed(), (NetworkSpeed{1000, 0}));
}

TEST_F(NetworkTest, AClockThatIsSetChangesNoSpeed)
{
    transfer(0, 0);
    start("graph");
    for (const double jump : {-3600.0, 7200.0}) {
        world.clock.setNow(world.clock.now() + jump);
        transfer(5000, 0);
        world.clock.advance(5s);
        EXPECT_EQ(manager->currentSpeed(), (NetworkSpeed{1000, 0})) << jump;
    }
}

TEST_F(NetworkTest, TheHistoryKeepsTheLastTwenty)
{
    transfer(0, 0);
    start("graph");
    for (quint64 i = 1; i <= 21; ++i) {
        transfer(5 * i, 0);
        world.clock.advance(5s);
    }
    ASSERT_EQ(manager->speedHistory().size(), 20);
    EXPECT_EQ(manager->speedHistory().first().bytesInPerSec, 2);
    EXPECT_EQ(manager->speedHistory().last().bytesInPerSec, 21);
}

TEST_F(NetworkTest, AFailedReadingIsOneOfNoBytes)
{
    LogCapture log;
    transfer(0, 0);
    start("graph");
    world.counters.fails = true;
    world.clock.advance(5s);
    EXPECT_TRUE(log.contains(u"NetworkManager: getifaddrs() failed"_s));
    EXPECT_EQ(manager->currentSpeed(), NetworkSpeed());
    world.counters.fails = false;
    world.clock.advance(5s);
    EXPECT_EQ(manager->currentSpeed(), (NetworkSpeed{200'000, 200'000})) << "against zero";
    world.clock.advance(5s);
    EXPECT_EQ(manager->currentSpeed(), NetworkSpeed());
}

TEST_F(NetworkTest, NothingArrivesAfterTheManagerHasGone)
{
    start("graph");
    world.sampler.slow = true;
    world.clock.advance(10s);
    const int before = world.changes;
    manager.reset();
    world.sampler.deliver();
    world.clock.advance(60s);
    EXPECT_EQ(world.changes, before);
}

} // namespace
} // namespace orvelle::test
