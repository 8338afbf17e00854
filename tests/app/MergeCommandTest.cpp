#include "app/CommandShell.h"
#include "links/exchange/ExchangeDocument.h"
#include "support/Outline.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct MergeShell : CommandShell {
    MergeShell() : CommandShell(treeFrom(u"own"_s)) {}

    void write(const QString &name, const LinkList &links, double date)
    {
        ExportData document;
        document.links = links;
        document.exportDate = Timestamp{date};
        CommandShell::write(name, encodeExchange(document));
    }

    ExportData read(const QString &name) const
    {
        QFile file(folder.filePath(name));
        const auto document = decodeExchange(file.open(QFile::ReadOnly) ? file.readAll() : QByteArray());
        EXPECT_TRUE(document);
        return document ? *document : ExportData();
    }
};

TEST(MergeCommand, MergesAtTheOtherDocumentsDateAndLeavesAbsentDatesAbsent)
{
    MergeShell shell;
    LinkList local = treeFrom(u"a b f[c]"_s);
    local[0].createdAt.reset();
    local[0].modifiedAt.reset();
    local[1].name = u"b\u001b[2J"_s;
    local[2].modifiedAt = Timestamp{6000};
    shell.write(u"l"_s, local, 4000);
    shell.write(u"r"_s, treeFrom(u"a d f[]"_s), 5000);

    const CommandResult result = shell.run(u"merge l r -o out"_s);
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(result.err.toStdString(), "Auto-merge: suppression de 'b [2J' (supprimé sur l'autre Mac)\n"
                                        "Auto-merge: suppression de 'c' (supprimé sur l'autre Mac)\n");
    const ExportData merged = shell.read(u"out"_s);
    EXPECT_EQ(outlineOf(merged.links), u"a f[] d");
    EXPECT_EQ(merged.links.at(0).modifiedAt, Timestamp{1000}) << "the copy with a date is the newer one";
    EXPECT_EQ(merged.checksum, linksChecksum(merged.links));
    EXPECT_EQ(merged.exportDate, Timestamp{5000});

    shell.write(u"early"_s, treeFrom(u"a"_s), 900);
    EXPECT_EQ(shell.run(u"merge l early -o out2"_s).err, "") << "created since";
    local.removeLast();
    shell.write(u"untouched"_s, local, 4000);
    EXPECT_EQ(shell.run(u"merge untouched r -o out3"_s).err, "") << "nothing was edited since";
    EXPECT_FALSE(shell.read(u"out2"_s).links.at(1).contentModifiedAt);
    EXPECT_EQ(decodeExchange(shell.run(u"merge l r -o -"_s).out)->links, merged.links);
    EXPECT_EQ(outlineOf(shell.store.links()), u"own");
}

TEST(MergeCommand, RefusalsNameTheDocumentAndWriteNothing)
{
    MergeShell shell;
    shell.write(u"l"_s, treeFrom(u"a"_s), 1);
    ASSERT_TRUE(QFile::copy(shell.folder.filePath(u"l"_s), shell.folder.filePath(u"broken"_s)));
    ASSERT_TRUE(QFile::resize(shell.folder.filePath(u"broken"_s), 20));
    const std::tuple<const char *, int, const char *> cases[] = {
        {"merge l l", 2, "-o"},
        {"merge l l -o", 2, "-o needs a value"},
        {"merge l -o out", 2, "too few"},
        {"merge l none -o out", 1, "none could not be read"},
        {"merge broken l -o out", 1, "broken: "},
        {"merge l l -o nowhere/out", 1, "could not be written"},
    };
    for (const auto &[line, code, words] : cases) {
        const CommandResult result = shell.run(QString::fromLatin1(line));
        EXPECT_EQ(result.exitCode, code) << line;
        EXPECT_TRUE(result.err.contains(words)) << line << ": " << result.err.toStdString();
        EXPECT_FALSE(QFile::exists(shell.folder.filePath(u"out"_s))) << line;
    }
}

} // namespace
} // namespace orvelle::test
