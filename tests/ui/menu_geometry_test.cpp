#include "ui/menu/MenuGeometry.h"

#include <gtest/gtest.h>

namespace orvelle {
namespace {

// A screen of 1000 x 800 whose panel of 30 pixels is at the named edge.
const QRect panelAtBottom(0, 0, 1000, 770);
const QRect panelAtTop(0, 30, 1000, 770);
const QRect panelAtLeft(30, 0, 970, 800);
const QRect secondScreen(1000, 100, 600, 400);

struct PlacementCase {
    const char *situation;
    QSize size;
    MenuPlacement placement;
    QRect available;
    bool rightToLeft;
    MenuFrame expected;
};

TEST(MenuGeometryTest, OpensClearOfThePanelAndOnTheScreen)
{
    const PlacementCase cases[] = {
        {"icon in a panel at the bottom",
         {200, 300},
         {{500, 785}, true},
         panelAtBottom,
         false,
         {{500, 470, 200, 300}, true}},
        {"icon in a panel at the top", {200, 300}, {{500, 15}, true}, panelAtTop, false, {{500, 30, 200, 300}, false}},
        {"icon at the right end", {200, 300}, {{990, 15}, true}, panelAtTop, false, {{800, 30, 200, 300}, false}},
        {"icon in a panel at the left",
         {200, 300},
         {{15, 700}, true},
         panelAtLeft,
         false,
         {{30, 500, 200, 300}, false}},
        {"icon of a panel that reserves no room",
         {200, 300},
         {{500, 780}, true},
         {0, 0, 1000, 800},
         false,
         {{500, 480, 200, 300}, true}},
        {"more rows than the screen holds",
         {200, 9000},
         {{500, 785}, true},
         panelAtBottom,
         false,
         {{500, 0, 200, 770}, true}},
        {"wider than the screen", {2000, 300}, {{500, 15}, true}, panelAtTop, false, {{0, 30, 1000, 300}, false}},
        {"right to left", {200, 300}, {{500, 15}, true}, panelAtTop, true, {{300, 30, 200, 300}, false}},
        {"pointer with room below",
         {200, 300},
         {{100, 100}, false},
         panelAtBottom,
         false,
         {{100, 100, 200, 300}, false}},
        {"pointer near the lower edge",
         {200, 300},
         {{100, 700}, false},
         panelAtBottom,
         false,
         {{100, 400, 200, 300}, true}},
        {"pointer, room on neither side",
         {200, 600},
         {{100, 400}, false},
         panelAtBottom,
         false,
         {{100, 170, 200, 600}, true}},
        {"pointer on another screen",
         {200, 300},
         {{1590, 110}, false},
         secondScreen,
         false,
         {{1400, 110, 200, 300}, false}},
    };
    for (const PlacementCase &each : cases) {
        const MenuFrame frame = menuGeometry(each.size, each.placement, each.available, each.rightToLeft);
        EXPECT_EQ(frame.rect, each.expected.rect) << each.situation;
        EXPECT_EQ(frame.upwards, each.expected.upwards) << each.situation;
    }
}

TEST(MenuGeometryTest, SubmenuFlipsAtTheEdge)
{
    const QRect screen(0, 0, 1000, 800);
    struct {
        const char *situation;
        QSize size;
        QRect parent;
        QRect row;
        bool rightToLeft;
        QRect expected;
    } const cases[] = {
        {"room beside", {200, 100}, {100, 100, 200, 300}, {101, 150, 198, 24}, false, {298, 146, 200, 100}},
        {"parent at the right edge",
         {200, 100},
         {800, 100, 200, 300},
         {801, 150, 198, 24},
         false,
         {602, 146, 200, 100}},
        {"right to left", {200, 100}, {400, 100, 200, 300}, {401, 150, 198, 24}, true, {202, 146, 200, 100}},
        {"right to left at the left edge",
         {200, 100},
         {50, 100, 200, 300},
         {51, 150, 198, 24},
         true,
         {248, 146, 200, 100}},
        {"last row of a tall screen",
         {200, 400},
         {100, 500, 200, 300},
         {101, 770, 198, 24},
         false,
         {298, 400, 200, 400}},
    };
    for (const auto &each : cases)
        EXPECT_EQ(submenuGeometry(each.size, each.parent, each.row, 4, screen, each.rightToLeft), each.expected)
            << each.situation;
}

TEST(MenuGeometryTest, GrowingKeepsTheEdgeTheMenuHangsFrom)
{
    const QRect screen(0, 0, 1000, 800);
    EXPECT_EQ(resizedGeometry({{10, 100, 200, 300}, false}, 400, screen), QRect(10, 100, 200, 400));
    EXPECT_EQ(resizedGeometry({{10, 400, 200, 300}, true}, 400, screen), QRect(10, 300, 200, 400));
    EXPECT_EQ(resizedGeometry({{10, 500, 200, 300}, false}, 900, screen), QRect(10, 0, 200, 800));
}

TEST(MenuGeometryTest, TellsAPointerOnItsWayToTheSubmenu)
{
    const QRect submenu(300, 100, 200, 300);
    EXPECT_TRUE(movesTowards({200, 120}, {220, 150}, submenu));
    EXPECT_FALSE(movesTowards({200, 120}, {200, 150}, submenu)) << "straight down the rows";
    EXPECT_FALSE(movesTowards({200, 120}, {190, 130}, submenu)) << "away";
    EXPECT_FALSE(movesTowards({200, 120}, {210, 300}, submenu)) << "too steep";
    EXPECT_TRUE(movesTowards({600, 120}, {580, 150}, submenu)) << "submenu on the left";
}

} // namespace
} // namespace orvelle
