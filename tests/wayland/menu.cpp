#include "platform/freedesktop/ActivationToken.h"
#include "wayland/MenuFixture.h"

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

TEST_F(WaylandMenu, OpensAtThePointerAndAClickChooses)
{
    const QPoint place(400, 300);
    openAt(place);
    ASSERT_EQ(popup.panels().size(), 1);
    const QRect panel = popup.panels().constFirst()->geometry();
    EXPECT_LT((panel.topLeft() - place).manhattanLength(), 20);
    EXPECT_LT(panel.height(), 200) << "not over the whole screen";

    pointer.moveTo(middleOf(0, 1));
    EXPECT_TRUE(waitFor([this] { return popup.panels().constFirst()->currentRow() == 1; }));
    pointer.press();
    pointer.release();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"two"_s).action);
    EXPECT_FALSE(popup.isOpen());
}

TEST_F(WaylandMenu, HandsTheFocusOnToWhatIsChosen)
{
    spendActivationToken();
    openAt({400, 300});
    popup.close();
    ASSERT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(spendActivationToken(), "") << "nothing was pressed";
    openAt({400, 300});
    pointer.moveTo(middleOf(0, 1));
    pointer.press();
    pointer.release();
    ASSERT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"two"_s).action);
    EXPECT_NE(spendActivationToken(), "");
}

TEST_F(WaylandMenu, StaysOnTheScreen)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    openAt({screen.width() - 3, screen.height() - 3});
    const QRect panel = popup.panels().constFirst()->geometry();
    EXPECT_TRUE(QRect({}, screen).contains(panel)) << panel.x() << "," << panel.y();
}

TEST_F(WaylandMenu, APressBesideItClosesIt)
{
    openAt({400, 300});
    pointer.moveTo({20, 20});
    pointer.press();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    pointer.release();
    EXPECT_EQ(chosen->kind, MenuAction::Kind::None);
}

TEST_F(WaylandMenu, SubmenusOpenBesideTheirRow)
{
    openAt({400, 300});
    pointer.moveTo(middleOf(0, 2));
    ASSERT_TRUE(waitFor([this] { return popup.panels().size() == 2; }));
    EXPECT_FALSE(popup.panels().at(0)->geometry().adjusted(8, 0, -8, 0).intersects(popup.panels().at(1)->geometry()));
    pointer.moveTo(middleOf(1, 0));
    pointer.press();
    pointer.release();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"inner"_s).action);
}

TEST_F(WaylandMenu, HasTheKeyboard)
{
    const struct {
        QStringList keys;
        MenuAction expected;
    } cases[] = {
        {{u"Down"_s, u"Down"_s, u"Return"_s}, entry(u"two"_s).action},
        {{u"Up"_s, u"Right"_s, u"Return"_s}, entry(u"inner"_s).action},
        {{u"t"_s, u"Return"_s}, entry(u"two"_s).action},
        {{u"Escape"_s}, {}},
    };
    for (const auto &each : cases) {
        openAt({400, 300});
        type(each.keys);
        ASSERT_TRUE(waitFor([this] { return chosen.has_value(); })) << qPrintable(each.keys.join(u' '));
        EXPECT_EQ(chosen, each.expected) << qPrintable(each.keys.join(u' '));
    }
}

TEST_F(WaylandMenu, OpensAgainAndAgain)
{
    for (int i = 0; i < 20; ++i) {
        openAt({100 + 10 * i, 100});
        popup.close();
        ASSERT_TRUE(waitFor([this] { return chosen.has_value(); })) << i;
    }
}

} // namespace
} // namespace orvelle::test
