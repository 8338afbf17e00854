#include "platform/freedesktop/kde/KdeHotKeys.h"

#include "platform/freedesktop/kde/KdeKeyNumber.h"
#include "support/FakeClock.h"
#include "support/PrivateBus.h"
#include "support/SpinUntil.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = HotKeyError::Kind;

constexpr HotKey superAltX{KEY_X, HotKey::Super | HotKey::Alt};
constexpr int metaAltX = 0x18000058, metaAltY = 0x18000059, ctrlAltM = 0x0c00004d;

/// KDE's service as far as one program sees it: it keeps what the user set
/// when the program has gone.
class ShortcutService : public QDBusVirtualObject
{
public:
    explicit ShortcutService(PrivateBus &bus) : m_bus(bus.connection())
    {
        m_bus.registerVirtualObject(u"/kglobalaccel"_s, this);
        appear();
    }
    ~ShortcutService() override
    {
        disappear();
        m_bus.unregisterObject(u"/kglobalaccel"_s);
    }
    void appear() { EXPECT_TRUE(m_bus.registerService(u"org.kde.kglobalaccel"_s)); }
    void disappear() { m_bus.unregisterService(u"org.kde.kglobalaccel"_s); }

    int standard = 0, stored = 0;
    bool isStored = false, isActive = false;
    QList<int> heldByOthers;
    QStringList action;

    void userSets(int key)
    {
        stored = key;
        const KdeKeySequences keys = key == 0 ? KdeKeySequences() : KdeKeySequences{{{key, 0, 0, 0}}};
        emitSignal(u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, u"yourShortcutsChanged"_s,
                   {action, QVariant::fromValue(keys)});
    }
    void press(const QString &which = KdeHotKeys::actionId()) { emitKey(u"globalShortcutPressed"_s, which); }
    void release() { emitKey(u"globalShortcutReleased"_s, KdeHotKeys::actionId()); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &) override
    {
        action = call.arguments().value(0).toStringList();
        if (call.member() == u"setShortcutKeys")
            return m_bus.send(call.createReply(keys(set(call.arguments()))));
        if (call.member() == u"defaultShortcutKeys")
            return m_bus.send(call.createReply(keys(standard)));
        if (call.member() == u"setInactive")
            isActive = false;
        return m_bus.send(call.createReply());
    }

private:
    static QVariant keys(int key) { return QVariant::fromValue(KdeKeySequences{{{key, 0, 0, 0}}}); }
    int set(const QVariantList &arguments)
    {
        const int key = qdbus_cast<KdeKeySequences>(arguments.value(1)).value(0).keys[0];
        const uint flags = arguments.value(2).toUInt();
        if (flags == 8)
            return standard = key;
        isActive = true;
        if ((flags & 4) != 0 || !isStored)
            stored = heldByOthers.contains(key) ? 0 : key;
        isStored = true;
        return stored;
    }
    void emitKey(const QString &name, const QString &which)
    {
        emitSignal(u"/component/org_orvelle_Orvelle"_s, u"org.kde.kglobalaccel.Component"_s, name,
                   {u"org.orvelle.Orvelle"_s, which, qlonglong(0)});
    }
    void emitSignal(const QString &path, const QString &interface, const QString &name, const QVariantList &arguments)
    {
        auto message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        m_bus.send(message);
    }

    QDBusConnection m_bus;
};

class KdeHotKeysTest : public testing::Test
{
protected:
    /// A program, from its start to its end.
    struct Run {
        explicit Run(KdeHotKeysTest &test)
            : keys({test.bus.connection(), test.clock, u"org.orvelle.Orvelle"_s, u"Orvelle"_s, u"Open it"_s, {}})
        {
            QObject::connect(&keys, &HotKeyService::fired, [this] { ++fired; });
            QObject::connect(&keys, &HotKeyService::hotKeyFound, [this] { ++told, lost.reset(); });
            QObject::connect(&keys, &HotKeyService::hotKeyLost,
                             [this](const HotKeyError &error) { ++told, lost = error.kind; });
        }
        /// Until the desktop has said what comes of it.
        bool wants(const HotKey &key)
        {
            const int before = told;
            EXPECT_EQ(keys.registerHotKey(key)->kind, Kind::Undecided);
            return hears(before + 1);
        }
        bool hears(int news)
        {
            return spinUntil([&] { return told >= news; });
        }
        KdeHotKeys keys;
        int fired = 0, told = 0;
        std::optional<Kind> lost;
    };

    FakeClock clock;
    PrivateBus bus;
};

TEST_F(KdeHotKeysTest, HoldsTheKeyAndFiresOnceForEachPress)
{
    ShortcutService service(bus);
    Run run(*this);
    ASSERT_TRUE(run.wants(superAltX));
    EXPECT_FALSE(run.lost);
    EXPECT_EQ(service.stored, metaAltX);
    EXPECT_EQ(service.action, QStringList({u"org.orvelle.Orvelle"_s, u"toggle-menu"_s, u"Orvelle"_s, u"Open it"_s}));
    EXPECT_TRUE(run.keys.desktopTrigger().isEmpty());

    for (int repeated = 0; repeated < 5; ++repeated) {
        service.press();
        clock.advance(30ms);
    }
    service.press(u"another"_s);
    service.release();
    ASSERT_TRUE(spinUntil([&] { return run.fired > 0; }));
    service.userSets(metaAltY);
    ASSERT_TRUE(run.hears(2)) << "after what was sent before";
    EXPECT_EQ(run.fired, 1);
    service.press();
    EXPECT_TRUE(spinUntil([&] { return run.fired == 2; })) << "it was released";

    run.keys.unregisterHotKey();
    EXPECT_TRUE(spinUntil([&] { return !service.isActive; })) << "else nobody gets the key";
}

TEST_F(KdeHotKeysTest, WhatTheUserSetsInTheSystemCountsUntilAnotherIsAskedForHere)
{
    ShortcutService service(bus);
    {
        Run run(*this);
        ASSERT_TRUE(run.wants(superAltX));
        service.userSets(metaAltY);
        ASSERT_TRUE(run.hears(2));
        EXPECT_EQ(run.keys.desktopTrigger(), u"Meta+Alt+Y"_s);
    }
    ASSERT_TRUE(spinUntil([&] { return !service.isActive; }));
    Run next(*this);
    ASSERT_TRUE(next.wants(superAltX));
    EXPECT_EQ(next.keys.desktopTrigger(), u"Meta+Alt+Y"_s);
    ASSERT_TRUE(next.wants({KEY_M, HotKey::Control | HotKey::Alt}));
    EXPECT_EQ(service.stored, ctrlAltM);
    EXPECT_TRUE(next.keys.desktopTrigger().isEmpty());

    service.userSets(0);
    ASSERT_TRUE(next.hears(3));
    EXPECT_EQ(next.lost, Kind::Denied);
    ASSERT_TRUE(next.wants({KEY_M, HotKey::Control | HotKey::Alt}));
    EXPECT_EQ(next.lost, Kind::Denied) << "it stays removed";
}

TEST_F(KdeHotKeysTest, TriesAgainWhatAnotherProgramHeld)
{
    ShortcutService service(bus);
    service.heldByOthers = {metaAltX};
    Run run(*this);
    ASSERT_TRUE(run.wants(superAltX));
    EXPECT_EQ(run.lost, Kind::HeldByAnother);
    service.heldByOthers.clear();
    ASSERT_TRUE(run.wants(superAltX));
    EXPECT_FALSE(run.lost);
    EXPECT_EQ(service.stored, metaAltX);
}

TEST_F(KdeHotKeysTest, FollowsTheServiceComingAndGoing)
{
    Run run(*this);
    ASSERT_TRUE(run.wants(superAltX));
    EXPECT_EQ(run.lost, Kind::Unavailable);
    ShortcutService service(bus);
    ASSERT_TRUE(run.hears(2));
    EXPECT_FALSE(run.lost);
    service.disappear();
    ASSERT_TRUE(run.hears(3));
    EXPECT_EQ(run.lost, Kind::Unavailable);
    service.appear();
    ASSERT_TRUE(run.hears(4));
    EXPECT_FALSE(run.lost);
    service.press();
    EXPECT_TRUE(spinUntil([&] { return run.fired == 1; }));
}

TEST(KdeKeyNumberTest, IsWhatTheKeyGivesWithItsModifiers)
{
    const HotKey::Modifiers superShift = HotKey::Super | HotKey::Shift;
    const struct {
        HotKey key;
        int expected;
    } cases[]{
        {superAltX, metaAltX},
        {{KEY_X, superShift}, 0x12000058},
        {{KEY_1, HotKey::Super}, 0x10000031},
        {{KEY_1, superShift}, 0x10000021}, // the character, without Shift
        {{KEY_SPACE, superShift}, 0x12000020},
        {{KEY_TAB, superShift}, 0x12000000 | Qt::Key_Tab},
        {{KEY_F5, superShift}, 0x12000000 | Qt::Key_F5},
        {{KEY_ENTER, HotKey::Control}, 0x04000000 | Qt::Key_Return},
        {{KEY_PAGEDOWN, HotKey::Alt}, 0x08000000 | Qt::Key_PageDown},
        {{KEY_KP7, HotKey::Super}, 0x10000037},
        {{KEY_KPDOT, HotKey::Super}, 0x1000002e},
        {{KEY_KPPLUS, HotKey::Super}, 0x1000002b},
        {{600, HotKey::Control}, 0},
    };
    for (const auto &each : cases)
        EXPECT_EQ(kdeKeyNumber(each.key), each.expected) << each.key.key;
}

} // namespace
} // namespace orvelle::test
