#include "menubar/QuickLaunchManager.h"
#include "support/FakeApplications.h"
#include "support/Outline.h"
#include "ui/UiWorld.h"
#include "ui/desktop/Pointer.h"
#include "ui/settings/LinkTreeView.h"
#include "ui/settings/QuickLaunchSlotList.h"
#include "ui/settings/WidgetOrderList.h"

#include <QDrag>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace orvelle {

class ClosingDragTest : public testing::Test
{
protected:
    ClosingDragTest() { EXPECT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true)); }

    /// Closes the window while a row is being dragged about.
    void closeDuringDrag(QAbstractItemView *list)
    {
        SCOPED_TRACE(list->objectName().toStdString());
        const QPointer<QAbstractItemView> view(list);
        const QPointer<QWidget> around(list->window());
        ASSERT_TRUE(around->testAttribute(Qt::WA_DeleteOnClose));
        around->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(around));
        QTest::qWait(300); // the window manager moves it into place
        QTimer untilDragging;
        bool closed = false;
        std::optional<bool> outlived;
        QObject::connect(&untilDragging, &QTimer::timeout, &untilDragging, [&] {
            if (closed && !outlived)
                outlived = !view.isNull();
            else if (!closed && !view->findChildren<QDrag *>().isEmpty())
                closed = around->close();
        });
        untilDragging.start(20);
        const QPoint from = view->visualRect(view->model()->index(0, 0)).topLeft() + QPoint(40, 8);
        ASSERT_TRUE(test::drag(view->viewport()->mapToGlobal(from), view->viewport()->mapToGlobal(QPoint(60, 90))));
        EXPECT_TRUE(closed);
        EXPECT_EQ(outlived, true) << "was deleted under its own drag";
        EXPECT_TRUE(QTest::qWaitFor([&] { return around.isNull(); }));
    }
    static QAbstractItemView *inWindow(QAbstractItemView *list)
    {
        auto *window = new QWidget;
        window->setAttribute(Qt::WA_DeleteOnClose);
        (new QVBoxLayout(window))->addWidget(list);
        return list;
    }

    test::UiWorld world;
    test::FakeApplications applications;
    QuickLaunchManager quickLaunch{{world.defaults, world.debugMode, world.notifications, applications}};
};

TEST_F(ClosingDragTest, ListsOutliveTheClosingOfTheirWindow)
{
    for (const LinkItem &item : test::treeFrom(QStringLiteral("a b c")))
        world.links.addLink(item);
    closeDuringDrag((new SettingsWindow(world.settings()))->findChild<LinkTreeView *>());
    closeDuringDrag(inWindow(new WidgetOrderList(world.widgetOrder)));
    closeDuringDrag(inWindow(new QuickLaunchSlotList(quickLaunch, applications)));
}

} // namespace orvelle
