#include "ui/settings/ShortcutSection.h"

#include "base/Text.h"
#include "menubar/GlobalShortcut.h"
#include "support/FakeHotKeys.h"
#include "ui/UiWorld.h"
#include "ui/settings/ShortcutRecorderView.h"

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// The section over a keyboard, with what MenuBarManager does about it.
class ShortcutSectionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Notifications &n = world.notifications;
        QObject::connect(&n, &Notifications::globalShortcutChanged, &n, [this] {
            shortcut.remove();
            shortcut.setup();
        });
        QObject::connect(&n, &Notifications::shortcutRecordingChanged, &n,
                         [this](bool recording) { recording ? shortcut.remove() : shortcut.setup(); });
        shortcut.setup();
        section.show();
        section.activateWindow();
        QApplication::processEvents();
    }
    ShortcutRecorderView &recorder() { return *section.findChild<ShortcutRecorderView *>(); }
    QString remark() { return section.findChild<QLabel *>(u"shortcutRemark"_s)->text(); }
    /// By its place on the keyboard; `key` is what the layout makes of it.
    void press(int place, Qt::KeyboardModifiers modifiers, int key = Qt::Key_unknown)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, quint32(place + 8), 0, 0);
        QApplication::sendEvent(&recorder(), &event);
    }
    void record(int place, Qt::KeyboardModifiers modifiers)
    {
        QTest::mouseClick(&recorder(), Qt::LeftButton);
        press(place, modifiers);
    }
    std::optional<qint64> stored(const char *key) { return world.defaults.get<qint64>(QString::fromLatin1(key)); }

    UiWorld world;
    FakeHotKeys hotKeys;
    GlobalShortcut shortcut{{world.defaults, world.notifications, hotKeys}};
    ShortcutSection section{shortcut, world.notifications};
};

TEST_F(ShortcutSectionTest, TakesTheFirstKeyWithCommandOrControl)
{
    struct {
        int place;
        Qt::KeyboardModifiers modifiers;
        bool taken;
        qint64 keyCode;
        qint64 flags;
        bool warned;
    } const cases[] = {
        {KEY_K, Qt::AltModifier, false, 0, 0, false},
        {KEY_K, Qt::ShiftModifier | Qt::AltModifier, false, 0, 0, false},
        {KEY_K, {}, false, 0, 0, false},
        {KEY_LEFTMETA, Qt::MetaModifier, false, 0, 0, false},
        {KEY_K, Qt::ControlModifier, true, 40, ControlModifier, false},
        {KEY_C, Qt::MetaModifier, true, 8, CommandModifier, true},
        {KEY_BACKSPACE, Qt::ControlModifier, true, 51, ControlModifier, false},
        {KEY_TAB, Qt::MetaModifier | Qt::AltModifier, true, 48, CommandModifier | OptionModifier, false},
        // The place counts, and not that this layout has an A there.
        {KEY_Q, Qt::MetaModifier | Qt::ControlModifier, true, 12, CommandModifier | ControlModifier, false},
    };
    for (const auto &c : cases) {
        QTest::mouseClick(&recorder(), Qt::LeftButton);
        EXPECT_FALSE(hotKeys.registered) << "its own combination is to reach the recorder";
        press(c.place, c.modifiers, Qt::Key_A);
        EXPECT_EQ(recorder().isRecording(), !c.taken);
        if (c.taken) {
            EXPECT_EQ(stored("GlobalShortcutKeyCode"), c.keyCode);
            EXPECT_EQ(stored("GlobalShortcutModifiers"), c.flags);
            EXPECT_EQ(hotKeys.registered->key, c.place);
        }
        EXPECT_EQ(!remark().isEmpty(), c.warned);
        recorder().stopRecording();
    }
}

TEST_F(ShortcutSectionTest, EscapeAndLeavingKeepTheOldShortcut)
{
    record(KEY_ESC, Qt::ControlModifier);
    EXPECT_FALSE(recorder().isRecording());
    QTest::mouseClick(&recorder(), Qt::LeftButton);
    section.findChild<QCheckBox *>()->setFocus();
    EXPECT_FALSE(recorder().isRecording());
    QTest::mouseClick(&recorder(), Qt::LeftButton);
    section.hide();
    EXPECT_FALSE(recorder().isRecording());
    EXPECT_EQ(stored("GlobalShortcutKeyCode"), std::nullopt);
    EXPECT_EQ(hotKeys.registered->key, KEY_X);
}

TEST_F(ShortcutSectionTest, IsReachedAndStartedByTheKeyboard)
{
    section.findChild<QCheckBox *>()->setFocus();
    QTest::keyClick(section.focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(section.focusWidget(), &recorder());
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        QTest::keyClick(&recorder(), key);
        EXPECT_TRUE(recorder().isRecording());
        press(KEY_TAB, Qt::NoModifier, Qt::Key_Tab);
        EXPECT_TRUE(recorder().isRecording()) << "Tab does not leave while it records";
        press(KEY_ESC, Qt::NoModifier);
        EXPECT_FALSE(recorder().isRecording());
    }
}

TEST_F(ShortcutSectionTest, SaysWhatTheDesktopDecides)
{
    const auto spoken = [this] {
        QStringList said;
        for (const QLabel *label : section.findChildren<QLabel *>())
            said += label->text();
        return said.join(u'|');
    };
    hotKeys.refusal = HotKeyError{HotKeyError::Kind::Undecided, 0};
    record(KEY_K, Qt::ControlModifier);
    EXPECT_EQ(remark(), text("shortcut.undecided"_text));
    hotKeys.userAllows(u"Press <Ctrl>j"_s);
    EXPECT_EQ(remark(), QString());
    EXPECT_TRUE(spoken().contains(text("shortcut.desktopTrigger %@"_text, u"Press <Ctrl>j"_s)));
    hotKeys.userAllows(u"Press <Ctrl>h"_s);
    EXPECT_TRUE(spoken().contains(u"<Ctrl>h"_s)) << "another one, in the desktop's own settings";
    hotKeys.userRefuses();
    EXPECT_EQ(remark(), text("shortcut.denied"_text));
}

TEST_F(ShortcutSectionTest, SaysWhyItDoesNotWork)
{
    hotKeys.refusal = HotKeyError{HotKeyError::Kind::HeldByAnother, 10};
    record(KEY_C, Qt::MetaModifier);
    EXPECT_EQ(remark(), text("shortcut.heldByAnother"_text)) << "rather than the conflict";
    hotKeys.refusal.reset();
    section.findChild<QToolButton *>(u"shortcutReset"_s)->click();
    EXPECT_EQ(remark(), QString());
    EXPECT_EQ(shortcut.shortcut(), Shortcut());

    section.findChild<QCheckBox *>()->click();
    EXPECT_FALSE(hotKeys.registered);
    EXPECT_FALSE(recorder().isEnabled());
    section.findChild<QCheckBox *>()->click();
    EXPECT_TRUE(hotKeys.registered);

    world.defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    record(KEY_K, Qt::ControlModifier);
    EXPECT_EQ(recorder().shortcut(), Shortcut()) << "what could not be stored is not shown";
}

} // namespace
} // namespace orvelle::test
