#include "platform/OverlayShell.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuPopup.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>

#include <gtest/gtest.h>

#include <optional>

namespace orvelle {
namespace {
using namespace Qt::StringLiterals;

MenuEntry item(const QString &title)
{
    MenuEntry entry;
    entry.title = title;
    entry.action = {MenuAction::Kind::OpenLink, QUuid::createUuidV5(QUuid(), title)};
    return entry;
}

MenuEntry ofKind(MenuEntry::Kind kind, const QString &title = {})
{
    MenuEntry entry;
    entry.kind = kind;
    entry.title = title;
    return entry;
}

MenuEntry disabled(const QString &title)
{
    MenuEntry entry = item(title);
    entry.enabled = false;
    return entry;
}

/// A screen that can be unplugged.
struct FakeShell : OverlayShell {
    std::function<void()> taken;

    bool isAvailable() const override { return true; }
    bool cover(QWindow &, std::function<void()> whenTaken) override
    {
        taken = std::move(whenTaken);
        return true;
    }
    void letGo(QWindow &) override {}
    void uncover(QWindow &) override {}
};

class MenuPopupTest : public ::testing::Test
{
protected:
    void open(const QList<MenuEntry> &entries)
    {
        popup.present({entries}, {{10, 10}, true}, [this](MenuAction action) { chosen = action; });
    }

    void press(int key, const QString &typed = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, typed);
        event.setTimestamp(milliseconds);
        QApplication::sendEvent(popup.panels().constLast(), &event);
    }

    QString current() const
    {
        const QList<MenuPanel *> panels = popup.panels();
        for (auto it = panels.crbegin(); it != panels.crend(); ++it) {
            if ((*it)->currentRow() >= 0)
                return (*it)->rows().at((*it)->currentRow()).title;
        }
        return {};
    }

    int filled = 0;
    quint64 milliseconds = 10000;
    std::optional<MenuAction> chosen;
    FakeShell shell; ///< used by some
    MenuPopup popup{[this](const MenuEntry &submenu) {
        ++filled;
        return QList<MenuEntry>{item(submenu.title + u" 1"_s), item(submenu.title + u" 2"_s)};
    }};
};

TEST_F(MenuPopupTest, ArrowsSkipWhatCannotBeChosenAndGoRound)
{
    open({disabled(u"off"_s), item(u"a"_s), ofKind(MenuEntry::Kind::Separator), item(u"b"_s)});
    struct {
        int key;
        const char *expected;
    } const walk[] = {{Qt::Key_Down, "a"}, {Qt::Key_Down, "b"}, {Qt::Key_Down, "a"},  {Qt::Key_Up, "b"},
                      {Qt::Key_Home, "a"}, {Qt::Key_End, "b"},  {Qt::Key_PageUp, "a"}};
    for (const auto &step : walk) {
        press(step.key);
        EXPECT_EQ(current(), QLatin1String(step.expected));
    }
}

TEST_F(MenuPopupTest, ReportsTheChoiceAfterTheMenuIsGone)
{
    open({item(u"a"_s), item(u"b"_s)});
    press(Qt::Key_End);
    press(Qt::Key_Return);
    EXPECT_FALSE(popup.isOpen());
    EXPECT_FALSE(chosen) << "told before the event loop ran";
    QApplication::processEvents();
    ASSERT_TRUE(chosen);
    EXPECT_EQ(*chosen, item(u"b"_s).action);
}

TEST_F(MenuPopupTest, ANewMenuClosesTheOpenOneWithoutAChoice)
{
    open({item(u"a"_s)});
    std::optional<MenuAction> second;
    popup.present({{item(u"b"_s)}}, {{10, 10}, false}, [&](MenuAction action) { second = action; });
    QApplication::processEvents();
    EXPECT_EQ(chosen, MenuAction());
    EXPECT_FALSE(second);
    EXPECT_TRUE(popup.isOpen());
    popup.close();
    QApplication::processEvents();
    EXPECT_EQ(second, MenuAction());
}

TEST_F(MenuPopupTest, TheMenuGoesWithItsScreenAndOpensOnTheNext)
{
    popup.setOverlayShell(&shell);
    for (const char *screen : {"the first", "the next"}) {
        chosen.reset();
        open({item(u"a"_s)});
        EXPECT_EQ(popup.panels().size(), 1) << screen;
        std::exchange(shell.taken, nullptr)();
        QCoreApplication::processEvents();
        EXPECT_TRUE(popup.panels().isEmpty()) << screen;
        EXPECT_TRUE(chosen.has_value()) << screen << ": whoever opened it is told";
    }
}

TEST_F(MenuPopupTest, SubmenusFillWhenOpenedAndCloseOneByOne)
{
    open({ofKind(MenuEntry::Kind::Submenu, u"g"_s), ofKind(MenuEntry::Kind::Submenu, u"h"_s)});
    press(Qt::Key_Down);
    EXPECT_EQ(filled, 0);
    press(Qt::Key_Right);
    EXPECT_EQ(filled, 1);
    EXPECT_EQ(current(), u"g 1"_s);
    press(Qt::Key_Left);
    EXPECT_EQ(popup.panels().size(), 1);
    EXPECT_EQ(current(), u"g"_s);
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    EXPECT_EQ(popup.panels().size(), 1);
    press(Qt::Key_Escape);
    EXPECT_FALSE(popup.isOpen());
}

TEST_F(MenuPopupTest, DisabledRowsKeepTheMenuOpen)
{
    open({disabled(u"none"_s)});
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(popup.isOpen());
}

TEST_F(MenuPopupTest, TabAndArrowsReachTheButtonsOfTheBottomRow)
{
    open({item(u"a"_s), ofKind(MenuEntry::Kind::BottomRow)});
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    EXPECT_EQ(popup.panels().constFirst()->currentButton(), 1);
    press(Qt::Key_Right);
    EXPECT_EQ(popup.panels().constFirst()->currentButton(), 2);
    press(Qt::Key_Tab);
    EXPECT_EQ(current(), u"a"_s);
    press(Qt::Key_Backtab);
    EXPECT_EQ(popup.panels().constFirst()->currentButton(), 2);
    press(Qt::Key_Space);
    QApplication::processEvents();
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->kind, MenuAction::Kind::OpenSettings);
}

TEST_F(MenuPopupTest, TypingFindsNamesWithoutCaseAndAccents)
{
    open({item(u"Zoo"_s), item(u"Étoile"_s), disabled(u"etude"_s), item(u"Etna"_s), item(u"& more"_s)});
    struct {
        const char *typed;
        quint64 pause;
        const char16_t *expected;
    } const cases[] = {
        {"e", 5000, u"Étoile"}, {"t", 200, u"Étoile"}, {"n", 200, u"Etna"},    {"z", 1500, u"Zoo"},
        {"e", 1500, u"Étoile"}, {"e", 100, u"Etna"},   {"&", 1500, u"& more"}, {"q", 1500, u"& more"},
    };
    for (const auto &each : cases) {
        milliseconds += each.pause;
        press(Qt::Key_A, QString::fromLatin1(each.typed));
        EXPECT_EQ(current(), QString::fromUtf16(each.expected)) << each.typed;
    }
}

TEST_F(MenuPopupTest, ABlankGoesOnWithANameAndElseChooses)
{
    open({item(u"Salt"_s), item(u"Salt & pepper"_s)});
    for (const QChar c : u"salt &"_s)
        press(c == u' ' ? int(Qt::Key_Space) : int(Qt::Key_A), c);
    ASSERT_TRUE(popup.isOpen());
    EXPECT_EQ(current(), u"Salt & pepper"_s);
    milliseconds += 1500;
    press(Qt::Key_Space, u" "_s);
    QApplication::processEvents();
    ASSERT_TRUE(chosen);
    EXPECT_EQ(*chosen, item(u"Salt & pepper"_s).action);
}

TEST_F(MenuPopupTest, WhatWasTypedBeforeAnotherKeyIsForgotten)
{
    open({item(u"x"_s), ofKind(MenuEntry::Kind::Submenu, u"Group"_s)});
    press(Qt::Key_G, u"g"_s);
    press(Qt::Key_Shift);
    press(Qt::Key_R, u"r"_s);
    EXPECT_EQ(current(), u"Group"_s);
    press(Qt::Key_Right);
    ASSERT_EQ(current(), u"Group 1"_s);
    for (const QChar c : u"group 2"_s)
        press(c == u' ' ? int(Qt::Key_Space) : int(Qt::Key_A), c);
    EXPECT_EQ(current(), u"Group 2"_s);
}

TEST_F(MenuPopupTest, TenThousandRowsScrollToTheEnd)
{
    QList<MenuEntry> entries;
    for (int i = 0; i < 10000; ++i)
        entries.append(item(u"Link %1"_s.arg(i)));
    open(entries);
    MenuPanel &panel = *popup.panels().constFirst();
    press(Qt::Key_End);
    EXPECT_EQ(current(), u"Link 9999"_s);
    EXPECT_EQ(panel.scrollOffset(), panel.maximumScroll());
    EXPECT_TRUE(panel.screen()->availableGeometry().contains(panel.geometry()));
    press(Qt::Key_PageUp);
    EXPECT_LT(panel.currentRow(), 9990);
    EXPECT_TRUE(panel.rect().contains(panel.rowRect(panel.currentRow())));
}

TEST_F(MenuPopupTest, LongNamesElideInTheMiddleAndTellTheWholeName)
{
    const QString name = u"begin "_s + QString(100000, u'x') + u" end"_s;
    open({item(name), item(u"R&D\nnotes"_s)});
    const MenuPanel &panel = *popup.panels().constFirst();
    EXPECT_LE(panel.width(), MenuLook::maximumWidth + 2 * panel.look().sideFrame());
    const QString shown = panel.look().elidedTitle(panel.rows().at(0), panel.rowRect(0));
    EXPECT_TRUE(shown.startsWith(u"begin"_s) && shown.endsWith(u"end"_s)) << qPrintable(shown);
    EXPECT_EQ(panel.hiddenTitle(0), name);
    EXPECT_EQ(panel.look().elidedTitle(panel.rows().at(1), panel.rowRect(1)), u"R&D notes"_s);
}

TEST_F(MenuPopupTest, AWidgetRowThatGrowsKeepsTheRowsAboveInPlace)
{
    QLabel *label = nullptr;
    popup.setWidgetRowFactory([&](WidgetType, QWidget *parent) {
        label = new QLabel(u"one"_s, parent);
        return label;
    });
    MenuEntry widget = ofKind(MenuEntry::Kind::Widget);
    widget.widget = WidgetType::Timer;
    open({item(u"a"_s), widget, item(u"b"_s)});
    MenuPanel &panel = *popup.panels().constFirst();
    const QPoint place = panel.pos();
    const int before = panel.rowRect(2).y();
    label->setFixedHeight(120);
    QApplication::processEvents();
    EXPECT_EQ(panel.pos(), place);
    EXPECT_GT(panel.rowRect(2).y(), before);
    EXPECT_EQ(panel.height(), panel.wantedSize().height());
    EXPECT_EQ(label->geometry(), panel.rowRect(1));
}

TEST_F(MenuPopupTest, RowsAndButtonsAreNamedForAssistiveTechnology)
{
    open({item(u"a"_s), ofKind(MenuEntry::Kind::Submenu, u"g"_s), disabled(u"off"_s),
          ofKind(MenuEntry::Kind::BottomRow)});
    QAccessibleInterface *menu = QAccessible::queryAccessibleInterface(popup.panels().constFirst());
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->role(), QAccessible::PopupMenu);
    ASSERT_EQ(menu->childCount(), 6);
    EXPECT_EQ(menu->child(1)->text(QAccessible::Name), u"g"_s);
    EXPECT_TRUE(menu->child(1)->state().hasPopup);
    EXPECT_TRUE(menu->child(2)->state().disabled);
    EXPECT_EQ(menu->child(4)->text(QAccessible::Name), BottomRowView::name(1));
    menu->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QApplication::processEvents();
    QApplication::processEvents();
    ASSERT_TRUE(chosen);
    EXPECT_EQ(*chosen, item(u"a"_s).action);
}

TEST(BottomRowTest, ShortLabelsServeANarrowMenu)
{
    const QFontMetrics font{QFont()};
    const QRect wide(0, 0, 2000, 30);
    const auto roomy = BottomRowView::buttons(wide, font, false);
    EXPECT_EQ(roomy[0].label, BottomRowView::name(0));
    EXPECT_LT(roomy[0].rect.x(), roomy[2].rect.x());
    const QRect narrow(0, 0, BottomRowView::preferredWidth(font), 30);
    const auto tight = BottomRowView::buttons(narrow, font, true);
    EXPECT_EQ(tight[0].label, text("menu.newLinkShort"_text));
    EXPECT_EQ(tight[1].label, text("menu.newNoteShort"_text));
    EXPECT_EQ(tight[2].label, BottomRowView::name(2));
    EXPECT_GT(tight[0].rect.x(), tight[2].rect.x()) << "mirrored";
    EXPECT_EQ(tight[2].rect.x(), 0);
}

} // namespace
} // namespace orvelle
