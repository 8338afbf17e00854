#include "ui/UiWorld.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"
#include "ui/settings/WidgetOrderList.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle {

using namespace std::chrono_literals;

class SettingsTest : public testing::Test
{
protected:
    void open(bool first = false)
    {
        if (!first) {
            ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        }
        window = std::make_unique<SettingsWindow>(world.settings());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        world.posted.clear();
    }
    template<typename T>
    T *child(const char *name)
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    LinkTreeView *tree() { return window->findChild<LinkTreeView *>(); }
    QStringList postedSince() { return std::exchange(world.posted, {}); }

    test::UiWorld world;
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(SettingsTest, IconChoiceIsStoredAndAnnounced)
{
    ASSERT_TRUE(world.defaults.write(QStringLiteral("MenuletIcon"), QStringLiteral("no such icon")));
    open();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.link")->isChecked());
    child<QRadioButton>("menuletIcon.link.circle")->click();
    EXPECT_EQ(world.defaults.get<QString>(QStringLiteral("MenuletIcon")), QStringLiteral("link.circle"));
    EXPECT_EQ(postedSince(),
              (QStringList{QStringLiteral("menuletIcon"), QStringLiteral("general"), QStringLiteral("syncable")}));
    child<QRadioButton>("menuletIcon.link.circle")->click();
    EXPECT_TRUE(postedSince().isEmpty());

    // An import writes the key itself and announces it.
    ASSERT_TRUE(world.defaults.write(QStringLiteral("MenuletIcon"), QStringLiteral("globe")));
    emit world.notifications.generalSettingsChanged();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.globe")->isChecked());
}

TEST_F(SettingsTest, AChoiceThatCannotBeStoredFallsBack)
{
    open();
    world.defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    child<QRadioButton>("menuletIcon.star")->click();
    child<QCheckBox>("confirmBeforeQuit")->click();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.link")->isChecked());
    EXPECT_TRUE(child<QCheckBox>("confirmBeforeQuit")->isChecked());
    EXPECT_TRUE(postedSince().isEmpty());
}

TEST_F(SettingsTest, QuitConfirmationIsOnWhenNeverWritten)
{
    open();
    auto *box = child<QCheckBox>("confirmBeforeQuit");
    EXPECT_TRUE(box->isChecked());
    box->click();
    EXPECT_EQ(world.defaults.get<bool>(QStringLiteral("ConfirmBeforeQuit")), false);
    EXPECT_EQ(postedSince(), (QStringList{QStringLiteral("general"), QStringLiteral("syncable")}));
}

TEST_F(SettingsTest, WelcomeComesOnceOnTheFirstLaunchEver)
{
    open(true);
    EXPECT_EQ(world.defaults.get<bool>(QStringLiteral("HasLaunchedBefore")), true);
    EXPECT_EQ(window->findChild<InfoView *>(), nullptr);
    world.clock.advance(300ms);
    EXPECT_NE(window->findChild<InfoView *>(), nullptr);

    open();
    world.clock.advance(1min);
    EXPECT_EQ(window->findChild<InfoView *>(), nullptr);
}

TEST_F(SettingsTest, TreeKeepsSelectionAndOpenGroupsWhenItChanges)
{
    LinkItem group = world.make("Work", LinkType::Group);
    const LinkItem inner = world.make("Inner", LinkType::Url, "https://example.org");
    group.children = LinkList{inner};
    LinkItem closed = world.make("Closed", LinkType::Group);
    closed.children = LinkList{world.make("Hidden", LinkType::Url, "https://example.com")};
    LinkItem opened = world.make("Opened", LinkType::Group);
    opened.children = LinkList{world.make("Seen", LinkType::Url, "https://example.com")};
    for (const LinkItem &top : {group, closed, opened})
        world.links.addLink(top);
    open();
    tree()->expand(tree()->model()->index(2, 0));
    tree()->selectItem(inner.id);
    world.links.addLink(world.make("New", LinkType::Url, "https://example.net"));
    ASSERT_NE(tree()->selectedItem(), nullptr);
    EXPECT_EQ(tree()->selectedItem()->id, inner.id);
    EXPECT_EQ(tree()->selectedGroup(), group.id);
    EXPECT_FALSE(tree()->isExpanded(tree()->model()->index(1, 0)));
    EXPECT_TRUE(tree()->isExpanded(tree()->model()->index(2, 0)));
}

TEST_F(SettingsTest, RemoveUndoAndRedo)
{
    const LinkItem link = world.make("Example", LinkType::Url, "https://example.org");
    world.links.addLink(link);
    open();
    auto *stack = window->findChild<QTabWidget *>()->currentWidget()->findChild<QStackedWidget *>();
    EXPECT_FALSE(child<QAction>("remove")->isEnabled());
    tree()->selectItem(link.id);
    QTest::keyClick(tree(), Qt::Key_Return);
    EXPECT_EQ(world.openedLinks, QStringList{QStringLiteral("Example")});
    child<QAction>("remove")->trigger();
    EXPECT_TRUE(world.links.links().isEmpty());
    EXPECT_EQ(stack->currentIndex(), 1) << "an empty list says what to do";
    child<QAction>("undo")->trigger();
    EXPECT_TRUE(world.links.find(link.id));
    EXPECT_EQ(stack->currentIndex(), 0);
    EXPECT_TRUE(child<QAction>("redo")->isEnabled());
    child<QAction>("redo")->trigger();
    EXPECT_TRUE(world.links.links().isEmpty());
}

TEST_F(SettingsTest, AddGoesIntoTheSelectedGroup)
{
    const LinkItem group = world.make("Work", LinkType::Group);
    world.links.addLink(group);
    open();
    child<QAction>("addLink")->trigger();
    EXPECT_EQ(postedSince(), QStringList{QStringLiteral("openQuickAdd")});
    tree()->selectItem(group.id);
    child<QAction>("addLink")->trigger();
    EXPECT_EQ(world.windows.opened, QStringList{QStringLiteral("quickAdd:") + group.id.toString()});
    child<QAction>("addNote")->trigger();
    EXPECT_EQ(postedSince(), QStringList{QStringLiteral("openNoteEditor")});
    ASSERT_EQ(world.links.find(group.id)->children->size(), 1);
    const LinkItem note = world.links.find(group.id)->children->front();
    EXPECT_EQ(note.type, LinkType::Note);
    EXPECT_TRUE(note.path.startsWith(QStringLiteral("quicknote://")));
    EXPECT_EQ(note.customIconColor, QStringLiteral("yellow"));
}

TEST_F(SettingsTest, RenamingInTheListIsOneEdit)
{
    const LinkItem link = world.make("Example", LinkType::Url, "https://example.org");
    world.links.addLink(link);
    open();
    auto *model = tree()->model();
    EXPECT_TRUE(model->setData(model->index(0, 0), QStringLiteral(" Better "), Qt::EditRole));
    EXPECT_EQ(world.links.find(link.id)->name, QStringLiteral("Better"));

    // In place: the list is built anew while its editor still hands the name over.
    tree()->selectItem(link.id);
    tree()->setFocus();
    child<QAction>("rename")->trigger();
    auto *editor = tree()->viewport()->findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("In place"));
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(world.links.find(link.id)->name, QStringLiteral("In place"));
    EXPECT_TRUE(model->setData(model->index(0, 0), QStringLiteral("Better"), Qt::EditRole));

    EXPECT_FALSE(model->setData(model->index(0, 0), QStringLiteral(" "), Qt::EditRole));
    EXPECT_EQ(world.links.find(link.id)->name, QStringLiteral("Better"));
}

TEST_F(SettingsTest, DebugButtonsFollowTheModeAndClearAsksFirst)
{
    ASSERT_TRUE(world.defaults.write(QStringLiteral("debug_X"), true));
    open();
    child<QPushButton>("clearDebugData")->click();
    world.alerts.userChooses(1);
    EXPECT_TRUE(world.defaults.value(QStringLiteral("debug_X")));
    child<QPushButton>("enterDebugMode")->click();
    EXPECT_TRUE(world.debugMode.isDebugMode());
    EXPECT_FALSE(child<QPushButton>("enterDebugMode")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("clearDebugData")->isEnabled());
    child<QPushButton>("exitDebugMode")->click();
    EXPECT_FALSE(world.debugMode.isDebugMode());
    child<QPushButton>("clearDebugData")->click();
    world.alerts.userChooses(0);
    EXPECT_FALSE(world.defaults.value(QStringLiteral("debug_X")));
}

TEST_F(SettingsTest, UnreadableLinksAreOfferedAgain)
{
    test::UiWorld &w = world;
    ASSERT_TRUE(w.defaults.write(LinkStore::linksBaseKey(), QByteArray("{broken")));
    LinkStore damaged({w.defaults, w.debugMode, w.notifications, w.clock, w.bookmarks, w.volumes, w.powerEvents,
                       w.snapshots, w.hooks});
    ASSERT_FALSE(damaged.rescuedDataKeys().isEmpty());
    open();
    QPushButton *retry = nullptr;
    for (QPushButton *button : window->findChildren<QPushButton *>()) {
        if (button->text() == QStringLiteral("Try again") && button->isVisible())
            retry = button;
    }
    ASSERT_NE(retry, nullptr);
    retry->click();
    EXPECT_EQ(w.alerts.shown.size(), 1) << "still unreadable";
}

class WidgetOrderListTest : public testing::Test
{
protected:
    using W = WidgetType;

    WidgetOrderListTest()
    {
        list.resize(300, 400);
        list.show();
    }

    /// Drops the widget in one row on another row, `offset` pixels from its middle.
    void drag(int from, int to, int offset)
    {
        list.setCurrentRow(from);
        list.dropSelectedAt(list.visualItemRect(list.item(to)).center() + QPoint(0, offset));
    }

    struct List : WidgetOrderList {
        using WidgetOrderList::dropSelectedAt;
        using WidgetOrderList::WidgetOrderList;
    };

    test::UiWorld world;
    List list{world.widgetOrder};
};

TEST_F(WidgetOrderListTest, DroppedWidgetLandsDirectlyBeforeTheTarget)
{
    for (const int offset : {-8, 8}) { // either half of the row
        world.widgetOrder.setOrder(defaultWidgetOrder());
        drag(0, 2, offset);
        EXPECT_EQ(world.widgetOrder.order().mid(0, 3), (QList<W>{W::QuickLaunch, W::Clipboard, W::Calendar}));
        drag(6, 0, offset);
        EXPECT_EQ(world.widgetOrder.order().front(), W::Timer);
        EXPECT_EQ(list.selectedWidget(), W::Timer) << "the moved one stays selected";
        const QList<W> before = world.widgetOrder.order();
        drag(3, 3, offset);
        EXPECT_EQ(world.widgetOrder.order(), before);
    }
}

TEST_F(WidgetOrderListTest, AltWithArrowsMovesUpToTheEnds)
{
    list.setCurrentRow(5);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(world.widgetOrder.order().back(), W::Network);
    QTest::keyClick(&list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(world.widgetOrder.order().at(5), W::Network);
    QTest::keyClick(&list, Qt::Key_Up);
    EXPECT_EQ(list.selectedWidget(), W::SystemInfo) << "a plain arrow only selects";
}

} // namespace orvelle
