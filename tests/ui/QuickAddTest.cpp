#include "ui/UiWorld.h"
#include "ui/quickadd/GroupPicker.h"
#include "ui/quickadd/QuickAddLinkView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <gtest/gtest.h>

namespace orvelle {

class QuickAddTest : public testing::Test
{
protected:
    QuickAddLinkView &open(const std::optional<QUuid> &group = {})
    {
        panel = std::make_unique<QuickAddPanel>(world.quickAdd(), group);
        panel->setAttribute(Qt::WA_DeleteOnClose, false);
        panel->show();
        return panel->view();
    }
    void enter(const QString &address) { field("quickAddUrl")->setText(address); }
    QLineEdit *field(const char *name) { return panel->findChild<QLineEdit *>(QString::fromLatin1(name)); }
    QPushButton *addButton() { return panel->findChild<QPushButton *>(QStringLiteral("quickAddAdd")); }

    test::UiWorld world;
    std::unique_ptr<QuickAddPanel> panel;
};

TEST_F(QuickAddTest, AddIsEnabledOnlyForWhatCanBeOpened)
{
    open();
    struct Case {
        const char *text;
        bool valid;
        const char *icon;
    };
    for (const Case &c : {Case{"", false, "globe"}, Case{"https://example.org", true, "globe"},
                          Case{"gopher://example.org", false, "globe"}, Case{"/", true, "folder.fill"},
                          Case{"/no/such/file.txt", true, "doc.fill"}, Case{"hello", false, "globe"}}) {
        enter(QString::fromLatin1(c.text));
        EXPECT_EQ(addButton()->isEnabled(), c.valid) << c.text;
        EXPECT_EQ(panel->view().iconName(), QString::fromLatin1(c.icon)) << c.text;
    }
}

TEST_F(QuickAddTest, AddsToTheChosenGroupAndCloses)
{
    LinkItem outer = world.make("Outer", LinkType::Group);
    const LinkItem inner = world.make("Inner", LinkType::Group);
    outer.children = LinkList{inner};
    world.links.addLink(outer);
    open(inner.id);
    EXPECT_EQ(panel->findChild<GroupPicker *>()->count(), 3);
    enter(QStringLiteral("https://example.org/a"));
    addButton()->click();
    EXPECT_FALSE(panel->isVisible());
    ASSERT_EQ(world.links.find(inner.id)->children->size(), 1);
    EXPECT_EQ(world.links.find(inner.id)->children->front().name, QStringLiteral("example.org"));

    open(QUuid::createUuid());
    enter(QStringLiteral("https://example.org/b"));
    field("quickAddName")->setText(QStringLiteral("My page"));
    addButton()->click();
    EXPECT_EQ(world.links.links().back().name, QStringLiteral("My page")) << "an unknown group means the top level";
}

TEST_F(QuickAddTest, FileOnANetworkVolumeBecomesItsAddress)
{
    world.volumes.remote = {{QStringLiteral("/mnt/share"), QStringLiteral("smb://nas/share")}};
    open();
    enter(QStringLiteral("/mnt/share/a b.txt"));
    addButton()->click();
    const LinkItem added = world.links.links().back();
    EXPECT_EQ(added.type, LinkType::Url);
    EXPECT_EQ(added.path, QStringLiteral("smb://nas/share/a%20b.txt"));
    EXPECT_EQ(added.name, QStringLiteral("a b"));
}

TEST_F(QuickAddTest, ALocalFileGetsABookmark)
{
    open();
    enter(QStringLiteral("/data/report.pdf"));
    addButton()->click();
    const LinkItem added = world.links.links().back();
    EXPECT_EQ(added.type, LinkType::File);
    EXPECT_EQ(added.bookmarkData, test::FakeFileBookmarks::bookmarkOf(QStringLiteral("/data/report.pdf")));
}

TEST_F(QuickAddTest, PasteAndDropTakeFilesFirstAndRefuseTheRest)
{
    QuickAddLinkView &view = open();
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(QStringLiteral("just words"));
    view.pasteFromClipboard();
    EXPECT_EQ(field("quickAddUrl")->text(), QString());
    clipboard->setText(QStringLiteral(" https://example.org/x \n"));
    view.pasteFromClipboard();
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/x"));

    QMimeData dropped;
    dropped.setUrls({QUrl(QStringLiteral("https://example.org/y")), QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt"))});
    EXPECT_TRUE(view.handleDrop(dropped));
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("/tmp/a.txt"));
    QMimeData words;
    words.setText(QStringLiteral("just words"));
    EXPECT_FALSE(view.handleDrop(words));
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("/tmp/a.txt"));
}

} // namespace orvelle
