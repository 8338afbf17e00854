#include "base/Text.h"
#include "ui/UiWorld.h"
#include "ui/quickadd/GroupPicker.h"
#include "ui/quickadd/QuickAddLinkView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

namespace orvelle {

const QString uriList = QStringLiteral("text/uri-list");

class QuickAddTest : public testing::Test
{
protected:
    QuickAddLinkView &open(const std::optional<QUuid> &group = {})
    {
        panel = std::make_unique<QuickAddPanel>(world.quickAdd(), group);
        panel->setAttribute(Qt::WA_DeleteOnClose, false);
        panel->show();
        settle();
        return panel->view();
    }
    void paste()
    {
        panel->view().pasteFromClipboard();
        settle();
    }
    /// Until the clipboard's forms and two contents are given, each in its turn.
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    void copied(const char *what) { world.pasteboard.otherAppCopies(QString::fromUtf8(what)); }
    void enter(const QString &address) { field("quickAddUrl")->setText(address); }
    QLineEdit *field(const char *name) { return panel->findChild<QLineEdit *>(QString::fromLatin1(name)); }
    QPushButton *addButton() { return panel->findChild<QPushButton *>(QStringLiteral("quickAddAdd")); }

    QString hint() { return panel->findChild<QLabel *>(QStringLiteral("quickAddHint"))->text(); }
    QAbstractButton *offer() { return panel->findChild<QAbstractButton *>(QStringLiteral("quickAddOffer")); }
    static void press(QWidget *widget, Qt::Key key) { QTest::keyClick(widget, key); }

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
    copied("just words");
    paste();
    EXPECT_EQ(field("quickAddUrl")->text(), QString());
    EXPECT_EQ(hint(), text("quickAdd.nothingToPaste"_text));
    copied(" https://example.org/x \n");
    paste();
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/x"));
    world.pasteboard.otherAppCopies({{Pasteboard::textType(), "a caption"}, {uriList, "file:///tmp/b.txt\r\n"}});
    paste();
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("/tmp/b.txt"));

    QMimeData dropped;
    dropped.setUrls({QUrl(QStringLiteral("https://example.org/y")), QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt"))});
    EXPECT_TRUE(view.handleDrop(dropped));
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("/tmp/a.txt"));
    QMimeData words;
    words.setText(QStringLiteral("just words"));
    EXPECT_FALSE(view.handleDrop(words));
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("/tmp/a.txt"));
}

TEST_F(QuickAddTest, AnOwnerThatHangsHoldsNobodyUp)
{
    copied("https://example.org/copied");
    world.pasteboard.ownerNeverAnswers();
    open();
    paste();
    EXPECT_EQ(hint(), QString());
    world.clock.advance(std::chrono::seconds(2));
    EXPECT_EQ(hint(), text("quickAdd.nothingToPaste"_text));

    copied("https://example.org/late");
    panel->view().pasteFromClipboard();
    enter(QStringLiteral("https://example.org/typed"));
    settle();
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/typed")) << "what is typed stays";
}

TEST_F(QuickAddTest, TheClipboardIsOfferedAndTakenByOneKey)
{
    copied("https://example.org/copied");
    open();
    EXPECT_EQ(field("quickAddUrl")->text(), QString()) << "offered, not forced";
    ASSERT_TRUE(offer()->isVisible());
    EXPECT_TRUE(offer()->accessibleName().contains(QStringLiteral("https://example.org/copied")));
    press(field("quickAddUrl"), Qt::Key_Return);
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/copied"));
    EXPECT_FALSE(offer()->isVisible());
    EXPECT_TRUE(world.links.links().isEmpty()) << "taken, and not added yet";
    press(field("quickAddUrl"), Qt::Key_Return);
    EXPECT_EQ(world.links.links().back().path, QStringLiteral("https://example.org/copied"));
    EXPECT_FALSE(panel->isVisible());

    open();
    field("quickAddUrl")->setText(QStringLiteral("h"));
    EXPECT_FALSE(offer()->isVisible()) << "whoever types has something else in mind";
    press(panel.get(), Qt::Key_Escape);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(QuickAddTest, NothingElseInTheClipboardIsShown)
{
    const auto offered = [this](const char *text) {
        copied(text);
        open();
        return offer()->isVisible();
    };
    EXPECT_FALSE(offered("just words"));
    EXPECT_FALSE(offered("/correct/horse battery staple"));
    EXPECT_FALSE(offered("~hunter2"));
    EXPECT_FALSE(offered("https://example.org/ and more"));
    EXPECT_TRUE(offered("/"));
    const PasteboardItem mark{QStringLiteral("x-kde-passwordManagerHint"), "secret"};
    world.pasteboard.otherAppCopies({mark, {Pasteboard::textType(), "https://example.org/"}});
    world.pasteboard.asked.clear();
    open();
    EXPECT_FALSE(offer()->isVisible());
    EXPECT_FALSE(world.pasteboard.asked.contains(Pasteboard::textType())) << "not even read";
}

// Where programs in the background see nothing, a window in use does.
TEST_F(QuickAddTest, TheToolkitsClipboardServesWhereOursDoesNot)
{
    world.pasteboard.isForbidden = true;
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(QStringLiteral("https://example.org/copied"));
    open();
    EXPECT_TRUE(offer()->isVisible());
    paste();
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/copied"));
    clipboard->clear();
}

TEST_F(QuickAddTest, TheSameAddressIsToldWithItsPlaceAndStillAllowed)
{
    LinkItem outer = world.make("Work", LinkType::Group);
    LinkItem inner = world.make("Docs", LinkType::Group);
    inner.children = LinkList{world.make("Page", LinkType::Url, "HTTPS://Example.org")};
    outer.children = LinkList{inner};
    world.links.addLink(outer);
    world.links.addLink(world.make("Report", LinkType::File, "/data/report.pdf"));
    open();
    panel->setAddress(QStringLiteral("https://example.org/"));
    EXPECT_TRUE(hint().contains(QStringLiteral("Work › Docs"))) << hint().toStdString();
    EXPECT_TRUE(addButton()->isEnabled());
    panel->setAddress(QStringLiteral("https://example.org/Other"));
    EXPECT_EQ(hint(), QString());
    panel->setAddress(QStringLiteral("/data/../data/report.pdf"));
    EXPECT_TRUE(hint().contains(text("quickAdd.topLevel"_text)));
    addButton()->click();
    EXPECT_EQ(world.links.links().size(), 3);
}

TEST_F(QuickAddTest, WhatIsWrongIsSaidOnEnterOrAfterAPause)
{
    open();
    enter(QStringLiteral("gopher://old"));
    EXPECT_EQ(hint(), QString()) << "still typing";
    press(field("quickAddUrl"), Qt::Key_Return);
    EXPECT_EQ(hint(), text("quickAdd.invalid"_text));
    EXPECT_TRUE(panel->isVisible());
    enter(QStringLiteral("https://example.org"));
    EXPECT_EQ(hint(), QString()) << "gone at once";
    enter(QStringLiteral("/no/such/file"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return hint() == text("quickAdd.missingFile"_text); }));
}

TEST_F(QuickAddTest, ABrowsersDragIsTakenByItsAddress)
{
    QuickAddLinkView &view = open();
    QMimeData dragged;
    dragged.setUrls({QUrl(QStringLiteral("https://example.org/a?b=c#d"))});
    dragged.setText(QStringLiteral("The caption of the link"));
    EXPECT_TRUE(view.handleDrop(dragged));
    EXPECT_EQ(field("quickAddUrl")->text(), QStringLiteral("https://example.org/a?b=c#d"));
    QMimeData script;
    script.setUrls({QUrl(QStringLiteral("javascript:alert(1)"))});
    EXPECT_FALSE(view.handleDrop(script));
}

} // namespace orvelle
