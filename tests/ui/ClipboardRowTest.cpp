#include "base/Text.h"
#include "support/FakePasteboard.h"
#include "ui/UiWorld.h"
#include "ui/menu/MenuPopup.h"
#include "ui/menu/rows/ClipboardRowView.h"
#include "ui/settings/ClipboardSection.h"
#include "widgets/clipboard/ClipboardManager.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

class ClipboardRowTest : public testing::Test
{
protected:
    ClipboardRowTest()
    {
        popup.setWidgetRowFactory([this](WidgetType, QWidget *parent) {
            return new ClipboardRowView(
                manager, world.notifications, [this] { popup.close(); }, parent);
        });
        manager.setEnabled(true);
    }
    void copy(const QList<PasteboardItem> &forms)
    {
        pasteboard.otherAppCopies(forms);
        manager.checkNow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !manager.isReading(); }));
    }
    void copy(const QString &text) { copy({{Pasteboard::textType(), text.toUtf8()}}); }
    void open()
    {
        MenuEntry link;
        link.title = u"Link"_s;
        MenuEntry clipboard;
        clipboard.kind = MenuEntry::Kind::Widget;
        clipboard.widget = WidgetType::Clipboard;
        popup.present({{link, clipboard, link}}, {{10, 10}, true}, {});
        QApplication::processEvents();
    }
    MenuPanel &panel() const { return *popup.panels().constFirst(); }
    QWidget *row() const { return panel().rowWidget(1); }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *receiver = panel().focusWidget() ? panel().focusWidget() : &panel();
        QTest::keyClick(receiver, static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
    }
    static QString focused()
    {
        const QWidget *widget = QApplication::focusWidget();
        return widget && !widget->isWindow() ? widget->accessibleName() : QString();
    }

    UiWorld world;
    FakePasteboard pasteboard{world.clock};
    ClipboardCache cache{{world.folder.path()}};
    ClipboardManager manager{{world.defaults, world.debugMode, world.notifications, world.powerEvents, world.clock,
                              pasteboard, cache, [](const QByteArray &) { return u"rich"_s; }}};
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>(); }};
};

TEST_F(ClipboardRowTest, KeysGoThroughTheLinesAndOn)
{
    copy(u"one\nmore"_s);
    copy(u"two"_s);
    open();
    struct {
        int key;
        int row;
        QString focused;
    } const walk[] = {
        {Qt::Key_Down, 0, {}},
        {Qt::Key_Down, 1, u"two"_s},
        {Qt::Key_Down, 1, u"one\u2026"_s},
        {Qt::Key_Right, 1, text("clipboard.forget"_text)},
        {Qt::Key_Up, 1, u"two"_s},
        {Qt::Key_Up, 1, text("clipboard.pause"_text)},
        {Qt::Key_Right, 1, text("clipboard.clear"_text)},
        {Qt::Key_Tab, 1, u"two"_s},
        {Qt::Key_Tab, 1, u"one\u2026"_s},
        {Qt::Key_Down, 2, {}},
        {Qt::Key_Backtab, 1, u"one\u2026"_s},
        {Qt::Key_Delete, 1, u"two"_s},
    };
    for (const auto &step : walk) {
        press(step.key);
        EXPECT_EQ(panel().currentRow(), step.row);
        EXPECT_EQ(focused(), step.focused);
    }
    EXPECT_EQ(manager.clipboardHistory().size(), 1);
    press(Qt::Key_Return);
    EXPECT_FALSE(popup.isOpen());
    EXPECT_EQ(pasteboard.content(u"text/plain"_s), "two");
}

/// What goes wrong here is seen by the sanitizers.
TEST_F(ClipboardRowTest, GoesWithTheFocusInIt)
{
    copy(u"one"_s);
    QWidget window;
    auto *row = new ClipboardRowView(
        manager, world.notifications, [] {}, &window);
    window.show();
    window.activateWindow();
    row->setFocus(Qt::OtherFocusReason);
    ASSERT_TRUE(QTest::qWaitFor([row] { return row->hasFocus(); }));
    delete row;
    EXPECT_FALSE(QApplication::focusWidget());
}

TEST_F(ClipboardRowTest, ShiftPastesAsPlainText)
{
    copy({{u"text/rtf"_s, "{}"}, {u"text/plain"_s, "plain"}});
    for (const auto modifiers : {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier)}) {
        open();
        press(Qt::Key_End);
        press(Qt::Key_Up);
        press(Qt::Key_Return, modifiers);
        EXPECT_EQ(pasteboard.content(u"text/rtf"_s).isEmpty(), modifiers == Qt::ShiftModifier);
        EXPECT_EQ(pasteboard.content(u"text/plain"_s), "plain");
        EXPECT_FALSE(popup.isOpen());
    }
}

TEST_F(ClipboardRowTest, ClicksRestoreForgetPauseAndClear)
{
    copy(u"one"_s);
    copy({{u"application/x-color"_s, "x"}});
    open();
    const auto lines = [this] { return row()->findChildren<ClipboardEntryButton *>(); };
    const auto lineOf = [&](const QString &name) {
        const QList<ClipboardEntryButton *> all = lines();
        return *std::ranges::find(all, name, &QWidget::accessibleName);
    };
    QTest::mouseClick(lineOf(text("clipboard.typeOther"_text)), Qt::LeftButton);
    EXPECT_TRUE(popup.isOpen()) << "there is nothing to restore";

    const int height = row()->height();
    copy(u"while it is open"_s);
    QApplication::processEvents();
    EXPECT_GT(row()->height(), height);
    ClipboardEntryButton *line = lineOf(u"while it is open"_s);
    line->setFocus();
    QTest::mouseClick(line->findChild<QWidget *>(u"forget"_s), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(row()->height(), height);
    EXPECT_TRUE(popup.isOpen());

    QTest::mouseClick(row()->findChild<QWidget *>(u"pause"_s), Qt::LeftButton);
    EXPECT_TRUE(manager.isPaused());
    EXPECT_EQ(row()->accessibleDescription(), text("clipboard.paused"_text));
    QTest::mouseClick(row()->findChild<QWidget *>(u"clear"_s), Qt::LeftButton);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_EQ(row()->accessibleDescription(), text("clipboard.empty"_text));
}

TEST_F(ClipboardRowTest, ADesktopThatForbidsItIsNotLookedAtAndSaysSo)
{
    manager.setEnabled(false);
    pasteboard.isForbidden = true;
    manager.setEnabled(true);
    pasteboard.asked.clear();
    pasteboard.otherAppCopies(u"unseen"_s);
    manager.checkNow();
    world.clock.advance(std::chrono::minutes(5));
    EXPECT_EQ(pasteboard.asked, QStringList());
    open();
    EXPECT_EQ(row()->accessibleDescription(), text("clipboard.forbidden"_text));
    EXPECT_TRUE(row()->findChild<QWidget *>(u"pause"_s)->isHidden());
    const ClipboardSection section(manager, world.notifications, nullptr);
    QStringList said;
    for (const QLabel *label : section.findChildren<QLabel *>())
        said += label->text();
    EXPECT_TRUE(said.contains(text("clipboard.forbiddenHint"_text)));
}

TEST_F(ClipboardRowTest, SettingsWriteWhatIsChosen)
{
    ClipboardSection section(manager, world.notifications, nullptr);
    auto *colors = section.findChild<QComboBox *>(u"iconColor"_s);
    EXPECT_EQ(colors->currentText(), text("color.purple"_text));
    colors->setCurrentIndex(0);
    emit colors->activated(0);
    EXPECT_EQ(manager.iconColor(), u"red");
    manager.setIconColor(u"teal"_s);
    EXPECT_EQ(colors->currentIndex(), -1) << "a colour that is not on offer";
    section.findChild<QCheckBox *>(u"menuBarOnly"_s)->click();
    EXPECT_TRUE(manager.menuBarOnly());
    section.findChild<QCheckBox *>(u"enabled"_s)->click();
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(colors->isEnabled());
}

} // namespace
} // namespace orvelle::test
