#include "app/cli/ExchangeCommands.h"

#include "app/CommandShell.h"
#include "links/exchange/ExchangeDocument.h"
#include "support/FakeSyncControl.h"
#include "support/Outline.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct Commands : CommandShell {
    Commands() : CommandShell(treeFrom(u"a g[b c]"_s)) {}

    QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
};

TEST(ExchangeCommands, RoundTripAnswersInBothForms)
{
    Commands commands;
    ASSERT_EQ(commands.run(u"export a.ovexport"_s).exitCode, 0);
    const QByteArray document = commands.content(u"a.ovexport"_s);
    EXPECT_TRUE(decodeExchange(document));
    EXPECT_EQ(QFile::permissions(commands.path(u"a.ovexport"_s)) & (QFile::ReadGroup | QFile::ReadOther), 0);
    EXPECT_EQ(commands.run(u"export -"_s).out, document + '\n');
    EXPECT_EQ(commands.run(u"verify a.ovexport"_s).out,
              linksChecksum(decodeExchange(document)->links).toLatin1() + '\n');

    const std::tuple<const char *, QByteArray> cases[] = {
        {"import a.ovexport --mode merge", "Imported: 0\nSkipped: 2\nQuick launch: imported\n"},
        {"import a.ovexport --mode merge --json",
         R"({"importedCount":0,"skippedCount":2,"quickLaunchImported":true,"hasVersionMismatch":false})"
         "\n"},
        {"import a.ovexport --mode replace", "Imported: 4\nSkipped: 0\nQuick launch: imported\n"},
        {"import a.ovexport --mode=sync", "New: 0\nChanged: 0\nEqual: 4\nOnly here: 0\n"},
        {"import a.ovexport --mode sync --json", "{\"new\":0,\"changed\":0,\"equal\":4,\"onlyHere\":0}\n"},
    };
    for (const auto &[line, out] : cases) {
        const CommandResult result = commands.run(QString::fromLatin1(line));
        EXPECT_EQ(result.exitCode, 0) << line;
        EXPECT_EQ(result.out, out) << line;
    }
    EXPECT_TRUE(commands.run(u"import a.ovexport --mode sync"_s).err.contains("Nothing was changed"));
    EXPECT_EQ(outlineOf(commands.store.links()), u"a g[b c]");
}

TEST(ExchangeCommands, ADiskThatDoesNotAnswerHoldsUpOnlyItsCaller)
{
    Commands commands;
    ASSERT_EQ(commands.run(u"export a.ovexport"_s).exitCode, 0);
    const QString before = outlineOf(commands.store.links());
    commands.volumes.distant = {commands.folder.path()};
    std::optional<CommandResult> late;
    const auto import =
        parseCommandLine({u"import"_s, u"a.ovexport"_s, u"--mode"_s, u"replace"_s}, commands.folder.path());
    runCommand(std::get<CommandCall>(import), commands.context, [&late](const CommandResult &given) { late = given; });
    EXPECT_FALSE(late);
    ASSERT_EQ(commands.run(u"add https://example.org/"_s).exitCode, 0);
    const QString edited = outlineOf(commands.store.links());
    ASSERT_NE(edited, before);
    commands.clock.advance(std::chrono::seconds(25));
    ASSERT_TRUE(late);
    EXPECT_EQ(late->exitCode, CommandResult::Refused);
    commands.distantFiles.answers(commands.folder.path());
    EXPECT_EQ(outlineOf(commands.store.links()), edited) << "whoever was told that it failed would not expect it";
}

TEST(ExchangeCommands, RefusalsAreOneSentenceAndChangeNothing)
{
    Commands commands;
    commands.run(u"export good"_s);
    const QByteArray good = commands.content(u"good"_s);
    commands.write(u"changed"_s, QByteArray(good).replace("a.example", "x.example"));
    commands.write(u"unsigned"_s, R"({"links":[]})");
    commands.write(u"red"_s, R"({"links":[],"checksum":"\u001b[31m\nred"})");
    commands.write(u"broken"_s, good.chopped(1));
    ASSERT_TRUE(QDir(commands.folder.path()).mkdir(u"folder"_s));
    const QByteArray before = *commands.defaults.get<QByteArray>(LinkStore::linksBaseKey());
    const std::tuple<const char *, int, const char *> cases[] = {
        {"verify changed", 1, "does not match"},
        {"verify unsigned", 1, "has no checksum"},
        {"verify red", 1, "does not match"},
        {"verify broken", 1, "importUndecodable"},
        {"verify none", 1, "could not be read"},
        {"import broken --mode replace", 1, "importUndecodable"},
        {"import unsigned --mode replace", 1, "importUndecodable"},
        {"import folder --mode replace", 1, "could not be read"},
        {"import none --mode merge", 1, "could not be read"},
        {"import good", 2, "--mode"},
        {"import good --mode overwrite", 2, "--mode"},
        {"import", 2, "too few"},
        {"export nowhere/a", 1, "could not be written"},
        {"export folder", 1, "could not be written"},
    };
    for (const auto &[line, code, words] : cases) {
        const CommandResult result = commands.run(QString::fromLatin1(line));
        EXPECT_EQ(result.exitCode, code) << line;
        EXPECT_TRUE(result.out.isEmpty()) << line;
        EXPECT_TRUE(result.err.contains(words)) << line << ": " << result.err.toStdString();
        EXPECT_EQ(result.err.count('\n'), 1) << line;
        EXPECT_FALSE(result.err.contains('\x1b')) << "a terminal obeys it";
    }
    EXPECT_EQ(*commands.defaults.get<QByteArray>(LinkStore::linksBaseKey()), before);
    const QByteArray mismatch = commands.run(u"verify changed"_s).err;
    EXPECT_TRUE(mismatch.contains(linksChecksum(decodeExchange(good)->links).toLatin1())) << "both digests";
    EXPECT_TRUE(mismatch.contains(linksChecksum(decodeExchange(commands.content(u"changed"_s))->links).toLatin1()));
}

TEST(SyncCommands, WhatOtherMachinesAreCalledIsOnlyShown)
{
    Commands commands;
    FakeSyncControl sync(commands.notifications);
    sync.stored = {SyncPlace::Kind::Folder, u"/shared"_s};
    sync.current.lastSyncedFromDevice = u"Attic\x1b[2J\nFailure: none 🏠"_s;
    commands.context.sync = [&sync]() -> SyncControl & { return sync; };
    const QByteArray out = commands.run(u"sync status"_s).out;
    EXPECT_TRUE(out.contains("\nLast change from: Attic [2J Failure: none 🏠\n")) << out.toStdString();
}

} // namespace
} // namespace orvelle::test
