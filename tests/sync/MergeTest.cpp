#include "DatedOutline.h"
#include "links/LinkTree.h"
#include "support/Outline.h"
#include "sync/LinkMerge.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr Timestamp exportDate{10};

struct Case {
    const char *situation;
    const char *local;
    const char *remote;
    const char *merged;
    const char *removed = ""; ///< names in the log: what left its list
    bool preferRemoteOrder = false;
};

void PrintTo(const Case &one, std::ostream *out)
{
    *out << one.situation;
}

class Merge : public testing::TestWithParam<Case>
{
};

TEST_P(Merge, Situation)
{
    const Case &one = GetParam();
    const LinkList local = dated(QString::fromLatin1(one.local));
    const LinkList remote = dated(QString::fromLatin1(one.remote));
    QStringList lines;
    QStringList expected;
    for (const QString &name : QString::fromLatin1(one.removed).split(u' ', Qt::SkipEmptyParts))
        expected += u"Auto-merge: suppression de '%1' (supprimé sur l'autre Mac)"_s.arg(name);
    const auto log = [&lines](const QString &line) { lines += line; };
    const LinkList merged = autoMergeLinks(local, remote, exportDate, one.preferRemoteOrder, log);
    EXPECT_EQ(outlineWithDates(merged).toStdString(), one.merged);
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(autoMergeLinks(merged, remote, exportDate, one.preferRemoteOrder, {}), merged) << "a second time";
}

const Case cases[] = {
    {"equal dates keep the local copy and order", "a b", "b a", "a b"},
    {"newer there", "a1 b", "a3 b", "a3 b"},
    {"newer here", "a3", "a2", "a3"},
    {"new there, in its order, behind what is here", "b", "x a b c", "b x a c"},
    {"deleted there", "a b f[c] d", "b d", "b d", "a f"},
    {"created here after the document", "A b", "b", "A b"},
    {"only here, but nothing was edited since", "a b f[c]", "b f[]", "a b f[c]", "", true},
    {"deleted here comes back", "a", "a b", "a b"},
    {"a group's members merge although the local copy wins", "f5[a b]", "f2[b c]", "f5[b c]", "a"},
    {"a group's members merge although the other copy wins", "f2[a A]", "f5[b c]", "f5[A b c]", "a"},
    {"moved into a group there", "a f[]", "f[a3]", "f[a3]"},
    {"moved into another group there", "f[a] g[]", "f[] g[a3]", "f[] g[a3]", "a"},
    {"moved out of a group there", "f[a b]", "f[b] a4", "f[b] a4", "a"},
    {"moved to another group there, edited here later", "f[a7] g[]", "f[] g[a3]", "f[a7] g[]"},
    {"moved to different groups, here later", "f[] g[a5] h[]", "f[] g[] h[a4]", "f[] g[a5] h[]"},
    {"moved to different groups, there later", "f[] g[a4] h[]", "f[] g[] h[a5]", "f[] g[] h[a5]", "a"},
    {"newer move into a deleted group", "f[a7]", "a", "a10", "f"},
    {"an item made in a deleted group", "f[a g[A]] b", "b", "b A10", "f"},
    {"an item made in a group inside a deleted one", "h[f[A a]] b", "b h[]", "h[A10] b", "f"},
    {"a group with a new member moved there", "f[a A] h[]", "h[f3[a]]", "h[f3[a A]]"},
    {"a group moved there, one of its members newer here", "f[a7 b] h[]", "h[f3[a2 b]]", "h[f3[b a7]]"},
    {"groups moved into each other", "f5[g5[a]]", "g7[f4[a]]", "f5[] g7[a]"},
    {"both made the same group", "F60[A]", "F60[B]", "F60[A B]"},
    {"twice in the local list", "a5 b a9", "a7 b", "b a9"},
    {"twice in the other list", "b", "a5 b a9 a9", "b a9"},
    {"twice in the other list, matched", "a6", "a5 a9 a7", "a9"},
    {"a group twice in the local list", "f[A] f[B c]", "f[d]", "f[A d B]", "c"},
    {"a group twice in the other list", "f[a]", "f[a] f[b]", "f[a b]"},
    {"a group with itself inside", "f[A f9[B]]", "f[]", "f10[B A]"},
    {"no members on one side", "f[]", "f[a]", "f[a]"},
};

INSTANTIATE_TEST_SUITE_P(Tables, Merge, testing::ValuesIn(cases));

/// A pair of copies of one item under test, merged at the document's date.
LinkItem mergedPair(const LinkItem &local, const LinkItem &remote)
{
    return autoMergeLinks({local}, {remote}, exportDate, false, {}).at(0);
}

TEST(MergePair, ANotesTextIsChosenByItself)
{
    LinkItem note = namedLink(u"n"_s);
    note.type = LinkType::Note;
    note.modifiedAt = note.contentModifiedAt = Timestamp{2};
    note.bookmarkData = "here";
    LinkItem renamed = note;
    renamed.name = u"new title"_s;
    renamed.modifiedAt = Timestamp{5};
    LinkItem rewritten = note;
    rewritten.noteContent = u"new text"_s;
    rewritten.noteRTFData = "rtf";
    rewritten.modifiedAt = rewritten.contentModifiedAt = Timestamp{6};
    rewritten.bookmarkData = "there";
    for (const LinkItem &merged : {mergedPair(renamed, rewritten), mergedPair(rewritten, renamed)}) {
        EXPECT_EQ(merged.noteContent, u"new text"_s);
        EXPECT_EQ(merged.noteRTFData, "rtf");
        EXPECT_EQ(merged.contentModifiedAt, Timestamp{6});
    }
    renamed.modifiedAt = Timestamp{7};
    EXPECT_EQ(mergedPair(renamed, rewritten).name, u"new title");
    EXPECT_EQ(mergedPair(renamed, rewritten).bookmarkData, "here");

    LinkItem blank = note;
    blank.contentModifiedAt.reset();
    blank.modifiedAt = Timestamp{9};
    EXPECT_EQ(mergedPair(rewritten, blank).noteContent, u"new text"_s) << "there was no text that could be newer";
    EXPECT_EQ(mergedPair(rewritten, blank).modifiedAt, Timestamp{9});
    EXPECT_EQ(mergedPair(blank, rewritten).noteContent, u"new text"_s);

    LinkItem moved = renamed;
    LinkItem group = namedLink(u"g"_s);
    group.type = LinkType::Group;
    group.children = LinkList{moved};
    const LinkList merged = autoMergeLinks({rewritten}, {group}, exportDate, false, {});
    EXPECT_EQ(outlineOf(merged), u"g[new title]");
    EXPECT_EQ(merged.at(0).children->at(0).noteContent, u"new text"_s) << "moved there, rewritten here";
}

TEST(MergePair, AnItemThatChangedItsKindLosesNothing)
{
    const LinkList group = dated(u"f2[A b]"_s);
    LinkList address = dated(u"f7"_s);
    EXPECT_EQ(outlineOf(autoMergeLinks(group, address, exportDate, false, {})), u"f A") << "no group any more";
    EXPECT_EQ(outlineOf(autoMergeLinks(address, group, exportDate, false, {})), u"f A b");
    address[0].modifiedAt = Timestamp{1};
    EXPECT_EQ(outlineOf(autoMergeLinks(group, address, exportDate, false, {})), u"f[A]");
    LinkItem note = address.at(0);
    note.type = LinkType::Note;
    note.noteContent = u"text"_s;
    note.contentModifiedAt = Timestamp{0};
    note.modifiedAt = Timestamp{3};
    EXPECT_EQ(mergedPair(address.at(0), note), note) << "the other side has no text that could be newer";
}

TEST(MergePair, WhatWasMovedThereKeepsItsBookmark)
{
    LinkList local = dated(u"f[a b] g[]"_s);
    (*local[0].children)[0].bookmarkData = "here";
    LinkList remote = dated(u"f[b] g[h[a5]]"_s);
    (*(*remote[1].children)[0].children)[0].bookmarkData = "there";
    const LinkList merged = autoMergeLinks(local, remote, exportDate, false, {});
    ASSERT_EQ(outlineOf(merged), u"f[b] g[h[a]]");
    EXPECT_EQ(merged.at(1).children->at(0).children->at(0).bookmarkData, "here");
}

TEST(MergePair, MissingDatesAreTheDistantPast)
{
    LinkList local = dated(u"a b"_s);
    for (LinkItem &item : local) {
        item.createdAt.reset();
        item.modifiedAt.reset();
    }
    const LinkList remote = dated(u"b"_s);
    EXPECT_EQ(autoMergeLinks(local, remote, Timestamp{-1e9}, false, {}), remote);
    EXPECT_EQ(autoMergeLinks(local, remote, exportDate, true, {}).size(), 2);
    EXPECT_TRUE(prefersRemoteOrder(local, Timestamp{-1e9}));
    EXPECT_FALSE(prefersRemoteOrder(dated(u"a f[b10]"_s), exportDate)) << "not strictly later";
}

} // namespace
} // namespace orvelle::test
