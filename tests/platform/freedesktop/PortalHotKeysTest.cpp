#include "MockPortal.h"
#include "platform/freedesktop/portal/PortalTrigger.h"
#include "support/FakeClock.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = HotKeyError::Kind;
using Answer = MockPortal::Answer;

bool waitFor(const std::function<bool()> &done)
{
    const QDeadlineTimer deadline(20'000);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::usleep(300);
    }
    return done();
}

constexpr HotKey superAltX{KEY_X, HotKey::Super | HotKey::Alt};

class PortalHotKeysTest : public testing::Test
{
protected:
    PortalHotKeysTest()
    {
        QObject::connect(&keys, &HotKeyService::fired, [this] { ++fired; });
        QObject::connect(&keys, &HotKeyService::hotKeyFound, [this] { ++found; });
        QObject::connect(&keys, &HotKeyService::hotKeyLost, [this](const HotKeyError &error) { lost += error.kind; });
    }
    /// Also when nobody is there to be asked.
    void registerKey() { EXPECT_EQ(keys.registerHotKey(superAltX)->kind, Kind::Undecided); }

    FakeClock clock;
    PrivateBus bus;
    PortalHotKeys keys{{bus.connection(), clock, u"org.orvelle.Orvelle"_s, u"Open it"_s, {}}};
    int fired = 0, found = 0;
    QList<Kind> lost;
};

TEST_F(PortalHotKeysTest, AsksTheUserAndFires)
{
    MockPortal portal(bus);
    registerKey();
    EXPECT_EQ(found, 0) << "nobody has been asked yet";
    ASSERT_TRUE(waitFor([this] { return found == 1; }));
    EXPECT_EQ(portal.registered, QStringList(u"org.orvelle.Orvelle"_s));
    EXPECT_EQ(portal.preferred, u"ALT+LOGO+x"_s);
    EXPECT_EQ(portal.description, u"Open it"_s);
    EXPECT_EQ(keys.desktopTrigger(), portal.trigger);

    const QString id = PortalHotKeys::shortcutId();
    for (int repeated = 0; repeated < 5; ++repeated) {
        portal.press(portal.session, id);
        clock.advance(30ms);
    }
    portal.press(portal.session, u"another"_s);
    portal.press(u"/org/freedesktop/portal/desktop/session/1_1/strange"_s, id);
    portal.userSets(u"Press <Super>m"_s);
    ASSERT_TRUE(waitFor([this] { return found == 2; })) << "after what was sent before";
    EXPECT_EQ(keys.desktopTrigger(), u"Press <Super>m"_s);
    EXPECT_EQ(fired, 1) << "a key that is held down, and strangers";
    portal.release(portal.session, id);
    portal.press(portal.session, id);
    EXPECT_TRUE(waitFor([this] { return fired == 2; }));
    clock.advance(1s);
    portal.press(portal.session, id);
    EXPECT_TRUE(waitFor([this] { return fired == 3; })) << "not every desktop tells the release";

    registerKey();
    ASSERT_TRUE(waitFor([this] { return found == 3; }));
    EXPECT_EQ(portal.closed, 1);
    keys.unregisterHotKey();
    ASSERT_TRUE(waitFor([&] { return portal.closed == 2; }));
    EXPECT_TRUE(keys.desktopTrigger().isEmpty());
    EXPECT_TRUE(lost.isEmpty());
}

TEST_F(PortalHotKeysTest, SaysWhyThereIsNone)
{
    const struct {
        const char *what;
        std::function<void(MockPortal &)> set;
        Kind expected;
    } cases[]{
        {"the session is refused by the user", [](auto &p) { p.toCreate = Answer::Cancel; }, Kind::Denied},
        {"the session is refused", [](auto &p) { p.toCreate = Answer::NotAllowed; }, Kind::Denied},
        {"the shortcut is refused by the user", [](auto &p) { p.toBind = Answer::Cancel; }, Kind::Denied},
        {"the dialog ends by itself", [](auto &p) { p.toBind = Answer::End; }, Kind::Denied},
        {"bound is another one", [](auto &p) { p.toBind = Answer::OtherShortcut; }, Kind::Denied},
        {"no shortcuts in this desktop", [](auto &p) { p.hasShortcuts = false; }, Kind::Unavailable},
        {"a session that is no path", [](auto &p) { p.sessionName = u"/a b"_s; }, Kind::Unavailable},
        {"no session", [](auto &p) { p.sessionName = u""_s; }, Kind::Unavailable},
    };
    MockPortal portal(bus);
    for (const auto &[what, set, expected] : cases) {
        portal.beFair();
        set(portal);
        lost.clear();
        registerKey();
        ASSERT_TRUE(waitFor([this] { return !lost.isEmpty(); })) << what;
        EXPECT_EQ(lost, QList{expected}) << what;
        keys.unregisterHotKey();
        EXPECT_TRUE(waitFor([&] { return portal.session.isEmpty() || !portal.sessionName.isNull(); })) << what;
        EXPECT_EQ(portal.faults.join(u';').toStdString(), "") << what;
    }
    EXPECT_EQ(found, 0);
}

TEST_F(PortalHotKeysTest, WorksWithPortalsOfDifferentHabits)
{
    const struct {
        const char *what;
        std::function<void(MockPortal &)> set;
        int listed;
    } cases[]{
        {"the handle as a path", [](auto &p) { p.objectPathHandle = true; }, 0},
        {"says only on demand what is bound", [](auto &p) { p.toBind = Answer::NoList; }, 1},
        {"no registry of programs", [](auto &p) { p.hasRegistry = false; }, 0},
    };
    MockPortal portal(bus);
    for (const auto &[what, set, listed] : cases) {
        portal.beFair();
        set(portal);
        found = 0;
        registerKey();
        EXPECT_TRUE(waitFor([this] { return found == 1; })) << what;
        EXPECT_EQ(portal.listed, listed) << what;
        EXPECT_EQ(portal.faults.join(u';').toStdString(), "") << what;
        EXPECT_EQ(keys.desktopTrigger(), portal.trigger) << what;
        keys.unregisterHotKey();
        EXPECT_TRUE(waitFor([&] { return portal.closed == 1; })) << what;
    }
    EXPECT_TRUE(lost.isEmpty());
}

TEST_F(PortalHotKeysTest, FollowsThePortalComingAndGoing)
{
    registerKey();
    ASSERT_TRUE(waitFor([this] { return lost == QList{Kind::Unavailable}; })) << "there is no portal";
    {
        MockPortal late(bus);
        ASSERT_TRUE(waitFor([this] { return found == 1; }));
        late.closeSession();
        ASSERT_TRUE(waitFor([this] { return lost.size() == 2; }));
        EXPECT_EQ(lost.constLast(), Kind::Denied) << "the desktop took it back";
        registerKey();
        ASSERT_TRUE(waitFor([this] { return found == 2; }));
    }
    ASSERT_TRUE(waitFor([this] { return lost.size() == 3; }));
    EXPECT_EQ(lost.constLast(), Kind::Unavailable);
    MockPortal again(bus);
    ASSERT_TRUE(waitFor([this] { return found == 3; }));
    EXPECT_EQ(again.sessions, 1);
    EXPECT_EQ(again.faults.join(u';').toStdString(), "");
}

TEST_F(PortalHotKeysTest, AQuestionIsWithdrawnWithTheWish)
{
    MockPortal portal(bus);
    portal.toBind = Answer::Nothing;
    registerKey();
    ASSERT_TRUE(waitFor([&] { return !portal.preferred.isEmpty(); }));
    keys.unregisterHotKey();
    EXPECT_TRUE(waitFor([&] { return portal.withdrawn == 1 && portal.closed == 1; }));
}

TEST_F(PortalHotKeysTest, APortalThatEndsAgainAndAgainIsLeftAlone)
{
    int asked = 0;
    registerKey();
    ASSERT_TRUE(waitFor([this] { return !lost.isEmpty(); }));
    for (int run = 0; run < 8; ++run) {
        MockPortal portal(bus);
        portal.toCreate = Answer::Nothing;
        const bool came = run < 5 && waitFor([&] { return !portal.registered.isEmpty(); });
        asked += came ? 1 : 0;
    }
    EXPECT_EQ(asked, 5);
    clock.advance(61s);
    MockPortal portal(bus);
    EXPECT_TRUE(waitFor([this] { return found == 1; })) << "later it may";
}

QByteArray keymapOf(const char *layouts)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{"evdev", "pc105", layouts, "", ""};
    xkb_keymap *keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    char *text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const QByteArray bytes(text);
    free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
    return bytes;
}

TEST(PortalTriggerTest, IsWhatTheKeyGivesOnTheKeyboardThatIsSet)
{
    const HotKey::Modifiers all = HotKey::Control | HotKey::Alt | HotKey::Shift | HotKey::Super;
    const struct {
        HotKey key;
        QByteArray keymap;
        QString expected;
    } cases[]{
        {superAltX, {}, u"ALT+LOGO+x"_s},
        {{KEY_Q, HotKey::Control}, keymapOf("fr"), u"CTRL+a"_s},
        {{KEY_Q, HotKey::Control}, keymapOf("ru,fr"), u"CTRL+a"_s},
        {{KEY_Q, HotKey::Control}, keymapOf("ru"), u"CTRL+q"_s},
        {{KEY_Q, HotKey::Control}, "no keymap", u"CTRL+q"_s},
        {{KEY_1, HotKey::Control}, keymapOf("us"), u"CTRL+1"_s},
        {{KEY_F5, all}, {}, u"CTRL+ALT+SHIFT+LOGO+F5"_s},
        {{KEY_SPACE, HotKey::Control}, {}, u"CTRL+space"_s},
        {{KEY_ENTER, HotKey::Super}, keymapOf("de"), u"LOGO+Return"_s},
        {{600, HotKey::Control}, {}, {}},
        {{-8, HotKey::Control}, {}, {}},
    };
    for (const auto &each : cases)
        EXPECT_EQ(portalTrigger(each.key, each.keymap), each.expected) << each.key.key;
}

} // namespace
} // namespace orvelle::test
