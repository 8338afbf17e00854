#include "links/exchange/ImportMarks.h"
#include "menubar/MenuTestFakes.h"
#include "support/LogCapture.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

bool happens(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(60'000);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return condition();
}

/// Links that an import brought, some of them to a program on the disk.
class LinkOpenerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const auto &[path, content] : {std::pair(tool, "#!/bin/sh\n"), {letter, "words"}}) {
            QFile file(path);
            ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(content) > 0);
        }
    }
    LinkItem arrived(LinkType type, const QString &path)
    {
        const LinkItem link = LinkItem::make(u"Holiday"_s, path, type, Timestamp{1000});
        EXPECT_TRUE(shell.store.edit(LinkStore::Step::Destructive, u"import"_s, [link](LinkList &tree) {
            tree += link;
            return true;
        }));
        return link;
    }
    /// What is opened, or "asked" when the user is asked first.
    QString choose(const LinkItem &link)
    {
        shell.workspace.opened.clear();
        const qsizetype before = shell.alerts.unanswered();
        if (!opener.open(link))
            return u"refused"_s;
        if (!happens([&] { return !shell.workspace.opened.isEmpty() || shell.alerts.unanswered() > before; }))
            return u"nothing happens"_s;
        return shell.workspace.opened.isEmpty() ? u"asked"_s : shell.workspace.opened.join(u' ');
    }

    Shell shell;
    QTemporaryDir folder;
    const QString tool = folder.filePath(u"holiday.jpg.sh"_s);
    const QString letter = folder.filePath(u"letter.txt"_s);
    ImportMarks marks{shell.store, shell.defaults, shell.debugMode};
    LinkOpener opener{shell.store, shell.workspace, shell.clock, LinkOpener::Caution{marks, shell.alerts}};
};

TEST_F(LinkOpenerTest, WhatAnImportBroughtAsksBeforeAProgramOnly)
{
    struct {
        LinkType type;
        QString path;
        QString expected;
    } const cases[] = {
        {LinkType::File, tool, u"asked"_s},
        {LinkType::Folder, tool, u"asked"_s},
        {LinkType::Url, u"file://"_s + tool, u"asked"_s},
        {LinkType::Url, u" FILE://elsewhere"_s + tool, u"asked"_s},
        {LinkType::Url, u"smb://server/share/setup.exe"_s, u"asked"_s},
        {LinkType::File, letter, u"file:"_s + letter},
        {LinkType::Folder, folder.path(), u"folder:"_s + folder.path()},
        {LinkType::Url, u"file://"_s + letter, u"url:file://"_s + letter},
        {LinkType::Url, u"smb://server/share"_s, u"url:smb://server/share"_s},
        {LinkType::Url, u"https://example.org/setup.exe"_s, u"url:https://example.org/setup.exe"_s},
        {LinkType::Url, u"javascript:alert(1)"_s, u"refused"_s},
        {LinkType::Url, u"no address"_s, u"refused"_s},
    };
    for (const auto &each : cases)
        EXPECT_EQ(choose(arrived(each.type, each.path)), each.expected) << qPrintable(each.path);
}

TEST_F(LinkOpenerTest, OwnLinksAreOpenedAsTheyAre)
{
    const LinkItem own = LinkItem::make(u"Tool"_s, tool, LinkType::File, Timestamp{1000});
    shell.store.addLink(own);
    EXPECT_EQ(choose(own), u"file:"_s + tool);
    EXPECT_FALSE(opener.programToAskAbout(own, marks));
}

TEST_F(LinkOpenerTest, TheQuestionNamesTheFileAndIsAskedOnce)
{
    const LinkItem link = arrived(LinkType::File, tool);
    ASSERT_EQ(choose(link), u"asked"_s);
    const Alert alert = shell.alerts.shown.constLast();
    EXPECT_TRUE(alert.message.contains(u"openProgram.title"_s));
    EXPECT_TRUE(alert.informativeText.contains(u"openProgram.script"_s)) << qPrintable(alert.informativeText);
    EXPECT_EQ(alert.buttons.size(), 2);
    shell.alerts.userChooses(1);
    EXPECT_TRUE(shell.workspace.opened.isEmpty());

    EXPECT_EQ(choose(link), u"asked"_s) << "cancelling allows nothing";
    EXPECT_EQ(opener.programToAskAbout(link, marks), (LocalProgram{tool, ProgramKind::Script}));
    shell.alerts.userChooses(0);
    EXPECT_EQ(shell.workspace.opened, QStringList{u"file:"_s + tool});
    EXPECT_EQ(choose(link), u"file:"_s + tool);
    EXPECT_FALSE(opener.programToAskAbout(link, marks));

    LinkItem moved = link;
    moved.path = folder.filePath(u"other.sh"_s);
    ASSERT_TRUE(QFile::copy(tool, moved.path));
    EXPECT_EQ(choose(moved), u"asked"_s) << "what was allowed was another file";
}

TEST_F(LinkOpenerTest, TheQuestionFitsWhateverTheNameIs)
{
    LinkItem link = arrived(LinkType::File, tool);
    link.name = u"Invoice\n"_s + QString(20000, u'x') + u"\nnothing to worry about"_s;
    ASSERT_EQ(choose(link), u"asked"_s);
    const Alert &alert = shell.alerts.shown.constLast();
    EXPECT_LT(alert.message.size(), 200);
    EXPECT_FALSE(alert.message.contains(u'\n')) << "a name is no paragraph of ours";
    EXPECT_EQ(alert.defaultButton, 1) << "Enter runs nothing";
}

TEST_F(LinkOpenerTest, AddressesInTextsAskEachTime)
{
    const auto open = [this](const QString &address) {
        shell.workspace.opened.clear();
        const qsizetype before = shell.alerts.shown.size();
        if (!opener.openAddress(QUrl(address)))
            return u"refused"_s;
        EXPECT_TRUE(happens([&] { return !shell.workspace.opened.isEmpty() || shell.alerts.shown.size() > before; }));
        return shell.workspace.opened.isEmpty() ? u"asked"_s : u"opened"_s;
    };
    EXPECT_EQ(open(u"https://example.org"_s), u"opened"_s);
    EXPECT_EQ(open(u"file://"_s + letter), u"opened"_s);
    EXPECT_EQ(open(u"data:text/html,x"_s), u"refused"_s);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(open(u"file://"_s + tool), u"asked"_s);
        shell.alerts.userChooses(0);
        EXPECT_EQ(shell.workspace.opened.size(), 1);
    }
}

TEST_F(LinkOpenerTest, ALinkOnADistantVolumeWaitsForItsAnswerOnly)
{
    shell.volumes.distant = {u"/nas"_s, folder.path()};
    const LinkItem dead[] = {arrived(LinkType::File, u"/nas/letter"_s),
                             arrived(LinkType::Url, u"file:///nas/letter"_s)};
    const LinkItem web = LinkItem::make(u"Web"_s, u"https://example.org/"_s, LinkType::Url, Timestamp{1000});
    for (const LinkItem &each : dead) {
        EXPECT_TRUE(opener.open(each));
        EXPECT_TRUE(shell.workspace.opened.isEmpty());
    }
    EXPECT_EQ(choose(web), u"url:https://example.org/"_s);
    shell.workspace.opened.clear();

    const auto answer = [this](const QString &volume) {
        for (int looks = 0; looks < 3; ++looks)
            shell.distantFiles.answers(volume);
    };
    EXPECT_TRUE(opener.open(arrived(LinkType::File, letter)));
    answer(folder.path());
    EXPECT_EQ(shell.workspace.opened, QStringList{u"file:"_s + letter});
    EXPECT_TRUE(opener.open(arrived(LinkType::File, tool)));
    answer(folder.path());
    EXPECT_EQ(shell.alerts.unanswered(), 1);

    LogCapture log;
    shell.clock.advance(LinkOpener::patience);
    EXPECT_TRUE(log.contains(u"MenuBarManager: A link could not be opened: its volume does not answer"_s));
    answer(u"/nas"_s);
    EXPECT_EQ(shell.workspace.opened.size(), 1) << "nobody waits for it any more";
}

} // namespace
} // namespace orvelle::test
