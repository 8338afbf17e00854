// Messages of the application on a session bus, shown by a service of ours.
#include "desktop/tray_tools.h"
#include "platform/freedesktop/BusNotifications.h"

#include <QDBusArgument>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// The service of the Desktop Notifications Specification, 1.2.
class FakeMessageService
{
public:
    FakeMessageService()
    {
        m_object.methods[u"Notify"_s] = [this](const QDBusMessage &call) {
            const uint replaced = call.arguments().at(1).toUInt();
            shown += call.arguments();
            return call.createReply(replaced != 0 ? replaced : ++m_lastId);
        };
        m_object.methods[u"CloseNotification"_s] = [this](const QDBusMessage &call) {
            closed += call.arguments().at(0).toUInt();
            return call.createReply();
        };
        QDBusConnection bus = m_client.bus();
        EXPECT_TRUE(bus.registerVirtualObject(u"/org/freedesktop/Notifications"_s, &m_object));
        EXPECT_TRUE(bus.registerService(u"org.freedesktop.Notifications"_s));
    }
    ~FakeMessageService()
    {
        QDBusConnection bus = m_client.bus();
        bus.unregisterService(u"org.freedesktop.Notifications"_s);
    }

    QList<QVariantList> shown;
    QList<uint> closed;

private:
    BusClient m_client;
    StubObject m_object;
    uint m_lastId = 40;
};

TEST(BusNotifications, ShowsReplacesAndTakesAway)
{
    FakeMessageService service;
    BusClient program;
    BusNotifications messages(program.bus());
    messages.show(u"timer"_s, {u"Time is up"_s, u"<5 min> & more"_s, u"alarm-symbolic"_s, true});
    ASSERT_TRUE(waitFor([&] { return service.shown.size() == 1; }));
    const QVariantList first = service.shown.first();
    EXPECT_EQ(first.at(1).toUInt(), 0U);
    EXPECT_EQ(first.at(3).toString(), u"Time is up"_s);
    EXPECT_EQ(first.at(4).toString(), u"&lt;5 min&gt; &amp; more"_s) << "bodies are markup";
    const auto hints = qdbus_cast<QVariantMap>(first.at(6));
    EXPECT_EQ(hints.value(u"urgency"_s).metaType(), QMetaType::fromType<uchar>());
    EXPECT_EQ(hints.value(u"urgency"_s).toInt(), 2);
    settle();
    messages.show(u"timer"_s, {u"Again"_s, {}, {}, false});
    ASSERT_TRUE(waitFor([&] { return service.shown.size() == 2; }));
    EXPECT_EQ(service.shown.last().at(1).toUInt(), 41U) << "in place of the first";
    settle();
    messages.withdraw(u"timer"_s);
    messages.withdraw(u"timer"_s);
    EXPECT_TRUE(waitFor([&] { return !service.closed.isEmpty(); }));
    settle();
    EXPECT_EQ(service.closed, QList<uint>({41}));
}

TEST(BusNotifications, WhatIsWithdrawnBeforeTheAnswerGoesWhenItComes)
{
    FakeMessageService service;
    BusClient program;
    BusNotifications messages(program.bus());
    messages.show(u"timer"_s, {u"a"_s, {}, {}, true});
    messages.withdraw(u"timer"_s);
    EXPECT_TRUE(waitFor([&] { return !service.closed.isEmpty(); }));
    EXPECT_EQ(service.closed, QList<uint>({41}));
    messages.show(u"timer"_s, {u"a"_s, {}, {}, true});
    messages.withdraw(u"timer"_s);
    messages.show(u"timer"_s, {u"b"_s, {}, {}, true});
    settle();
    EXPECT_EQ(service.closed.size(), 1) << "shown again meanwhile";
    ASSERT_EQ(service.shown.size(), 3);
    EXPECT_EQ(service.shown.last().at(1).toUInt(), 42U) << "in place of the one that was to go";
}

TEST(BusNotifications, OnlyTheLastOfSeveralStays)
{
    FakeMessageService service;
    BusClient program;
    BusNotifications messages(program.bus());
    for (const QString &title : {u"a"_s, u"b"_s, u"c"_s})
        messages.show(u"timer"_s, {title, {}, {}, true});
    ASSERT_TRUE(waitFor([&] { return service.shown.size() == 2; }));
    settle();
    EXPECT_EQ(service.shown.size(), 2);
    EXPECT_EQ(service.shown.last().at(1).toUInt(), 41U) << "in place of the first";
    EXPECT_EQ(service.shown.last().at(3).toString(), u"c"_s);
    messages.withdraw(u"timer"_s);
    EXPECT_TRUE(waitFor([&] { return service.closed == QList<uint>({41}); }));
}

TEST(BusNotifications, AnotherServiceIsAskedAnew)
{
    BusClient program;
    BusNotifications messages(program.bus());
    {
        FakeMessageService service;
        messages.show(u"timer"_s, {u"a"_s, {}, {}, true});
        ASSERT_TRUE(waitFor([&] { return service.shown.size() == 1; }));
        settle();
    }
    settle();
    FakeMessageService other;
    messages.show(u"timer"_s, {u"b"_s, {}, {}, true});
    ASSERT_TRUE(waitFor([&] { return other.shown.size() == 1; }));
    EXPECT_EQ(other.shown.first().at(1).toUInt(), 0U);
}

} // namespace
} // namespace orvelle::test
