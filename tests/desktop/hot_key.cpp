#include "desktop/tray_tools.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/x11/XcbHotKeys.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QProcess>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

constexpr HotKey superAltX{KEY_X, HotKey::Super | HotKey::Alt};

void press(const char *combination)
{
    pointer({u"key"_s, QString::fromLatin1(combination)});
}

/// The hot key on a real X server with a real keyboard.
class HotKeyTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QObject::connect(&hotKeys, &HotKeyService::fired, &hotKeys, [this] { ++fired; });
        QObject::connect(&hotKeys, &HotKeyService::hotKeyLost, &hotKeys,
                         [this](const HotKeyError &error) { lost = error.kind; });
    }
    bool firesAt(const char *combination)
    {
        const int before = fired;
        press(combination);
        settle();
        EXPECT_LE(fired, before + 1);
        return fired > before;
    }

    SystemClock clock;
    XcbHotKeys hotKeys{clock};
    int fired = 0;
    std::optional<HotKeyError::Kind> lost;
};

TEST_F(HotKeyTest, FiresWhateverLockKeysAreOn)
{
    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    EXPECT_TRUE(firesAt("super+alt+x"));
    EXPECT_FALSE(firesAt("super+x"));
    EXPECT_FALSE(firesAt("super+alt+shift+x"));
    for (const char *lock : {"Num_Lock", "Caps_Lock", "Scroll_Lock"}) {
        press(lock);
        EXPECT_TRUE(firesAt("super+alt+x")) << lock << " and those before it";
    }
    for (const char *lock : {"Num_Lock", "Caps_Lock", "Scroll_Lock"})
        press(lock);
    hotKeys.unregisterHotKey();
    EXPECT_FALSE(firesAt("super+alt+x"));
}

TEST_F(HotKeyTest, LeavesTheKeyboardFreeForTheMenu)
{
    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    const auto x = XcbConnection::open({});
    std::optional<int> status;
    QObject::connect(&hotKeys, &HotKeyService::fired, &hotKeys, [&] {
        const auto cookie =
            xcb_grab_keyboard(x->raw(), 0, x->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const XcbPtr<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(x->raw(), cookie, nullptr));
        status = reply ? reply->status : -1;
    });
    pointer({u"keydown"_s, u"super"_s, u"keydown"_s, u"alt"_s, u"keydown"_s, u"x"_s});
    EXPECT_TRUE(waitFor([&status] { return status.has_value(); }));
    EXPECT_EQ(status, XCB_GRAB_STATUS_SUCCESS);
    pointer({u"keyup"_s, u"x"_s, u"keyup"_s, u"alt"_s, u"keyup"_s, u"super"_s});
}

TEST_F(HotKeyTest, AKeyHeldDownFiresOnce)
{
    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    QProcess::execute(u"xset"_s, {u"r"_s, u"rate"_s, u"150"_s, u"50"_s});
    pointer({u"keydown"_s, u"super"_s, u"keydown"_s, u"alt"_s, u"keydown"_s, u"x"_s});
    waitFor([] { return false; }, 1000);
    pointer({u"keyup"_s, u"x"_s, u"keyup"_s, u"alt"_s, u"keyup"_s, u"super"_s});
    settle();
    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(firesAt("super+alt+x")) << "the next press is one again";
}

TEST_F(HotKeyTest, APressBetweenTwoRegistrationsIsNotLost)
{
    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    press("super+alt+x");
    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    EXPECT_TRUE(waitFor([this] { return fired == 1; }));
    settle();
    EXPECT_TRUE(firesAt("super+alt+x"));
}

TEST_F(HotKeyTest, TellsThatAnotherProgramHoldsIt)
{
    XcbHotKeys other(clock);
    ASSERT_FALSE(other.registerHotKey(superAltX));
    const auto error = hotKeys.registerHotKey(superAltX);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, HotKeyError::Kind::HeldByAnother);
    EXPECT_EQ(error->code, 10);
    EXPECT_FALSE(firesAt("super+alt+x"));
    EXPECT_FALSE(hotKeys.registerHotKey({KEY_K, HotKey::Control})) << "another one is free";
    EXPECT_TRUE(firesAt("ctrl+k"));
    other.unregisterHotKey();
    EXPECT_FALSE(hotKeys.registerHotKey(superAltX));
    EXPECT_TRUE(firesAt("super+alt+x"));
}

TEST_F(HotKeyTest, FollowsTheKeyboardThatIsSet)
{
    const auto missing = hotKeys.registerHotKey({240, HotKey::Control});
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->kind, HotKeyError::Kind::NoSuchKey);

    ASSERT_FALSE(hotKeys.registerHotKey(superAltX));
    // Super moves to another modifier.
    ASSERT_EQ(QProcess::execute(u"xmodmap"_s, {u"-e"_s, u"clear mod4"_s, u"-e"_s, u"clear mod3"_s, u"-e"_s,
                                               u"add mod3 = Super_L Super_R"_s}),
              0);
    settle();
    EXPECT_TRUE(firesAt("super+alt+x"));
    ASSERT_EQ(QProcess::execute(u"xmodmap"_s, {u"-e"_s, u"clear mod3"_s}), 0);
    EXPECT_TRUE(waitFor([this] { return lost.has_value(); }));
    EXPECT_EQ(lost, HotKeyError::Kind::NoSuchKey);
    ASSERT_EQ(QProcess::execute(u"xmodmap"_s, {u"-e"_s, u"add mod4 = Super_L Super_R"_s}), 0);
    settle();
    EXPECT_TRUE(firesAt("super+alt+x"));
}

TEST_F(HotKeyTest, IsUnavailableWithoutAnXServer)
{
    for (const auto &[name, value] : {std::pair("WAYLAND_DISPLAY", "wayland-0"), std::pair("DISPLAY", "")}) {
        const QByteArray before = qgetenv(name);
        qputenv(name, value);
        XcbHotKeys elsewhere(clock);
        const auto error = elsewhere.registerHotKey(superAltX);
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->kind, HotKeyError::Kind::Unavailable);
        elsewhere.unregisterHotKey();
        before.isNull() ? qunsetenv(name) : qputenv(name, before);
    }
}

} // namespace
} // namespace orvelle::test
