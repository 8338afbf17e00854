#include "desktop/tray_tools.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuPopup.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <optional>

namespace orvelle::test {
namespace {
using namespace Qt::StringLiterals;

MenuEntry entry(const QString &title, MenuEntry::Kind kind = MenuEntry::Kind::Item)
{
    MenuEntry result;
    result.kind = kind;
    result.title = title;
    result.action = {MenuAction::Kind::OpenLink, QUuid::createUuidV5(QUuid(), title)};
    return result;
}

/// A menu on a real X server, chosen from with its pointer and keyboard.
class MenuInputTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        bool drawn = false;
        QObject::connect(&popup, &MenuPopup::opened, &popup, [&drawn] { drawn = true; });
        const Menu menu{{entry(u"one"_s), entry(u"group"_s, MenuEntry::Kind::Submenu), entry(u"two"_s),
                         entry({}, MenuEntry::Kind::BottomRow)}};
        popup.present(menu, {{300, 300}, false}, [this](MenuAction action) { chosen = action; });
        ASSERT_TRUE(waitFor([&drawn] { return drawn; }));
        settle();
    }

    QPoint row(int level, int index) const
    {
        const MenuPanel *panel = popup.panels().at(level);
        return panel->mapToGlobal(panel->rowRect(index).center());
    }

    void expectChosen(const MenuAction &action)
    {
        ASSERT_TRUE(waitFor([this] { return chosen.has_value(); }));
        EXPECT_EQ(*chosen, action);
        EXPECT_FALSE(popup.isOpen());
    }

    std::optional<MenuAction> chosen;
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>{entry(u"child"_s)}; }};
};

TEST_F(MenuInputTest, AClickChooses)
{
    clickAt(row(0, 2));
    expectChosen(entry(u"two"_s).action);
}

TEST_F(MenuInputTest, AClickElsewhereClosesWithoutAChoice)
{
    clickAt({20, 20});
    expectChosen({});
}

TEST_F(MenuInputTest, KeysReachTheMenuThoughItTakesNoFocus)
{
    pointer({u"key"_s, u"t"_s, u"Return"_s});
    expectChosen(entry(u"two"_s).action);
}

TEST_F(MenuInputTest, AClickedGroupOpensAndItsChildIsChosen)
{
    clickAt(row(0, 1));
    ASSERT_TRUE(waitFor([this] { return popup.panels().size() == 2; }));
    clickAt(row(1, 0));
    expectChosen(entry(u"child"_s).action);
}

TEST_F(MenuInputTest, AButtonOfTheBottomRowIsClicked)
{
    clickAt(row(0, 3));
    expectChosen({MenuAction::Kind::QuickNote, {}});
}

} // namespace
} // namespace orvelle::test

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
