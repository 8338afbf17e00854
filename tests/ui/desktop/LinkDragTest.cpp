#include "support/Outline.h"
#include "ui/UiWorld.h"
#include "ui/desktop/Pointer.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"

#include <QTest>

#include <gtest/gtest.h>

namespace orvelle {

using test::drag;
using test::idOf;

class LinkDragTest : public testing::Test
{
protected:
    void open(const char *outline)
    {
        ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        for (const LinkItem &item : test::treeFrom(QString::fromLatin1(outline)))
            world.links.addLink(item);
        window = std::make_unique<SettingsWindow>(world.settings());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::qWait(300); // the window manager moves it into place
        tree = window->findChild<LinkTreeView *>();
    }
    QPoint at(const char *name, double share = 0.5)
    {
        const auto *model = static_cast<LinkTreeModel *>(tree->model());
        const QRect row = tree->visualRect(model->indexOf(idOf(QString::fromLatin1(name))));
        return tree->viewport()->mapToGlobal(
            QPoint(row.left() + 60, row.top() + static_cast<int>(share * row.height())));
    }
    bool becomes(const char *outline)
    {
        const QString wanted = QString::fromLatin1(outline);
        return QTest::qWaitFor([&] { return test::outlineOf(world.links.links()) == wanted; });
    }
    std::string outline() { return test::outlineOf(world.links.links()).toStdString(); }

    test::UiWorld world;
    std::unique_ptr<SettingsWindow> window;
    LinkTreeView *tree = nullptr;
};

TEST_F(LinkDragTest, RowsFollowTheRealPointer)
{
    open("a b f[c] d e");
    ASSERT_TRUE(drag(at("e"), at("a", 0.2)));
    EXPECT_TRUE(becomes("e a b f[c] d")) << outline();
    ASSERT_TRUE(drag(at("b"), at("f")));
    EXPECT_TRUE(becomes("e a f[c b] d")) << outline();

    // Several rows: press with Ctrl adds to the selection.
    tree->selectItems({idOf(QStringLiteral("a")), idOf(QStringLiteral("d"))});
    ASSERT_TRUE(drag(at("d"), at("e", 0.2)));
    EXPECT_TRUE(becomes("a d e f[c b]")) << outline();
    world.links.undo();
    EXPECT_TRUE(becomes("e a f[c b] d")) << outline();
}

TEST_F(LinkDragTest, AGroupOpensUnderADragThatRests)
{
    open("f[c] a");
    // Down the group and back, resting on it; then onto its member.
    ASSERT_TRUE(drag(at("a"), at("f"), std::chrono::milliseconds(1200)));
    EXPECT_TRUE(becomes("f[c a]")) << outline();
    EXPECT_TRUE(tree->isExpanded(tree->model()->index(0, 0)));
}

} // namespace orvelle
