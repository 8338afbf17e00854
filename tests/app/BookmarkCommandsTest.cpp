#include "app/CommandShell.h"
#include "links/exchange/LinkExchange.h"
#include "support/Outline.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct BookmarkCommands : CommandShell {
    BookmarkCommands() : CommandShell(treeFrom(u"a g[b]"_s)) {}
};

TEST(BookmarkCommands, AddAtTheEndInOneStepAndCountWhatTheyLeaveOut)
{
    BookmarkCommands commands;
    commands.write(u"marks.html"_s, "<DL><DT><A HREF=https://p.example>p</A><DT><A HREF=javascript:x>j</A>"
                                    "<DT><H3>f</H3><DL><DT><A HREF=https://q.example>q</A></DL></DL>");
    commands.write(u"links/one.url"_s, "[InternetShortcut]\nURL=https://one.example\n");
    commands.write(u"links/readme"_s, "text");
    const std::tuple<const char16_t *, const char *, const char16_t *> cases[] = {
        {u"import-bookmarks marks.html --json",
         R"({"added":4,"links":2,"foldedFolders":0,"leftOut":1,"unreadable":0,"otherFiles":0})"
         "\n",
         u"a g[b] marks[p f[q]]"},
        {u"import-links links/ --json",
         R"({"added":1,"links":1,"foldedFolders":0,"leftOut":0,"unreadable":0,"otherFiles":1})"
         "\n",
         u"a g[b] one"},
    };
    for (const auto &[line, out, outline] : cases) {
        const CommandResult result = commands.run(QString::fromUtf16(line));
        EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
        EXPECT_EQ(result.out, out);
        EXPECT_EQ(outlineOf(commands.store.links()), QString::fromUtf16(outline));
        EXPECT_TRUE(commands.store.undo());
        EXPECT_EQ(outlineOf(commands.store.links()), u"a g[b]");
    }
}

TEST(BookmarkCommands, WhatIsExportedCanBeImported)
{
    BookmarkCommands commands;
    commands.store.addLink(LinkItem::make(u"note"_s, {}, LinkType::Note, commands.clock.now()));
    const CommandResult written = commands.run(u"export-bookmarks out.html"_s);
    EXPECT_EQ(written.exitCode, 0);
    EXPECT_TRUE(written.err.contains("cannot hold: 1."));
    const QByteArray printed = commands.run(u"export-bookmarks -"_s).out;
    EXPECT_TRUE(printed.contains("example")) << printed.toStdString();
    EXPECT_FALSE(QFile::exists(commands.path(u"-"_s)));
    EXPECT_EQ(commands.run(u"import-bookmarks out.html"_s).exitCode, 0);
    EXPECT_EQ(outlineOf(commands.store.links()), u"a g[b] note out[a g[b]]");
}

TEST(BookmarkCommands, RefusalsChangeNothing)
{
    BookmarkCommands commands;
    commands.write(u"page.html"_s, "<p>hello");
    commands.write(u"empty/readme"_s, "text");
    for (const char *line : {"import-bookmarks page.html", "import-bookmarks missing", "import-bookmarks empty",
                             "import-links empty", "import-links page.html", "export-bookmarks no/such/file"}) {
        const CommandResult result = commands.run(QString::fromLatin1(line));
        EXPECT_EQ(result.exitCode, 1) << line;
        EXPECT_TRUE(result.err.startsWith("orvelle: ") && result.err.count('\n') == 1) << line;
    }
    EXPECT_EQ(outlineOf(commands.store.links()), u"a g[b]");
    EXPECT_TRUE(commands.snapshots.list(false).isEmpty());
}

} // namespace
} // namespace orvelle::test
