#include "sync/SyncAnalysis.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

QString shown(const SyncAnalysis &analysis)
{
    QStringList parts;
    for (const SyncChange &change : analysis.changes) {
        const LinkItem &item = change.localLink ? *change.localLink : *change.importedLink;
        parts += item.name + u':' + rawValue(change.category) + (change.isSelected ? u""_s : u" kept"_s);
    }
    return parts.join(u' ');
}

TEST(SyncAnalysis, EachIdentityGivesOneChange)
{
    LinkList local = treeFrom(u"a b f[c] g[]"_s);
    LinkList imported = treeFrom(u"b x f[] g[c]"_s);
    EXPECT_EQ(shown(analyzeSyncChanges(local, imported, Timestamp{2000})),
              u"a:removed b:identical f:identical c:updatedLocal g:identical x:added");
    (*imported[3].children)[0].modifiedAt = Timestamp{3000};
    EXPECT_EQ(shown(analyzeSyncChanges(local, imported, Timestamp{1000})),
              u"a:removed kept b:identical f:identical c:updatedRemote g:identical x:added");
}

TEST(SyncAnalysis, PairsGoByWhatAMergeWouldTake)
{
    const LinkItem base = namedLink(u"a"_s);
    LinkItem other = base;
    other.modifiedAt = Timestamp{5000};
    other.bookmarkData = "there";
    EXPECT_EQ(compareSynced(base, other).category, SyncCategory::Identical) << "dates and bookmarks only";
    other.path = u"https://b.example"_s;
    other.customIconColor = u"red"_s;
    other.customIconName = u"star.fill"_s;
    EXPECT_EQ(compareSynced(base, other).category, SyncCategory::UpdatedRemote);
    EXPECT_EQ(compareSynced(other, base).category, SyncCategory::UpdatedLocal);
    EXPECT_EQ(
        compareSynced(base, other).details,
        QStringList({u"sync.details.pathChanged"_s, u"sync.details.colorChanged"_s, u"sync.details.iconChanged"_s}));
    other.modifiedAt = base.modifiedAt;
    EXPECT_EQ(compareSynced(base, other).category, SyncCategory::UpdatedLocal) << "ties are the local one's";

    LinkItem note = base;
    note.type = LinkType::Note;
    note.contentModifiedAt = Timestamp{1000};
    LinkItem rewritten = note;
    rewritten.noteContent = u"text"_s;
    rewritten.contentModifiedAt = Timestamp{4000};
    note.name = u"renamed"_s;
    note.modifiedAt = Timestamp{5000};
    EXPECT_EQ(compareSynced(note, rewritten).category, SyncCategory::UpdatedRemote) << "the text alone";
}

TEST(SyncAnalysis, OfDuplicatesTheNewestIsKept)
{
    LinkList local = treeFrom(u"a f[a]"_s);
    LinkList imported = treeFrom(u"a f[]"_s);
    SyncAnalysis analysis = analyzeSyncChanges(local, imported, {});
    ASSERT_EQ(analysis.count(SyncCategory::Duplicate), 1);
    EXPECT_EQ(analysis.duplicateGroups.at(0).instances.size(), 3);
    EXPECT_EQ(analysis.duplicateGroups.at(0).keepIndex, 0);
    EXPECT_EQ(analysis.duplicateGroups.at(0).path, local.at(0).path);
    imported[0].modifiedAt = Timestamp{2000};
    EXPECT_EQ(analyzeSyncChanges(local, imported, {}).duplicateGroups.at(0).keepIndex, 2);
    (*local[1].children)[0].modifiedAt = Timestamp{2000};
    EXPECT_EQ(analyzeSyncChanges(local, imported, {}).duplicateGroups.at(0).keepIndex, 1) << "the local one of equals";
    EXPECT_EQ(analysis.count(SyncCategory::Added) + analysis.count(SyncCategory::Removed), 0);
}

} // namespace
} // namespace orvelle::test
