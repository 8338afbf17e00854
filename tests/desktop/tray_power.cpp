#include "desktop/tray_tools.h"
#include "platform/freedesktop/LogindPowerEvents.h"
#include "support/LogCapture.h"

#include <QDBusUnixFileDescriptor>
#include <QProcess>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <optional>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

QString sessionPath()
{
    return u"/org/freedesktop/login1/session/_31"_s;
}

/// A system bus where the environment says that it is, and logind on it.
class FakeSystem
{
public:
    explicit FakeSystem(bool withLogind = true)
    {
        m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s,
                                          u"--address="_s + qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS")});
        EXPECT_TRUE(m_daemon.waitForReadyRead(10'000));
        EXPECT_EQ(pipe2(m_inhibitor, O_CLOEXEC | O_NONBLOCK), 0);
        m_manager.methods[u"Inhibit"_s] = [this](const QDBusMessage &call) {
            inhibits += call.arguments();
            const QDBusUnixFileDescriptor end(m_inhibitor[1]);
            close(m_inhibitor[1]);
            return call.createReply(QVariant::fromValue(end));
        };
        for (const QString &method : {u"GetSession"_s, u"GetSessionByPID"_s}) {
            m_manager.methods[method] = [](const QDBusMessage &call) {
                return call.createReply(QVariant::fromValue(QDBusObjectPath(sessionPath())));
            };
        }
        if (withLogind)
            startLogind();
    }
    ~FakeSystem()
    {
        QDBusConnection::disconnectFromBus(u"fake-logind"_s);
        close(m_inhibitor[0]);
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

    void startLogind()
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, u"fake-logind"_s);
        ASSERT_TRUE(bus.isConnected());
        bus.registerVirtualObject(u"/org/freedesktop/login1"_s, &m_manager);
        ASSERT_TRUE(bus.registerService(u"org.freedesktop.login1"_s));
    }
    void announce(const QString &signal, bool begins) const
    {
        send(QDBusMessage::createSignal(u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, signal)
             << begins);
    }
    void session(const QString &signal) const
    {
        send(QDBusMessage::createSignal(sessionPath(), u"org.freedesktop.login1.Session"_s, signal));
    }
    void lockedHint(bool locked) const
    {
        send(QDBusMessage::createSignal(sessionPath(), u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s)
             << u"org.freedesktop.login1.Session"_s << QVariantMap{{u"LockedHint"_s, locked}} << QStringList());
    }
    /// Whether nobody holds the shutdown back any more.
    bool inhibitorIsFree() const
    {
        char byte = 0;
        return read(m_inhibitor[0], &byte, 1) == 0;
    }

    QList<QVariantList> inhibits;

private:
    static void send(const QDBusMessage &message) { QDBusConnection(u"fake-logind"_s).send(message); }

    QProcess m_daemon;
    StubObject m_manager;
    int m_inhibitor[2] = {-1, -1};
};

class PowerTest : public testing::Test
{
protected:
    PowerTest()
    {
        const auto note = [this](const QString &what) { return [this, what] { events += what; }; };
        QObject::connect(&power, &PowerEvents::willPowerOff, note(u"off"_s));
        QObject::connect(&power, &PowerEvents::willSleep, note(u"sleep"_s));
        QObject::connect(&power, &PowerEvents::didWake, note(u"wake"_s));
        QObject::connect(&power, &PowerEvents::screensDidSleep, note(u"dark"_s));
        QObject::connect(&power, &PowerEvents::screensDidWake, note(u"light"_s));
    }
    bool holdsShutdown()
    {
        return waitFor([this] { return power.delaysShutdown(); });
    }

    BusClient program;
    LogindPowerEvents power{program.bus()};
    QStringList events;
};

TEST_F(PowerTest, ShutdownIsHeldBackAnnouncedOnceAndLetGo)
{
    FakeSystem system;
    power.start();
    ASSERT_TRUE(holdsShutdown());
    EXPECT_EQ(system.inhibits.value(0).value(0), u"shutdown"_s);
    EXPECT_EQ(system.inhibits.value(0).value(3), u"delay"_s);
    system.announce(u"PrepareForShutdown"_s, false);
    settle();
    EXPECT_TRUE(events.isEmpty()) << "called off";
    system.announce(u"PrepareForShutdown"_s, true);
    EXPECT_TRUE(waitFor([&] { return !events.isEmpty(); }));
    system.announce(u"PrepareForShutdown"_s, true);
    power.sessionEnds();
    settle();
    EXPECT_EQ(events, QStringList(u"off"_s));
    EXPECT_FALSE(system.inhibitorIsFree());
    power.releaseInhibitor();
    EXPECT_TRUE(waitFor([&] { return system.inhibitorIsFree(); }));
}

TEST_F(PowerTest, SleepLockAndScreenSaver)
{
    FakeSystem system;
    power.start();
    ASSERT_TRUE(holdsShutdown());
    settle();
    const auto screenSaver = [this](bool active) {
        program.bus().send(
            QDBusMessage::createSignal(u"/ScreenSaver"_s, u"org.freedesktop.ScreenSaver"_s, u"ActiveChanged"_s)
            << active);
    };
    const struct {
        std::function<void()> happens;
        QStringList expected;
    } steps[]{
        {[&] { system.announce(u"PrepareForSleep"_s, true); }, {u"sleep"_s}},
        {[&] { system.announce(u"PrepareForSleep"_s, false); }, {u"wake"_s}},
        {[&] { system.lockedHint(true); }, {u"dark"_s}},
        {[&] { screenSaver(true); }, {}},
        {[&] { system.session(u"Unlock"_s); }, {}},
        {[&] { system.lockedHint(false); }, {u"light"_s}},
        {[&] { system.session(u"Lock"_s); }, {}}, // to a locker that might not tell of the end
        {[&] { screenSaver(true); }, {u"dark"_s}},
        {[&] { screenSaver(false); }, {u"light"_s}},
    };
    int number = 0;
    for (const auto &[happens, expected] : steps) {
        events.clear();
        happens();
        settle();
        EXPECT_EQ(events, expected) << "step " << number;
        ++number;
    }
}

TEST_F(PowerTest, ABusAndALogindThatComeLateAreJoined)
{
    LogCapture log;
    power.start();
    settle();
    EXPECT_FALSE(power.delaysShutdown());
    EXPECT_EQ(log.lines().filter(u"PowerEvents: no system bus"_s).size(), 1);
    FakeSystem system(false);
    settle();
    EXPECT_FALSE(power.delaysShutdown());
    system.startLogind();
    EXPECT_TRUE(holdsShutdown());
    system.announce(u"PrepareForShutdown"_s, true);
    EXPECT_TRUE(waitFor([&] { return events.contains(u"off"_s); }));
}

TEST_F(PowerTest, ABusThatIsStartedAgainIsJoinedAgain)
{
    auto system = std::make_optional<FakeSystem>();
    power.start();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(holdsShutdown());
        system.reset();
        ASSERT_TRUE(waitFor([this] { return !power.delaysShutdown(); }));
        system.emplace();
    }
    ASSERT_TRUE(holdsShutdown());
    settle();
    system->announce(u"PrepareForSleep"_s, true);
    system->lockedHint(true);
    EXPECT_TRUE(waitFor([this] { return events.size() >= 2; }));
    EXPECT_EQ(events, (QStringList{u"sleep"_s, u"dark"_s}));
}

TEST_F(PowerTest, TerminationSignalsAreEventsOnce)
{
    struct sigaction before {
    };
    sigaction(SIGTERM, nullptr, &before);
    {
        LogindPowerEvents other(program.bus());
        QObject::connect(&other, &PowerEvents::willPowerOff, [this] { events += u"off"_s; });
        std::signal(SIGHUP, SIG_IGN); // started with nohup
        other.start();
        kill(getpid(), SIGHUP);
        settle();
        EXPECT_TRUE(events.isEmpty());
        kill(getpid(), SIGTERM);
        EXPECT_TRUE(waitFor([&] { return !events.isEmpty(); }));
        kill(getpid(), SIGTERM);
        kill(getpid(), SIGINT);
        settle();
        EXPECT_EQ(events, QStringList(u"off"_s));
        std::signal(SIGHUP, SIG_DFL);
    }
    struct sigaction after {
    };
    sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler) << "given back";
}

} // namespace
} // namespace orvelle::test
