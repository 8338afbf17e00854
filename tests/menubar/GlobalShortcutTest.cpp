#include "menubar/GlobalShortcut.h"

#include "menubar/MenuTestFakes.h"
#include "support/FakeHotKeys.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <set>

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto superAlt = HotKey::Super | HotKey::Alt;

TEST(ShortcutKeys, NameEveryKey)
{
    struct {
        quint32 first;
        const char16_t *labels; ///< of the keys from `first` on
    } const runs[] = {
        {0, u"ASDFHGZXCV"}, {11, u"BQWERYT123465=97-80]OU[IP"}, {37, u"LJ'K;\\,/NM."}, {50, u"`"}, {123, u"←→↓↑"},
    };
    for (const auto &run : runs) {
        quint32 code = run.first;
        for (const char16_t *label = run.labels; *label; ++label, ++code)
            EXPECT_EQ(keyCodeToString(code), QString(QChar(*label))) << code;
    }
    const std::pair<quint32, const char16_t *> named[] = {
        {36, u"↩"},    {48, u"⇥"},    {49, u"Space"}, {51, u"⌫"},  {53, u"⎋"},  {122, u"F1"}, {120, u"F2"},
        {99, u"F3"},   {118, u"F4"},  {96, u"F5"},    {97, u"F6"}, {98, u"F7"}, {100, u"F8"}, {101, u"F9"},
        {109, u"F10"}, {103, u"F11"}, {111, u"F12"},  {10, u"?"},  {52, u"?"},  {127, u"?"},  {4'000'000'000, u"?"},
    };
    for (const auto &[code, label] : named)
        EXPECT_EQ(keyCodeToString(code), QString::fromUtf16(label)) << code;
}

TEST(ShortcutKeys, EveryKeyHasItsOwnPlaceOnTheKeyboard)
{
    std::set<int> places;
    for (quint32 code = 0; code < 128; ++code) {
        const auto place = physicalKeyOf(code);
        EXPECT_TRUE(place || keyCodeToString(code) == u"?") << code;
        if (place) {
            EXPECT_TRUE(places.insert(*place).second) << code;
            EXPECT_EQ(keyCodeOfPhysical(*place), code);
        }
    }
    EXPECT_EQ(physicalKeyOf(7), KEY_X);
    EXPECT_EQ(physicalKeyOf(18), KEY_1);
    EXPECT_EQ(keyCodeOfPhysical(KEY_LEFTMETA), std::nullopt);
    EXPECT_EQ(keyCodeOfPhysical(0), std::nullopt);
}

TEST(ShortcutKeys, ShowModifiersInTheirOrder)
{
    struct {
        Shortcut shortcut;
        const char16_t *shown;
        const char16_t *spoken;
        bool reserved;
    } const cases[] = {
        {{}, u"⌥⌘X", u"Alt+Super+X", false},
        {{8, CommandModifier}, u"⌘C", u"Super+C", true},
        {{49, ControlModifier}, u"⌃Space", u"Ctrl+Space", true},
        {{6, CommandModifier | ShiftModifier}, u"⇧⌘Z", u"Shift+Super+Z", true},
        {{53, CommandModifier}, u"⌘⎋", u"Super+Esc", true},
        {{51, allShortcutModifiers}, u"⌃⌥⇧⌘⌫", u"Ctrl+Alt+Shift+Super+Backspace", false},
        {{11, CommandModifier}, u"⌘B", u"Super+B", false},
        {{8, ControlModifier}, u"⌃C", u"Ctrl+C", false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(displayString(c.shortcut), QString::fromUtf16(c.shown));
        EXPECT_EQ(spokenString(c.shortcut), QString::fromUtf16(c.spoken));
        EXPECT_EQ(isReserved(c.shortcut), c.reserved);
    }
    EXPECT_EQ(reservedShortcuts().size(), 20U);
}

struct ShortcutWorld : Shell {
    FakeHotKeys hotKeys;
    GlobalShortcut shortcut{{defaults, notifications, hotKeys}};

    void store(const char *key, DefaultsValue value)
    {
        ASSERT_TRUE(defaults.write(QString::fromLatin1(key), std::move(value)));
    }
};

TEST(GlobalShortcut, RegistersWhatIsStored)
{
    using State = GlobalShortcut::State;
    const auto number = [](qint64 value) { return std::optional<DefaultsValue>(value); };
    struct {
        std::optional<DefaultsValue> enabled, keyCode, modifiers;
        State state;
        std::optional<HotKey> registered;
    } const cases[] = {
        {{}, {}, {}, State::Registered, HotKey{KEY_X, superAlt}},
        {DefaultsValue(false), {}, {}, State::Off, {}},
        {{}, number(40), number(ControlModifier), State::Registered, HotKey{KEY_K, HotKey::Control}},
        {{}, number(0), {}, State::Registered, HotKey{KEY_A, superAlt}},
        // Flags of other keys, such as Caps Lock, do not count.
        {{}, {}, number(0x10000 | ControlModifier), State::Registered, HotKey{KEY_X, HotKey::Control}},
        // A text where a number belongs is as good as nothing.
        {{}, DefaultsValue(u"k"_s), {}, State::Registered, HotKey{KEY_X, superAlt}},
        {{}, number(-1), {}, State::Refused, {}},
        {{}, number(qint64(1) << 40), {}, State::Refused, {}},
        {{}, {}, number(-5), State::Refused, {}},
        {{}, {}, number(qint64(1) << 33), State::Refused, {}},
        {{}, number(52), {}, State::Refused, {}},
        // Nobody could type an X any more.
        {{}, {}, number(ShiftModifier), State::Refused, {}},
        {{}, {}, number(0x10000), State::Refused, {}},
    };
    for (const auto &c : cases) {
        ShortcutWorld world;
        if (c.enabled)
            world.store("GlobalShortcutEnabled", *c.enabled);
        if (c.keyCode)
            world.store("GlobalShortcutKeyCode", *c.keyCode);
        if (c.modifiers)
            world.store("GlobalShortcutModifiers", *c.modifiers);
        world.shortcut.setup();
        EXPECT_EQ(world.shortcut.state(), c.state);
        EXPECT_EQ(world.hotKeys.registered, c.registered);
    }
}

TEST(GlobalShortcut, SaysAndLogsWhatFailed)
{
    struct {
        HotKeyError error;
        GlobalShortcut::State state;
        const char16_t *logged;
    } const cases[] = {
        {{HotKeyError::Kind::HeldByAnother, 10},
         GlobalShortcut::State::HeldByAnother,
         u"Failed to register hot key: 10"},
        {{HotKeyError::Kind::NoSuchKey, 2}, GlobalShortcut::State::NoSuchKey, u"Failed to register hot key: 2"},
        {{HotKeyError::Kind::Unavailable, 0},
         GlobalShortcut::State::Unavailable,
         u"Failed to install hot key event handler: 0"},
    };
    for (const auto &c : cases) {
        ShortcutWorld world;
        world.hotKeys.refusal = c.error;
        LogCapture log;
        world.shortcut.setup();
        EXPECT_EQ(world.shortcut.state(), c.state);
        EXPECT_TRUE(log.contains(u"GlobalShortcut: "_s + QString::fromUtf16(c.logged)));
    }
    ShortcutWorld world;
    world.shortcut.setup();
    emit world.hotKeys.hotKeyLost({HotKeyError::Kind::HeldByAnother, 10});
    EXPECT_EQ(world.shortcut.state(), GlobalShortcut::State::HeldByAnother);
    emit world.hotKeys.hotKeyFound();
    EXPECT_EQ(world.shortcut.state(), GlobalShortcut::State::Registered);
}

TEST(GlobalShortcut, FollowsAnotherProcessUnlessItIsWithdrawn)
{
    ShortcutWorld world;
    int changes = 0;
    QObject::connect(&world.notifications, &Notifications::globalShortcutChanged, [&changes] { ++changes; });
    world.shortcut.setup();
    world.defaults.otherProcessWrites(u"GlobalShortcutKeyCode"_s, qint64(40));
    world.defaults.announceOutsideChanges();
    EXPECT_EQ(changes, 1);
    world.shortcut.remove();
    world.defaults.otherProcessWrites(u"GlobalShortcutKeyCode"_s, qint64(37));
    world.defaults.announceOutsideChanges();
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(world.hotKeys.registered);
}

TEST(MenuBarManager, TheHotKeyOpensOneMenuAtAPress)
{
    ShortcutWorld world;
    world.manager.setupMenuBar();
    world.shortcut.setup();
    world.clock.advance(10s);
    const auto press = [&world] {
        world.presenter.placement = {};
        world.hotKeys.userPresses();
        return world.presenter.placement.position == QPoint(300, 400);
    };
    EXPECT_TRUE(press());
    EXPECT_FALSE(press()) << "its own menu is open";
    world.workspace.focused = 9;
    world.presenter.userChooses({});
    EXPECT_EQ(world.workspace.focusRequests.last(), 7U) << "the window that had the focus before";
    world.clock.advance(199ms);
    EXPECT_FALSE(press());
    world.clock.advance(1ms);
    EXPECT_TRUE(press());
    world.presenter.userChooses({});
    world.clock.advance(1s);
    world.statusItem.userClicks({10, 20});
    EXPECT_FALSE(press()) << "the menu of the icon is open";
    EXPECT_EQ(world.presenter.placement.position, QPoint());
    world.presenter.userPressesBeside();
    world.clock.setNow(world.clock.now() + -3600.0); // the clock was set back
    EXPECT_TRUE(press());
}

} // namespace
} // namespace orvelle::test
