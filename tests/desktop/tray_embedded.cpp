#include "desktop/tray_tools.h"
#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/tray/FreedesktopStatusItem.h"
#include "platform/freedesktop/x11/XcbTools.h"
#include "support/FakeClock.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using Host = StatusItem::Host;

/// A tray of the X11 kind: one slot on a plain panel.
class FakeTray
{
public:
    FakeTray(quint32 background, QRect slot, std::initializer_list<quint32> colors = {}) : m_slot(slot)
    {
        m_x = XcbConnection::open({});
        m_selection = m_x->atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(m_x->screenNumber()));
        m_window = xcb_generate_id(m_x->raw());
        const quint32 values[]{background, 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(m_x->raw(), XCB_COPY_FROM_PARENT, m_window, m_x->root(), 0, 0, 400, 60, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        if (colors.size() > 0)
            m_x->setNumbers(m_window, "_NET_SYSTEM_TRAY_COLORS", XCB_ATOM_CARDINAL, colors);
        xcb_map_window(m_x->raw(), m_window);
        xcb_set_selection_owner(m_x->raw(), m_window, m_selection, XCB_CURRENT_TIME);
        m_x->sendMessage(m_x->root(), m_x->root(), m_x->atom("MANAGER"), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                         {XCB_CURRENT_TIME, m_selection, m_window});
        xcb_flush(m_x->raw());
    }

    /// Takes in who asked; true once there is an icon on the panel.
    bool hasIcon()
    {
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x->raw())}) {
            const int type = event->response_type & 0x7f;
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            if (type == XCB_CLIENT_MESSAGE && message->type == m_x->atom("_NET_SYSTEM_TRAY_OPCODE"))
                embed(message->data.data32[2]);
            const auto *destroyed = reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get());
            if (type == XCB_DESTROY_NOTIFY && destroyed->window == m_icon)
                m_icon = XCB_WINDOW_NONE;
        }
        return m_icon != XCB_WINDOW_NONE;
    }

    void resize(const QSize &size)
    {
        const quint32 values[]{quint32(size.width()), quint32(size.height())};
        xcb_configure_window(m_x->raw(), m_icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        xcb_flush(m_x->raw());
    }

    int requests = 0;

private:
    void embed(xcb_window_t icon)
    {
        ++requests;
        m_icon = icon;
        const quint32 values[]{quint32(m_slot.x()), quint32(m_slot.y()), quint32(m_slot.width()),
                               quint32(m_slot.height())};
        xcb_reparent_window(m_x->raw(), icon, m_window, qint16(m_slot.x()), qint16(m_slot.y()));
        xcb_configure_window(
            m_x->raw(), icon,
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        EXPECT_EQ(m_x->numbers(icon, m_x->atom("_XEMBED_INFO"), 2), (std::vector<quint32>{0, 1}));
        xcb_map_window(m_x->raw(), icon);
        xcb_flush(m_x->raw());
    }

    std::unique_ptr<XcbConnection> m_x;
    QRect m_slot;
    xcb_atom_t m_selection = 0;
    xcb_window_t m_window = 0;
    xcb_window_t m_icon = 0;
};

class EmbeddedTest : public testing::Test
{
protected:
    EmbeddedTest() : item(clock, colors, program.bus())
    {
        item.setPainter(paintFrame);
        QObject::connect(&item, &StatusItem::activated, [this](QPoint at) { activations += at; });
        QObject::connect(&item, &StatusItem::contextMenuRequested, [this](QPoint at) { contextMenus += at; });
    }
    bool docksIn(FakeTray &tray)
    {
        return waitFor([&] { return tray.hasIcon() && item.host() == Host::Embedded; });
    }
    static bool pixelBecomes(const QPoint &at, const QColor &color)
    {
        return waitFor([&] { return screenshot().pixelColor(at) == color; }, 3000);
    }

    FakeClock clock;
    BusClient program;
    DesktopColorScheme colors{program.bus()};
    FreedesktopStatusItem item;
    QList<QPoint> activations, contextMenus;
};

TEST_F(EmbeddedTest, IsDrawnToContrastWithThePanelAtAnySize)
{
    item.show();
    settle();
    const struct {
        quint32 background;
        std::initializer_list<quint32> trayColors;
        QColor expected;
    } cases[]{
        {0x202020, {}, QColor(0xf5, 0xf5, 0xf5)},
        {0xe0e0e0, {}, QColor(0x24, 0x24, 0x24)},
        {0xe0e0e0, {0x8080, 0, 0xffff, 0, 0, 0, 0, 0, 0, 0, 0, 0}, QColor(0x80, 0, 0xff)},
    };
    for (const auto &[background, trayColors, expected] : cases) {
        FakeTray tray(background, {100, 10, 24, 24}, trayColors);
        ASSERT_TRUE(docksIn(tray));
        EXPECT_TRUE(pixelBecomes({112, 22}, expected));
        EXPECT_EQ(screenshot().pixelColor(101, 11), QColor::fromRgb(background)) << "the panel shows through";
        tray.resize({48, 32});
        EXPECT_TRUE(pixelBecomes({124, 38}, expected)) << "drawn anew, as large as fits";
        EXPECT_EQ(screenshot().pixelColor(102, 26), QColor::fromRgb(background)) << "in the middle";
    }
}

TEST_F(EmbeddedTest, AnswersClicksWhenTheButtonComesUpOverTheIcon)
{
    item.show();
    FakeTray tray(0x202020, {100, 10, 24, 24});
    ASSERT_TRUE(docksIn(tray));
    clickAt({105, 15});
    clickAt({105, 15}, 3);
    EXPECT_TRUE(waitFor([&] { return activations.size() == 1 && contextMenus.size() == 1; }));
    EXPECT_EQ(activations, QList{QPoint(111, 33)}) << "below the icon's middle, for the panel is at the top";
    EXPECT_EQ(contextMenus, activations);

    pointer({u"mousemove"_s, u"105"_s, u"15"_s, u"mousedown"_s, u"1"_s});
    settle();
    EXPECT_EQ(activations.size(), 1) << "not yet";
    pointer({u"mousemove"_s, u"300"_s, u"300"_s, u"mouseup"_s, u"1"_s});
    clickAt({105, 15}, 2);
    settle();
    EXPECT_EQ(activations.size() + contextMenus.size(), 2);
}

TEST_F(EmbeddedTest, ATrayMayComeLateVanishAndComeBack)
{
    item.show();
    settle();
    EXPECT_EQ(item.host(), Host::None);
    for (int round = 0; round < 3; ++round) {
        FakeTray tray(0x202020, {100, 10, 24, 24});
        EXPECT_TRUE(docksIn(tray));
        settle();
        EXPECT_EQ(tray.requests, 1);
    }
    EXPECT_TRUE(waitFor([&] { return item.host() == Host::None; }));
}

TEST_F(EmbeddedTest, LeavesForANotifierHostAndReturns)
{
    FakeTray tray(0x202020, {100, 10, 24, 24});
    item.show();
    ASSERT_TRUE(docksIn(tray));
    {
        BusClient panel;
        StubObject watcher;
        watcher.methods[u"RegisterStatusNotifierItem"_s] = [](const QDBusMessage &call) { return call.createReply(); };
        watcher.methods[u"Get"_s] = [](const QDBusMessage &call) {
            return call.createReply(QVariant::fromValue(QDBusVariant(true)));
        };
        auto bus = panel.bus();
        bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, &watcher);
        ASSERT_TRUE(bus.registerService(u"org.kde.StatusNotifierWatcher"_s));
        EXPECT_TRUE(waitFor([&] { return item.host() == Host::Notifier && !tray.hasIcon(); })) << "never two icons";
        bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s);
    }
    EXPECT_TRUE(docksIn(tray));
}

TEST(EmbeddedWithoutDisplayTest, IsNoTrayAndNoError)
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":4711");
    FakeClock clock;
    const QDBusConnection none(u"no such connection"_s);
    DesktopColorScheme colors(none);
    FreedesktopStatusItem item(clock, colors, none);
    QList<Host> hosts;
    QObject::connect(&item, &StatusItem::hostChanged, [&](Host host) { hosts += host; });
    item.show();
    waitFor([] { return false; }, 50);
    clock.advance(std::chrono::seconds(5));
    qputenv("DISPLAY", display);
    EXPECT_EQ(hosts, QList{Host::None});
}

// The session's X server may only run once somebody wants it.
TEST_F(EmbeddedTest, LeavesTheXServerOfAWaylandSessionAlone)
{
    qputenv("WAYLAND_DISPLAY", "wayland-of-a-test");
    FakeTray tray(0x202020, {4, 4, 40, 40});
    QList<Host> hosts;
    QObject::connect(&item, &StatusItem::hostChanged, [&](Host host) { hosts += host; });
    item.show();
    settle();
    qunsetenv("WAYLAND_DISPLAY");
    EXPECT_FALSE(tray.hasIcon());
    EXPECT_EQ(tray.requests, 0);
    clock.advance(std::chrono::seconds(5));
    EXPECT_EQ(hosts, QList{Host::None});
}

} // namespace
} // namespace orvelle::test
