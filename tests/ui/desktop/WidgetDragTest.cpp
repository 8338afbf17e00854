#include "ui/UiWorld.h"
#include "ui/desktop/Pointer.h"
#include "ui/settings/WidgetOrderList.h"

#include <QTest>

#include <gtest/gtest.h>

namespace orvelle {

using test::drag;

TEST(WidgetDrag, ADraggedRowMovesAndNoneIsLost)
{
    using W = WidgetType;
    test::UiWorld world;
    WidgetOrderList list(world.widgetOrder);
    list.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));
    QTest::qWait(300); // the window manager moves it into place
    const auto middleOf = [&list](int row) {
        return list.viewport()->mapToGlobal(list.visualItemRect(list.item(row)).center());
    };

    ASSERT_TRUE(drag(middleOf(0), middleOf(3)));
    const QList<W> expected{W::QuickLaunch, W::Calendar, W::Clipboard, W::Weather, W::SystemInfo, W::Network, W::Timer};
    EXPECT_TRUE(QTest::qWaitFor([&] { return world.widgetOrder.order() == expected; }));
    QTest::qWait(100); // for a view that takes the row away afterwards
    EXPECT_EQ(list.count(), 7);
    EXPECT_EQ(list.selectedWidget(), W::Clipboard);

    ASSERT_TRUE(drag(middleOf(6), middleOf(0)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return world.widgetOrder.order().front() == W::Timer; }));
    EXPECT_EQ(list.count(), 7);
}

} // namespace orvelle
