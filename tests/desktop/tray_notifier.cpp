#include "desktop/tray_tools.h"
#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/tray/FreedesktopStatusItem.h"
#include "platform/freedesktop/tray/HostMenu.h"
#include "platform/freedesktop/tray/NotifierItem.h"
#include "platform/freedesktop/x11/ScreenPositions.h"
#include "support/FakeClock.h"

#include <QCursor>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QPalette>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Host = StatusItem::Host;

QString watcherName()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}
QString itemName()
{
    return u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid());
}

/// A panel's side of the protocol, as another program on the bus.
class FakeWatcher
{
public:
    explicit FakeWatcher(bool withHost) : hasHost(withHost)
    {
        m_object.methods[u"RegisterStatusNotifierItem"_s] = [this](const QDBusMessage &call) {
            registered += call.arguments().value(0).toString();
            return call.createReply();
        };
        m_object.methods[u"Get"_s] = [this](const QDBusMessage &call) {
            return knowsHosts ? call.createReply(QVariant::fromValue(QDBusVariant(hasHost)))
                              : call.createErrorReply(QDBusError::UnknownProperty, u"no such property"_s);
        };
        auto bus = m_client.bus();
        bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, &m_object);
        EXPECT_TRUE(bus.registerService(watcherName()));
    }
    ~FakeWatcher()
    {
        auto bus = m_client.bus();
        bus.unregisterService(watcherName());
    }

    void hostComes() { change(true, u"StatusNotifierHostRegistered"_s); }
    void hostLeaves() { change(false, u"StatusNotifierHostUnregistered"_s); }
    void drops(const QString &item)
    {
        auto told =
            QDBusMessage::createSignal(u"/StatusNotifierWatcher"_s, watcherName(), u"StatusNotifierItemUnregistered"_s);
        told << item;
        m_client.bus().send(told);
    }

    bool hasHost;
    bool knowsHosts = true;
    QStringList registered;

private:
    void change(bool host, const QString &signal)
    {
        hasHost = host;
        m_client.bus().send(QDBusMessage::createSignal(u"/StatusNotifierWatcher"_s, watcherName(), signal));
    }

    BusClient m_client;
    StubObject m_object;
};

class NotifierTest : public testing::Test
{
protected:
    NotifierTest() : item(clock, colors, program.bus())
    {
        item.setPainter(paintFrame);
        item.setTitle(u"Orvelle"_s);
        item.setHostMenu(
            {{1, u"Show _Settings"_s, u"configure"_s, false}, {2, {}, {}, true}, {3, u"Quit"_s, {}, false}});
        QObject::connect(&item, &StatusItem::hostChanged, [this](Host host) { hosts += host; });
        QObject::connect(&item, &StatusItem::activated, [this](QPoint at) { activations += at; });
        QObject::connect(&item, &StatusItem::contextMenuRequested, [this](QPoint at) { contextMenus += at; });
        QObject::connect(&item, &StatusItem::hostMenuChosen, [this](int id) { chosen += id; });
    }

    bool hostBecomes(Host host)
    {
        return waitFor([&] { return item.host() == host; });
    }
    QDBusMessage callItem(const QString &method, const QVariantList &arguments) const
    {
        return panel.call(itemName(), u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, arguments);
    }
    QDBusMessage callMenu(const QString &method, const QVariantList &arguments) const
    {
        return panel.call(itemName(), u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, method, arguments);
    }
    QVariant property(const QString &name) const
    {
        const auto reply = panel.call(itemName(), u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                                      u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    FakeClock clock;
    BusClient program; ///< the application's connection
    BusClient panel;   ///< the host's
    DesktopColorScheme colors{program.bus()};
    FreedesktopStatusItem item;
    QList<Host> hosts;
    QList<QPoint> activations, contextMenus;
    QList<int> chosen;
};

TEST_F(NotifierTest, NoTrayIsSaidOnceAfterTheSearch)
{
    item.show();
    settle();
    EXPECT_TRUE(hosts.isEmpty());
    clock.advance(5s);
    EXPECT_EQ(hosts, QList{Host::None});
    clock.advance(60s);
    EXPECT_EQ(hosts.size(), 1);
}

TEST_F(NotifierTest, JoinsAWatcherThatComesLateRestartsAndVanishes)
{
    item.show();
    settle();
    {
        FakeWatcher late(true);
        EXPECT_TRUE(hostBecomes(Host::Notifier));
        EXPECT_EQ(late.registered, QStringList(itemName()));
    }
    EXPECT_TRUE(hostBecomes(Host::None));
    {
        FakeWatcher restarted(true);
        EXPECT_TRUE(hostBecomes(Host::Notifier));
        EXPECT_EQ(restarted.registered, QStringList(itemName()));
        clock.advance(10s);
        EXPECT_FALSE(hosts.contains(Host::None)) << "a restart is no loss of the tray";
    }
    EXPECT_TRUE(hostBecomes(Host::None));
    clock.advance(5s);
    EXPECT_EQ(hosts.last(), Host::None);
}

TEST_F(NotifierTest, AnItemThatWasDroppedComesBackByItsConnection)
{
    FakeWatcher watcher(true);
    item.show();
    ASSERT_TRUE(hostBecomes(Host::Notifier));
    settle();
    watcher.registered.clear();
    watcher.drops(u"org.kde.StatusNotifierItem-1-1"_s);
    watcher.drops(itemName() + u'0');
    settle();
    EXPECT_TRUE(watcher.registered.isEmpty()) << "other items are none of ours";

    const QString connection = program.bus().baseService();
    QStringList expected;
    for (const QString &dropped :
         {itemName() + u"/StatusNotifierItem"_s, connection + u"@/StatusNotifierItem"_s, connection}) {
        watcher.drops(dropped);
        expected += connection;
        EXPECT_TRUE(waitFor([&] { return watcher.registered == expected; })) << qPrintable(dropped);
    }
    watcher.drops(connection);
    settle();
    EXPECT_EQ(watcher.registered, expected) << "one that will not have it is left alone";
    EXPECT_EQ(item.host(), Host::Notifier);
}

TEST_F(NotifierTest, AWatcherWithoutHostIsNone)
{
    FakeWatcher watcher(false);
    item.show();
    EXPECT_TRUE(waitFor([&] { return !watcher.registered.isEmpty(); }));
    settle();
    EXPECT_EQ(item.host(), Host::None);
    watcher.hostComes();
    EXPECT_TRUE(hostBecomes(Host::Notifier));
    watcher.hostLeaves();
    EXPECT_TRUE(hostBecomes(Host::None));
}

TEST_F(NotifierTest, AWatcherThatKnowsNothingOfHostsCountsAsOne)
{
    FakeWatcher watcher(false);
    watcher.knowsHosts = false;
    item.show();
    EXPECT_TRUE(hostBecomes(Host::Notifier));
}

TEST_F(NotifierTest, PixmapsFollowTheColourScheme)
{
    StubObject portal;
    portal.methods[u"Read"_s] = [](const QDBusMessage &call) {
        const QDBusVariant dark(1U);
        return call.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(dark))));
    };
    BusClient portalClient;
    auto portalBus = portalClient.bus();
    portalBus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, &portal);
    FakeWatcher watcher(true);
    colors.start();
    item.show();
    ASSERT_TRUE(hostBecomes(Host::Notifier));
    ASSERT_TRUE(portalBus.registerService(u"org.freedesktop.portal.Desktop"_s));

    const auto middleOf24 = [this] {
        const auto pixmaps = qdbus_cast<NotifierPixmaps>(property(u"IconPixmap"_s));
        QList<int> sides;
        for (const NotifierPixmap &pixmap : pixmaps) {
            sides += pixmap.width;
            EXPECT_EQ(pixmap.bytes.size(), pixmap.width * pixmap.height * 4);
        }
        EXPECT_EQ(sides, (QList{16, 22, 24, 32, 48}));
        return pixmaps.value(2).bytes.mid((12 * 24 + 12) * 4, 4).toHex();
    };
    EXPECT_TRUE(waitFor([&] { return middleOf24() == "fff5f5f5"; }));
    auto change = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s,
                                             u"SettingChanged"_s);
    change << u"org.freedesktop.appearance"_s << u"color-scheme"_s << QVariant::fromValue(QDBusVariant(2U));
    portalBus.send(change);
    EXPECT_TRUE(waitFor([&] { return middleOf24() == "ff242424"; }));
    portalBus.unregisterService(u"org.freedesktop.portal.Desktop"_s);
}

TEST_F(NotifierTest, GnomesSwitchForHighContrastIsFollowed)
{
    const QString group = u"org.gnome.desktop.a11y.interface"_s;
    const QString key = u"high-contrast"_s;
    StubObject portal;
    portal.methods[u"Read"_s] = [&](const QDBusMessage &call) {
        const QDBusVariant on(true);
        return call.arguments() == QVariantList{group, key}
                   ? call.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(on))))
                   : call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no such setting"_s);
    };
    BusClient portalClient;
    auto portalBus = portalClient.bus();
    portalBus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, &portal);
    colors.start();
    ASSERT_TRUE(portalBus.registerService(u"org.freedesktop.portal.Desktop"_s));
    EXPECT_TRUE(waitFor([this] { return colors.prefersHighContrast(); }));
    auto change = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s,
                                             u"SettingChanged"_s);
    change << group << key << QVariant::fromValue(QDBusVariant(false));
    portalBus.send(change);
    EXPECT_TRUE(waitFor([this] { return !colors.prefersHighContrast(); }));
    portalBus.unregisterService(u"org.freedesktop.portal.Desktop"_s);
}

TEST_F(NotifierTest, SymbolsAreLightOnTheBarOfGnome)
{
    const QPalette before = QGuiApplication::palette();
    QPalette light(Qt::black, Qt::white, Qt::white, Qt::black, Qt::gray, Qt::black, Qt::white, Qt::white, Qt::white);
    QGuiApplication::setPalette(light);
    const struct {
        const char *desktop;
        bool darkBar;
    } cases[] = {{"GNOME", true}, {"ubuntu:GNOME", true}, {"GNOME-Classic:GNOME", false}, {"XFCE", false}, {"", false}};
    for (const auto &[desktop, darkBar] : cases) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        EXPECT_EQ(colors.symbolColor() == DesktopColorScheme::onDark(), darkBar) << desktop;
    }
    qunsetenv("XDG_CURRENT_DESKTOP");
    QGuiApplication::setPalette(before);
}

TEST(NotifierPixmapTest, IsAlphaRedGreenBlueFromTheTop)
{
    QImage image(1, 2, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(0x11, 0x22, 0x33, 0x80));
    image.setPixelColor(0, 1, QColor(0xaa, 0xbb, 0xcc, 0xff));
    EXPECT_EQ(NotifierPixmap::fromImage(image).bytes.toHex(), "80112233ffaabbcc");
}

TEST_F(NotifierTest, ClicksCarryTheirPlace)
{
    item.show();
    settle();
    callItem(u"Activate"_s, {300, 20});
    callItem(u"ContextMenu"_s, {301, 21});
    EXPECT_TRUE(waitFor([&] { return activations.size() == 1 && contextMenus.size() == 1; }));
    EXPECT_EQ(activations, QList{QPoint(300, 20)});
    EXPECT_EQ(contextMenus, QList{QPoint(301, 21)});

    pointer({u"mousemove"_s, u"640"_s, u"77"_s});
    for (const QPoint nowhere : {QPoint(0, 0), QPoint(INT_MIN, INT_MAX), QPoint(-5, 100'000)}) {
        activations.clear();
        callItem(u"Activate"_s, {nowhere.x(), nowhere.y()});
        EXPECT_TRUE(waitFor([&] { return !activations.isEmpty(); }));
        EXPECT_EQ(activations, QList{QPoint(640, 77)}) << nowhere.x();
    }
}

TEST_F(NotifierTest, WrongArgumentsAreRefusedAndDoNothing)
{
    qDBusRegisterMetaType<QList<int>>();
    item.show();
    settle();
    const QVariant none = QVariant::fromValue(QDBusVariant(0));
    const struct {
        bool menu;
        QString method;
        QVariantList arguments;
    } cases[]{
        {false, u"Activate"_s, {}},
        {false, u"Activate"_s, {u"1"_s, u"2"_s}},
        {false, u"Activate"_s, {1}},
        {false, u"ContextMenu"_s, {1.5, 2.5}},
        {false, u"Scroll"_s, {1, u"sideways"_s}},
        {false, u"ProvideXdgActivationToken"_s, {u"a\nb"_s}},
        {false, u"ProvideXdgActivationToken"_s, {QString(5000, u'x')}},
        {false, u"deleteLater"_s, {}},
        {true, u"GetLayout"_s, {99, -1, QStringList()}},
        {true, u"GetLayout"_s, {0, -2, QStringList()}},
        {true, u"GetLayout"_s, {0}},
        {true, u"GetProperty"_s, {1, u"nonsense"_s}},
        {true, u"GetProperty"_s, {-1, u"label"_s}},
        {true, u"Event"_s, {99, u"clicked"_s, none, 0U}},
        {true, u"Event"_s, {INT_MIN, u"clicked"_s, none, 0U}},
        {true, u"Event"_s, {1, 7, none, 0U}},
        {true, u"EventGroup"_s, {QVariant::fromValue(QList<HostMenuEvent>{{99, u"clicked"_s, QDBusVariant(0), 0}})}},
        {true, u"AboutToShow"_s, {99}},
        {true, u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{98, 99})}},
        {true, u"NoSuchMethod"_s, {}},
    };
    for (const auto &[menu, method, arguments] : cases) {
        const auto reply = menu ? callMenu(method, arguments) : callItem(method, arguments);
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage) << qPrintable(method);
        EXPECT_NE(reply.errorName(), u"org.freedesktop.DBus.Error.NoReply"_s) << qPrintable(method);
    }
    settle();
    EXPECT_TRUE(activations.isEmpty() && contextMenus.isEmpty() && chosen.isEmpty());
}

TEST_F(NotifierTest, TheHostMenuIsServedAndChosenFrom)
{
    item.show();
    settle();
    const auto reply = callMenu(u"GetLayout"_s, {0, -1, QStringList()});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
    const auto root = qdbus_cast<HostMenuNode>(reply.arguments().value(1));
    EXPECT_EQ(root.properties.value(u"children-display"_s), u"submenu"_s);
    ASSERT_EQ(root.children.size(), 3);
    EXPECT_EQ(root.children[0].properties.value(u"label"_s), u"Show __Settings"_s);
    EXPECT_EQ(root.children[0].properties.value(u"icon-name"_s), u"configure"_s);
    EXPECT_EQ(root.children[1].properties.value(u"type"_s), u"separator"_s);
    EXPECT_EQ(callMenu(u"GetProperty"_s, {3, u"enabled"_s}).arguments().value(0).value<QDBusVariant>().variant(), true);

    const QVariant none = QVariant::fromValue(QDBusVariant(0));
    callMenu(u"Event"_s, {3, u"hovered"_s, none, 0U});
    callMenu(u"Event"_s, {2, u"clicked"_s, none, 0U}); // a separator
    callMenu(u"Event"_s, {1, u"clicked"_s, none, 0U});
    const QList<HostMenuEvent> group{{99, u"clicked"_s, QDBusVariant(0), 0}, {3, u"clicked"_s, QDBusVariant(0), 0}};
    const auto unknown = callMenu(u"EventGroup"_s, {QVariant::fromValue(group)});
    EXPECT_EQ(qdbus_cast<QList<int>>(unknown.arguments().value(0)), QList{99});
    EXPECT_TRUE(waitFor([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen, (QList{1, 3}));
}

TEST(ScreenPositionsTest, NativePixelsBecomeGlobalPositions)
{
    // A monitor at scale 2 beside one at scale 1; corners stay native.
    const QList<ScreenLayout> screens{{{0, 0, 1920, 1080}, 2.0}, {{3840, 0, 1280, 800}, 1.0}};
    EXPECT_EQ(fromNative({400, 20}, screens), QPoint(200, 10));
    EXPECT_EQ(fromNative({3839, 2159}, screens), QPoint(1920, 1080));
    EXPECT_EQ(fromNative({3850, 20}, screens), QPoint(3850, 20));
    EXPECT_EQ(fromNative({4000, 900}, screens), std::nullopt);
    EXPECT_EQ(menuAnchor({100, 0, 25, 25}, screens), QPoint(112, 24)) << "panel on top: below the icon";
    EXPECT_EQ(menuAnchor({3900, 770, 25, 25}, screens), QPoint(3912, 770)) << "panel at the bottom: above it";
}

TEST(ScreenPositionsTest, OfAHostsTwoReadingsTheOneAtThePointerCounts)
{
    const QList<ScreenLayout> screens{{{0, 0, 640, 400}, 2.0}};
    const QPoint pointer(555, 15);
    EXPECT_EQ(fromHost({1110, 30}, pointer, screens), QPoint(555, 15)) << "the display's pixels";
    EXPECT_EQ(fromHost({556, 16}, pointer, screens), QPoint(556, 16)) << "scaled already";
    EXPECT_EQ(fromHost({0, 0}, pointer, screens), pointer);
    EXPECT_EQ(fromHost({1300, 30}, pointer, screens), pointer) << "on no screen";
    EXPECT_EQ(fromHost({INT_MIN, INT_MAX}, pointer, screens), pointer);
}

} // namespace
} // namespace orvelle::test
