#include "base/Text.h"
#include "support/SpinUntil.h"
#include "ui/GeneralTabWorld.h"

#include <QAccessible>
#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>

namespace orvelle {

class LinkEditorTest : public test::GeneralTabWorld
{
protected:
    QLineEdit *name() { return child<QLineEdit>("editor.name"); }
    QLineEdit *path() { return child<QLineEdit>("editor.path"); }
    QString problem()
    {
        return child<QLabel>("editor.problem")->isVisible() ? child<QLabel>("editor.problem")->text() : QString();
    }
    void chooseColor(const char *key)
    {
        for (QAction *action : child<QToolButton>("editor.color")->menu()->actions()) {
            if (action->data().toString() == QLatin1StringView(key) && !action->isSeparator()) {
                action->trigger();
                return;
            }
        }
        FAIL() << key;
    }
    LinkItem add(const char *title, LinkType type, const char *to)
    {
        const LinkItem made = world.make(title, type, to);
        world.links.addLink(made);
        return made;
    }
};

TEST_F(LinkEditorTest, TextGoesOverOnEnterAndOnLeavingAndComesBackByEscape)
{
    open("a b");
    select("a");
    type(name(), "First");
    EXPECT_EQ(item("a").name, QStringLiteral("a")) << "still being typed";
    QTest::keyClick(name(), Qt::Key_Return);
    EXPECT_EQ(item("a").name, QStringLiteral("First"));
    type(name(), "Second");
    path()->setFocus();
    EXPECT_EQ(item("a").name, QStringLiteral("Second"));
    type(name(), "Third");
    QTest::keyClick(name(), Qt::Key_Escape);
    EXPECT_EQ(name()->text(), QStringLiteral("Second"));
    EXPECT_TRUE(window->isVisible());
    type(name(), "Fourth");
    select("b");
    EXPECT_EQ(name()->text(), QStringLiteral("b"));
    EXPECT_EQ(item("a").name, QStringLiteral("Fourth"));
    type(name(), " ");
    QTest::keyClick(name(), Qt::Key_Return);
    EXPECT_EQ(name()->text(), QStringLiteral("b")) << "there is no item without a name";

    // One step each.
    for (const char *before : {"Second", "First", "a"}) {
        world.links.undo();
        EXPECT_EQ(item("a").name, QString::fromLatin1(before));
    }
    EXPECT_FALSE(world.links.canUndo() && item("a").name != QStringLiteral("a"));
}

TEST_F(LinkEditorTest, WhatAssistiveTechnologyWritesWithoutTheFocusIsStored)
{
    open("a b");
    select("a");
    QAccessibleEditableTextInterface *written = QAccessible::queryAccessibleInterface(name())->editableTextInterface();
    written->replaceText(0, 1, QStringLiteral("Writ"));
    written->insertText(4, QStringLiteral("ten"));
    EXPECT_EQ(item("a").name, QStringLiteral("a")) << "there may be more to come";
    EXPECT_TRUE(test::spinUntil([this] { return item("a").name == QStringLiteral("Written"); }));
    EXPECT_FALSE(name()->hasFocus());
    world.links.undo();
    EXPECT_EQ(item("a").name, QStringLiteral("a")) << "one step";
}

TEST_F(LinkEditorTest, ItsWidthIsSetByKeys)
{
    open("a");
    QSplitterHandle *handle = window->findChild<QSplitter *>()->handle(1);
    EXPECT_TRUE(handle->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(handle->accessibleName().isEmpty());
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window->setLayoutDirection(direction);
        QApplication::processEvents();
        QTest::keyClick(handle, Qt::Key_Home);
        const int leftmost = handle->x();
        QTest::keyClick(handle, Qt::Key_Right);
        EXPECT_EQ(handle->x(), leftmost + 16) << direction;
        QTest::keyClick(handle, Qt::Key_End);
        EXPECT_GT(handle->x(), leftmost + 16) << direction;
        QTest::keyClick(handle, Qt::Key_Left);
        QTest::keyClick(handle, Qt::Key_Home);
        EXPECT_EQ(handle->x(), leftmost) << direction;
    }
}

TEST_F(LinkEditorTest, TypingOutlivesChangesFromElsewhere)
{
    open("a b");
    select("a");
    type(name(), "Mine");
    LinkItem other = item("a");
    other.name = QStringLiteral("Theirs");
    other.path = QStringLiteral("https://theirs.example");
    world.links.updateLink(other);
    EXPECT_EQ(name()->text(), QStringLiteral("Mine"));
    EXPECT_EQ(path()->text(), QStringLiteral("https://theirs.example"));
    QTest::keyClick(name(), Qt::Key_Return);
    EXPECT_EQ(item("a").name, QStringLiteral("Mine"));
    EXPECT_EQ(item("a").path, QStringLiteral("https://theirs.example"));

    type(name(), "Lost?");
    world.links.removeLink(id("a"));
    EXPECT_EQ(name()->text(), QStringLiteral("Lost?"));
    EXPECT_TRUE(name()->isVisible());
    EXPECT_FALSE(problem().isEmpty());
    select("b");
    EXPECT_EQ(name()->text(), QStringLiteral("b"));
    EXPECT_TRUE(problem().isEmpty());
}

TEST_F(LinkEditorTest, TypingIsKeptWhenTheWindowCloses)
{
    open("a");
    select("a");
    type(name(), "Closed upon");
    window->close();
    EXPECT_EQ(item("a").name, QStringLiteral("Closed upon"));

    openAgain();
    select("a");
    type(name(), "Quit");
    window->commitTyped();
    EXPECT_EQ(item("a").name, QStringLiteral("Quit"));
    type(name(), "Quit upon");
    window.reset();
    EXPECT_EQ(item("a").name, QStringLiteral("Quit upon"));
}

TEST_F(LinkEditorTest, BadAddressesAndPathsStayInTheFieldWithTheReason)
{
    open();
    const LinkItem web = add("Web", LinkType::Url, "https://example.org");
    const LinkItem file = add("File", LinkType::File, "/tmp/x");
    const struct {
        const LinkItem &link;
        const char *typed;
        const char *stored; ///< null: refused
    } cases[] = {
        {web, "https://example.com/a b", "https://example.com/a b"},
        {web, "javascript:alert(1)", nullptr},
        {web, "/etc/hosts", nullptr},
        {web, "SMB://server/share", "SMB://server/share"},
        {file, "~/notes.txt", "/home/ada/notes.txt"},
        {file, "/var/../etc/hosts", "/etc/hosts"},
        {file, "relative", nullptr},
    };
    for (const auto &one : cases) {
        tree()->selectItem(one.link.id);
        const QString before = world.links.find(one.link.id)->path;
        type(path(), one.typed);
        QTest::keyClick(path(), Qt::Key_Return);
        EXPECT_EQ(world.links.find(one.link.id)->path, one.stored ? QString::fromLatin1(one.stored) : before);
        EXPECT_EQ(problem().isEmpty(), one.stored != nullptr) << one.typed;
        EXPECT_EQ(path()->text(), QString::fromLatin1(one.stored ? one.stored : one.typed));
        if (!one.stored)
            QTest::keyClick(path(), Qt::Key_Escape);
        EXPECT_TRUE(problem().isEmpty());
    }
    EXPECT_EQ(status(), QString());
    type(path(), "relative");
    tree()->selectItem(web.id);
    EXPECT_EQ(status(), text("settings.entryDropped"_text)) << "it is said what became of it";
    EXPECT_EQ(world.links.find(file.id)->bookmarkData,
              test::FakeFileBookmarks::bookmarkOf(QStringLiteral("/etc/hosts")));
}

TEST_F(LinkEditorTest, ClosingTheWindowOverWhatCannotBeStoredTakesTwice)
{
    open("a");
    select("a");
    type(path(), "half-typed");
    window->showTab(QStringLiteral("widgets"));
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(status(), text("settings.closeLoses"_text));
    EXPECT_TRUE(path()->hasFocus());
    EXPECT_EQ(path()->text(), QStringLiteral("half-typed"));
    EXPECT_FALSE(problem().isEmpty());
    type(path(), "another try");
    window->close();
    EXPECT_TRUE(window->isVisible()) << "another text, another warning";
    window->close();
    EXPECT_FALSE(window->isVisible());

    openAgain();
    select("a");
    type(path(), "half-typed");
    window->close();
    type(path(), "https://example.org/whole");
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(item("a").path, QStringLiteral("https://example.org/whole"));
}

TEST_F(LinkEditorTest, LooksOfSeveralChangeAsOneStep)
{
    open("f[x] g");
    const LinkItem note = world.addNote("Note", "text");
    select("g");
    tree()->selectItems({id("f"), id("g"), note.id});
    EXPECT_FALSE(name()->isVisible());
    EXPECT_FALSE(child<QToolButton>("editor.icon")->isVisible()) << "their tables of icons differ";
    EXPECT_EQ(child<QCheckBox>("editor.colored")->checkState(), Qt::PartiallyChecked);
    chooseColor("red");
    EXPECT_EQ(postedSince(), QStringList{QStringLiteral("noteColor")});
    child<QCheckBox>("editor.colored")->click();
    for (const QUuid &each : {id("f"), id("g"), note.id}) {
        EXPECT_EQ(world.links.find(each)->customIconColor, QStringLiteral("red"));
        EXPECT_TRUE(world.links.find(each)->coloredInMenu());
    }
    chooseColor("");
    EXPECT_FALSE(world.links.find(note.id)->customIconColor);
    for (int i = 0; i < 3; ++i)
        world.links.undo();
    EXPECT_FALSE(item("f").noteColoredInMenu);
    EXPECT_FALSE(item("f").customIconColor);
}

TEST_F(LinkEditorTest, IconsAreChosenBySearchAndKeys)
{
    open("f[x]");
    select("f");
    QTest::mouseClick(child<QToolButton>("editor.icon"), Qt::LeftButton);
    auto *chooser = child<QWidget>("iconChooser");
    ASSERT_TRUE(chooser && chooser->isVisible());
    EXPECT_EQ(chooser->findChild<QListWidget *>()->count(), 49) << "the table and the kind's own";
    auto *search = chooser->findChild<QLineEdit *>();
    QTest::keyClicks(search, QStringLiteral("STA"));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(item("f").customIconName, QStringLiteral("star.fill"));
    EXPECT_FALSE(chooser->isVisible());

    QTest::mouseClick(child<QToolButton>("editor.icon"), Qt::LeftButton);
    QTest::keyClick(search, Qt::Key_Right);
    QTest::keyClick(chooser->findChild<QListWidget *>(), Qt::Key_Return);
    EXPECT_EQ(item("f").customIconName, QStringLiteral("heart.fill"));
    QTest::mouseClick(child<QToolButton>("editor.icon"), Qt::LeftButton);
    QTest::keyClicks(search, QStringLiteral("no such icon"));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_TRUE(chooser->isVisible()) << "nothing to take";
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_FALSE(chooser->isVisible());
}

TEST_F(LinkEditorTest, ButtonsFollowTheKind)
{
    open("f[b a] w");
    const LinkItem file = add("File", LinkType::File, "/tmp/x");
    const LinkItem drive = add("Drive", LinkType::Url, "smb://server/share");
    const auto shows = [this](const char *button) { return child<QWidget>(button)->isVisible(); };
    select("f");
    EXPECT_TRUE(shows("editor.sort") && shows("editor.icon"));
    EXPECT_FALSE(shows("editor.path") || shows("editor.open") || shows("editor.reveal"));
    child<QPushButton>("editor.sort")->click();
    EXPECT_EQ(outline(), "f[a b] w File Drive");
    tree()->selectItem(file.id);
    EXPECT_TRUE(shows("editor.choose") && shows("editor.reveal") && shows("editor.open"));
    child<QPushButton>("editor.reveal")->click();
    EXPECT_EQ(world.revealed, QStringList{QStringLiteral("/tmp/x")});
    child<QPushButton>("editor.open")->click();
    EXPECT_EQ(world.openedLinks, QStringList{QStringLiteral("File")});
    select("w");
    EXPECT_FALSE(shows("editor.icon") || shows("editor.choose")) << "a web site has its own picture";
    tree()->selectItem(drive.id);
    EXPECT_TRUE(shows("editor.icon"));
}

TEST_F(LinkEditorTest, FilesAndFoldersAreChosenFromTheDisk)
{
    open("f[x]");
    const LinkItem folder = add("Folder", LinkType::Folder, "/nowhere");
    tree()->selectItem(folder.id);
    child<QToolButton>("editor.choose")->click();
    auto *dialog = window->findChild<QFileDialog *>(QStringLiteral("choosePath"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    emit dialog->fileSelected(world.folder.path());
    EXPECT_EQ(world.links.find(folder.id)->path, world.folder.path());
    dialog->close();

    select("x");
    child<QAction>("addFile")->trigger();
    dialog = window->findChild<QFileDialog *>(QStringLiteral("choosePaths"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
    emit dialog->filesSelected({QStringLiteral("/tmp/one.txt"), QStringLiteral("/tmp/two.txt")});
    dialog->close();
    EXPECT_EQ(outline(), "f[x one two] Folder");
    EXPECT_EQ(item("f").children->last().bookmarkData, "bm:/tmp/two.txt");
    world.links.undo();
    EXPECT_EQ(outline(), "f[x] Folder") << "all of them as one step";
}

TEST_F(LinkEditorTest, APathForAnItemThatIsGoneIsNotTaken)
{
    open("a");
    const LinkItem file = add("File", LinkType::File, "/tmp/x");
    tree()->selectItem(file.id);
    child<QToolButton>("editor.choose")->click();
    auto *dialog = window->findChild<QFileDialog *>(QStringLiteral("choosePath"));
    ASSERT_NE(dialog, nullptr);
    world.links.removeLink(file.id);
    emit dialog->fileSelected(QStringLiteral("/tmp/y"));
    EXPECT_EQ(outline(), "a");
    EXPECT_EQ(problem(), QString());
}

TEST_F(LinkEditorTest, WhatIsGoneFromTheDiskIsSaid)
{
    open();
    const QString there = world.folder.filePath(QStringLiteral("there.txt"));
    const LinkItem file = add("File", LinkType::File, there.toLatin1());
    tree()->selectItem(file.id);
    auto *detail = child<QLabel>("editor.detail");
    EXPECT_TRUE(QTest::qWaitFor([&] { return detail->isVisible() && !detail->text().isEmpty(); }));
    QFile(there).open(QIODevice::WriteOnly);
    window->hide();
    window->show(); // looks again
    EXPECT_TRUE(QTest::qWaitFor([&] { return !detail->isVisible(); }));
}

} // namespace orvelle
