#include "platform/freedesktop/GeoClueLocation.h"

#include "support/FakeClock.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using enum LocationService::Authorization;

const QString locationPath = u"/org/freedesktop/GeoClue2/Client/1/Location/0"_s;
const QString clientPath = u"/org/freedesktop/GeoClue2/Client/1"_s;
const QString denied = u"org.freedesktop.DBus.Error.AccessDenied"_s;

AnsweringObjects::Answer refusing(const QString &error)
{
    return [error](const QDBusMessage &call) { return call.createErrorReply(error, u"no"_s); };
}
const AnsweringObjects::Answer silence = [](const QDBusMessage &) { return std::nullopt; };

/// The location service of a system: its objects as GeoClue 2 documents them.
class GeoClue
{
public:
    AnsweringObjects objects;
    QVariantMap place{{u"Latitude"_s, 48.8566}, {u"Longitude"_s, 2.3522}, {u"Accuracy"_s, 15000.0}};

    explicit GeoClue(const QDBusConnection &bus) : m_bus(bus)
    {
        objects.answers = {
            {u"GetClient"_s,
             [](const QDBusMessage &call) {
                 return call.createReply(QVariant::fromValue(QDBusObjectPath(clientPath)));
             }},
            {u"Set"_s, [](const QDBusMessage &call) { return call.createReply(); }},
            {u"Start"_s,
             [this](const QDBusMessage &call) {
                 m_bus.send(call.createReply());
                 finds();
                 return std::nullopt;
             }},
            {u"Stop"_s, [](const QDBusMessage &call) { return call.createReply(); }},
            {u"GetAll"_s, [this](const QDBusMessage &call) { return call.createReply(QVariant(place)); }},
        };
        m_bus.registerVirtualObject(u"/org/freedesktop/GeoClue2"_s, &objects, QDBusConnection::SubPath);
        m_bus.registerService(u"org.freedesktop.GeoClue2"_s);
    }
    void finds()
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(clientPath, u"org.freedesktop.GeoClue2.Client"_s, u"LocationUpdated"_s);
        signal << QVariant::fromValue(QDBusObjectPath(u"/"_s)) << QVariant::fromValue(QDBusObjectPath(locationPath));
        m_bus.send(signal);
    }

    /// The usual answer to a call for a client, whenever it came.
    void answer(const QDBusMessage &call)
    {
        m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(clientPath))));
    }

private:
    QDBusConnection m_bus;
};

class GeoClueLocationTest : public testing::Test
{
protected:
    GeoClueLocationTest()
    {
        QObject::connect(&location, &LocationService::located, [this](const Coordinates &place) { found += place; });
        QObject::connect(&location, &LocationService::failed, [this](const QString &reason) { failures += reason; });
        QObject::connect(&location, &LocationService::authorizationChanged, [this] { ++decisions; });
    }
    template<typename Condition>
    static bool spinUntil(Condition condition)
    {
        const QDeadlineTimer deadline(10s);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        return condition();
    }
    bool spinUntilCalled(const QString &method, qsizetype times = 1)
    {
        return spinUntil([&] { return service.objects.calls.count(method) >= times; });
    }

    PrivateBus bus;
    FakeClock clock;
    GeoClue service{bus.connection()};
    GeoClueLocation location{clock, bus.address()};
    QList<Coordinates> found;
    QStringList failures;
    int decisions = 0;
};

TEST_F(GeoClueLocationTest, OneReadingAndNoMore)
{
    location.requestLocation();
    location.requestLocation();
    ASSERT_TRUE(spinUntil([this] { return !found.isEmpty(); }));
    EXPECT_EQ(found, QList<Coordinates>({{48.8566, 2.3522}}));
    EXPECT_EQ(service.objects.calls,
              QStringList({u"GetClient"_s, u"Set org.freedesktop.GeoClue2.Client DesktopId org.orvelle.Orvelle"_s,
                           u"Set org.freedesktop.GeoClue2.Client RequestedAccuracyLevel 4"_s, u"Start"_s, u"Stop"_s,
                           u"GetAll org.freedesktop.GeoClue2.Location"_s}));
    EXPECT_EQ(clock.pending(), 0U);
    // What the service says unasked is not listened to any more.
    service.finds();
    location.requestLocation();
    ASSERT_TRUE(spinUntil([this] { return found.size() > 1; }));
    EXPECT_EQ(service.objects.calls.count(u"GetAll org.freedesktop.GeoClue2.Location"_s), 2);
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(GeoClueLocationTest, PermissionIsAskedForWithoutLocating)
{
    location.requestAuthorization();
    ASSERT_TRUE(spinUntil([this] { return decisions > 0; }));
    EXPECT_EQ(location.authorization(), Authorized);
    EXPECT_EQ(service.objects.calls, QStringList{u"GetClient"_s});
    location.requestLocation();
    EXPECT_TRUE(spinUntil([this] { return !found.isEmpty(); }));
}

TEST_F(GeoClueLocationTest, ARefusalIsKnownForAQuarterOfAnHour)
{
    for (const char16_t *method : {u"Start", u"GetClient"}) {
        const QString refused = QString::fromUtf16(method);
        const auto usual = service.objects.answers.value(refused);
        service.objects.answers[refused] = refusing(denied);
        failures.clear();
        location.requestLocation();
        ASSERT_TRUE(spinUntil([this] { return !failures.isEmpty(); }));
        EXPECT_EQ(failures, QStringList{denied});
        EXPECT_EQ(location.authorization(), Denied);
        EXPECT_EQ(clock.pending(), 0U);
        clock.advance(900s);
        EXPECT_EQ(location.authorization(), Denied);
        clock.advance(1s);
        EXPECT_EQ(location.authorization(), NotDetermined);
        service.objects.answers[refused] = usual;
    }
    EXPECT_TRUE(found.isEmpty());
}

TEST_F(GeoClueLocationTest, AServiceThatFindsNothingIsStopped)
{
    service.objects.answers[u"Start"_s] = [](const QDBusMessage &call) { return call.createReply(); };
    location.requestLocation();
    ASSERT_TRUE(spinUntilCalled(u"Start"_s));
    clock.advance(29s);
    EXPECT_TRUE(failures.isEmpty());
    clock.advance(1s);
    EXPECT_EQ(failures.size(), 1);
    EXPECT_TRUE(spinUntilCalled(u"Stop"_s));
    EXPECT_NE(location.authorization(), Denied);
}

TEST_F(GeoClueLocationTest, AnAnswerThatComesTooLateDoesNotDisturbTheNext)
{
    QDBusMessage late;
    service.objects.answers[u"GetClient"_s] = [&late](const QDBusMessage &call) {
        late = call;
        return std::nullopt;
    };
    location.requestLocation();
    ASSERT_TRUE(spinUntilCalled(u"GetClient"_s));
    clock.advance(30s);
    EXPECT_EQ(failures.size(), 1);
    const QDBusMessage first = late;
    location.requestLocation();
    ASSERT_TRUE(spinUntilCalled(u"GetClient"_s, 2));
    service.answer(first);
    service.answer(late);
    ASSERT_TRUE(spinUntil([this] { return !found.isEmpty(); }));
    EXPECT_EQ(service.objects.calls.count(u"Start"_s), 1);
    EXPECT_EQ(failures.size(), 1);
}

TEST_F(GeoClueLocationTest, GoingAwayStopsTheService)
{
    service.objects.answers[u"Start"_s] = silence;
    auto other = std::make_unique<GeoClueLocation>(clock, bus.address());
    other->requestLocation();
    ASSERT_TRUE(spinUntilCalled(u"Start"_s));
    other.reset();
    EXPECT_TRUE(spinUntilCalled(u"Stop"_s));
    EXPECT_EQ(clock.pending(), 0U);
}

TEST_F(GeoClueLocationTest, TheServiceOfABusThatWasStartedAgainIsFound)
{
    location.requestAuthorization();
    ASSERT_TRUE(spinUntil([this] { return decisions > 0; }));
    bus.restart();
    GeoClue next(bus.connection());
    location.requestLocation();
    EXPECT_TRUE(spinUntil([this] { return !found.isEmpty() || !failures.isEmpty(); }));
    EXPECT_EQ(failures, QStringList());
    EXPECT_EQ(next.objects.calls.value(0), u"GetClient"_s) << "not the client of the former";
    EXPECT_EQ(location.authorization(), Authorized);
}

TEST_F(GeoClueLocationTest, APlaceThatIsNoneIsRefused)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const QVariantMap places[] = {{},
                                  {{u"Latitude"_s, 48.0}},
                                  {{u"Latitude"_s, nan}, {u"Longitude"_s, 2.0}},
                                  {{u"Latitude"_s, 91.0}, {u"Longitude"_s, 2.0}},
                                  {{u"Latitude"_s, 48.0}, {u"Longitude"_s, 1e300}},
                                  {{u"Latitude"_s, u"north"_s}, {u"Longitude"_s, 2.0}}};
    for (const QVariantMap &place : places) {
        service.place = place;
        failures.clear();
        location.requestLocation();
        ASSERT_TRUE(spinUntil([this] { return !failures.isEmpty(); }));
    }
    EXPECT_TRUE(found.isEmpty());
}

TEST(GeoClueAbsent, IsARestrictionAndNoWaiting)
{
    PrivateBus bus;
    FakeClock clock;
    GeoClueLocation location(clock, bus.address());
    QStringList failures;
    QObject::connect(&location, &LocationService::failed, [&failures](const QString &reason) { failures += reason; });
    location.requestLocation();
    const QDeadlineTimer deadline(10s);
    while (failures.isEmpty() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_EQ(failures, QStringList{u"org.freedesktop.DBus.Error.ServiceUnknown"_s});
    EXPECT_EQ(location.authorization(), Restricted);
    EXPECT_EQ(clock.pending(), 0U);
}

} // namespace
} // namespace orvelle::test
