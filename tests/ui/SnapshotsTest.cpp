#include "ui/UiWorld.h"
#include "ui/settings/SnapshotDifference.h"
#include "ui/settings/SnapshotPreview.h"
#include "ui/settings/SnapshotTexts.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace orvelle {

using namespace std::chrono_literals;

class SnapshotsTest : public testing::Test
{
protected:
    void open()
    {
        ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        ASSERT_TRUE(world.defaults.write(QStringLiteral("SettingsWindowTab"), QStringLiteral("sync")));
        window = std::make_unique<SettingsWindow>(world.settings());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
    }
    template<typename T>
    T *child(const char *name)
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    void click(const char *name) { child<QPushButton>(name)->click(); }
    void settle() { world.clock.advance(0ms); }
    QString cell(int row, int column) { return list()->model()->index(row, column).data().toString(); }
    QTreeView *list() { return child<QTreeView>("snapshots"); }
    int rows() { return list()->model()->rowCount(); }
    QStringList names() const
    {
        QStringList result;
        for (const LinkItem &item : world.links.links())
            result += item.name;
        return result;
    }
    void add(const char *name) { world.links.addLink(world.make(name, LinkType::Url, "https://example.org")); }
    void removeFirst() { world.links.removeLink(world.links.links().front().id); }
    QString snapshotPath(const QString &name) { return world.folder.filePath(QStringLiteral("snapshots/")) + name; }
    QPushButton *undoButton()
    {
        for (QPushButton *button : window->findChildren<QPushButton *>()) {
            if (button->text() == QStringLiteral("Undo") && button->isVisible())
                return button;
        }
        return nullptr;
    }

    test::UiWorld world;
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(SnapshotsTest, ANewOneShowsAtOnceAndTheEmptyListSaysWhatToExpect)
{
    add("One");
    add("Two");
    open();
    auto *stack = qobject_cast<QStackedWidget *>(list()->parentWidget());
    ASSERT_NE(stack, nullptr);
    EXPECT_NE(stack->currentWidget(), list());
    EXPECT_FALSE(child<QPushButton>("restoreSnapshot")->isEnabled());
    removeFirst();
    settle();
    EXPECT_EQ(stack->currentWidget(), list());
    ASSERT_EQ(rows(), 1);
    EXPECT_TRUE(cell(0, 0).startsWith(QStringLiteral("Today, ")));
    EXPECT_EQ(cell(0, 1), QStringLiteral("Removing"));
    EXPECT_EQ(cell(0, 2), QStringLiteral("2"));
    EXPECT_TRUE(child<QPushButton>("restoreSnapshot")->isEnabled());

    world.debugMode.toggle();
    settle();
    EXPECT_EQ(rows(), 0) << "debug mode has its own";
}

TEST_F(SnapshotsTest, NamesTheMachineWhoseChangeCameIn)
{
    add("One");
    const auto packed = packSnapshot(world.links.links());
    ASSERT_TRUE(packed);
    ASSERT_TRUE(world.snapshots.takePacked(*packed, 1, QStringLiteral("sync"), QStringLiteral("Attic\n"), false));
    open();
    EXPECT_TRUE(cell(0, 1).endsWith(QStringLiteral(" · Attic"))) << cell(0, 1).toStdString();
}

TEST_F(SnapshotsTest, RestoringOffersToUndoUntilSomethingElseChanges)
{
    add("One");
    add("Two");
    removeFirst();
    open();
    click("restoreSnapshot");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("One"), QStringLiteral("Two")}));
    ASSERT_NE(undoButton(), nullptr);
    undoButton()->click();
    settle();
    EXPECT_EQ(names(), QStringList{QStringLiteral("Two")});
    EXPECT_EQ(undoButton(), nullptr);

    list()->setCurrentIndex(list()->model()->index(rows() - 1, 0));
    click("restoreSnapshot");
    ASSERT_NE(undoButton(), nullptr);
    add("Three");
    settle();
    EXPECT_EQ(undoButton(), nullptr) << "it would undo something else";
}

TEST_F(SnapshotsTest, TheSelectedOneStaysSelectedWhenAnotherIsTaken)
{
    for (const char *name : {"One", "Two", "Three"})
        add(name);
    removeFirst();
    open();
    ASSERT_EQ(cell(list()->currentIndex().row(), 2), QStringLiteral("3"));
    removeFirst();
    settle();
    ASSERT_EQ(rows(), 2);
    EXPECT_EQ(list()->currentIndex().row(), 1);
}

TEST_F(SnapshotsTest, OneThatCannotBeReadSaysWhyAndChangesNothing)
{
    add("One");
    add("Two");
    removeFirst();
    open();
    const QString name = world.snapshots.list(false).front().name;
    QFile file(snapshotPath(name));
    ASSERT_TRUE(file.open(QFile::ReadWrite));
    ASSERT_TRUE(file.resize(file.size() / 2));
    file.close();
    for (const char *button : {"previewSnapshot", "restoreSnapshot"}) {
        click(button);
        ASSERT_EQ(world.alerts.shown.size(), 1) << button;
        EXPECT_EQ(world.alerts.shown.takeFirst().message, QStringLiteral("This snapshot cannot be read")) << button;
    }
    ASSERT_TRUE(QFile::remove(snapshotPath(name)));
    click("restoreSnapshot");
    EXPECT_EQ(world.alerts.shown.size(), 1) << "it is gone";
    EXPECT_EQ(rows(), 0) << "and no longer listed";
    EXPECT_EQ(names(), QStringList{QStringLiteral("Two")});
}

TEST_F(SnapshotsTest, LookingInsideTellsWhatWouldChangeAndCanRestore)
{
    LinkItem group = world.make("Work", LinkType::Group);
    group.children = LinkList{world.make("Inner", LinkType::Url, "https://example.org")};
    world.links.addLink(group);
    add("Two");
    removeFirst();
    add("Three");
    open();
    click("previewSnapshot");
    auto *preview = window->findChild<SnapshotPreview *>();
    ASSERT_NE(preview, nullptr);
    const auto *changes = preview->findChild<QLabel *>(QStringLiteral("changes"));
    EXPECT_EQ(changes->text(), QStringLiteral("• 2 items come back\n• 1 item that is not in it goes"));
    auto *tree = preview->findChild<QTreeWidget *>();
    ASSERT_EQ(tree->topLevelItemCount(), 2);
    ASSERT_EQ(tree->topLevelItem(0)->childCount(), 1);
    EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(0), QStringLiteral("Inner"));
    EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(1), QStringLiteral("comes back"));
    EXPECT_EQ(tree->topLevelItem(1)->text(1), QString());
    preview->findChild<QPushButton *>(QStringLiteral("restore"))->click();
    EXPECT_EQ(names(), (QStringList{QStringLiteral("Work"), QStringLiteral("Two")}));
}

TEST_F(SnapshotsTest, TwoHundredAreListedFromTheirNamesAlone)
{
    const QString folder = world.folder.filePath(QStringLiteral("snapshots"));
    ASSERT_TRUE(QDir().mkpath(folder));
    for (int i = 0; i < 200; ++i) {
        QFile file(folder +
                   QStringLiteral("/%1_20200102T030405000Z_remove_%2.json.zst").arg(i, 8, 10, QLatin1Char('0')).arg(i));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("not a snapshot");
    }
    open();
    EXPECT_EQ(rows(), 200);
    EXPECT_EQ(cell(0, 2), QStringLiteral("199"));
}

TEST(SnapshotDifferenceTest, ItemsAreToldApartByTheirStableIds)
{
    test::UiWorld world;
    const LinkItem a = world.make("a", LinkType::Url, "https://a.example");
    const LinkItem b = world.make("b", LinkType::Url, "https://b.example");
    LinkItem g = world.make("g", LinkType::Group);
    LinkItem full = g;
    full.children = LinkList{b};
    LinkItem renamed = a;
    renamed.name = QStringLiteral("A");
    LinkItem reloaded = a;
    reloaded.id = QUuid::createUuid();
    reloaded.faviconData = "picture";
    reloaded.modifiedAt = Timestamp{1};

    struct Case {
        const char *name;
        LinkList tree;
        LinkList snapshot;
        std::array<qint64, 4> counts; ///< come back, go, change, move
        bool reorders;
    };
    const QList<Case> cases{
        {"the same", {a, full}, {reloaded, full}, {0, 0, 0, 0}, false},
        {"one each", {a, g}, {b, g}, {1, 1, 0, 0}, false},
        {"another name", {a}, {renamed}, {0, 0, 1, 0}, false},
        {"another group", {g, b}, {full}, {0, 0, 0, 1}, false},
        {"another order", {a, b}, {b, a}, {0, 0, 0, 0}, true},
        {"a group with its items", {}, {full}, {2, 0, 0, 0}, false},
    };
    for (const Case &c : cases) {
        const SnapshotDifference found = snapshotDifference(c.tree, c.snapshot);
        EXPECT_EQ((std::array{found.comeBack, found.go, found.change, found.move}), c.counts) << c.name;
        EXPECT_EQ(found.reorders, c.reorders) << c.name;
        EXPECT_EQ(found.isEmpty(), c.counts == (std::array<qint64, 4>{}) && !c.reorders) << c.name;
    }
}

TEST(SnapshotTextsTest, MomentsAreNamedByTheLocalDay)
{
    const auto local = [](int day, int hour) {
        return Timestamp::fromDateTime(QDateTime(QDate(2026, 11, day), QTime(hour, 5)));
    };
    const Timestamp now = local(21, 0);
    EXPECT_EQ(momentText(local(21, 0), now), QStringLiteral("Today, 00:05"));
    EXPECT_EQ(momentText(local(20, 23), now), QStringLiteral("Yesterday, 23:05"));
    EXPECT_EQ(momentText(local(19, 23), now), QStringLiteral("Thursday, 19 November 2026, 23:05"));
}

} // namespace orvelle
