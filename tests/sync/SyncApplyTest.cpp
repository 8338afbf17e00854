#include "DatedOutline.h"
#include "sync/LinkMerge.h"
#include "sync/SyncAnalysis.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr Timestamp exportDate{10};
constexpr Timestamp now{20};

struct Case {
    const char *situation;
    const char *local;
    const char *imported;
    const char *applied;
    SyncResult result = {};
    const char *deselected = ""; ///< names
    int keepIndex = -1;          ///< as the user set it; -1 for as it was
};

void PrintTo(const Case &one, std::ostream *out)
{
    *out << one.situation;
}

/// Names say the dates, so that an update can be seen.
LinkList marked(const char *outline)
{
    LinkList links = dated(QString::fromLatin1(outline));
    changeItems(links, [](const LinkItem &old) {
        LinkItem item = old;
        item.path = u"at %1"_s.arg(itemDate(item).seconds);
        return std::optional(item);
    });
    return links;
}

SyncAnalysis analysisFor(const Case &one, const LinkList &local, const LinkList &imported)
{
    SyncAnalysis analysis = analyzeSyncChanges(local, imported, exportDate);
    const QStringList deselected = QString::fromLatin1(one.deselected).split(u' ');
    for (SyncChange &change : analysis.changes) {
        const LinkItem &item = change.localLink ? *change.localLink : *change.importedLink;
        change.isSelected = change.isSelected && !deselected.contains(item.stableId);
    }
    for (DuplicateGroup &group : analysis.duplicateGroups)
        group.keepIndex = one.keepIndex < 0 ? group.keepIndex : one.keepIndex;
    return analysis;
}

class SyncApply : public testing::TestWithParam<Case>
{
};

TEST_P(SyncApply, Situation)
{
    const Case &one = GetParam();
    const LinkList local = marked(one.local);
    const LinkList imported = marked(one.imported);
    const SyncAnalysis analysis = analysisFor(one, local, imported);
    const AppliedSync applied = applySyncChanges(local, imported, analysis, now);
    EXPECT_EQ(outlineWithDates(applied.links).toStdString(), one.applied);
    EXPECT_TRUE(applied.result == one.result)
        << applied.result.updatedCount << " updated, " << applied.result.addedCount << " added, "
        << applied.result.removedCount << " removed, " << applied.result.duplicatesResolved << " resolved";
    const AppliedSync again = applySyncChanges(applied.links, imported, analysis, Timestamp{30});
    EXPECT_EQ(again.links, applied.links) << "the same once more";
    EXPECT_TRUE(again.result == SyncResult());
}

const Case cases[] = {
    {"nothing to do", "a f[b]", "a f[b]", "a f[b]"},
    {"one of each", "a b d", "b5 d x", "b5 d x", {1, 1, 1, 0}},
    {"nothing selected", "a b", "b5 x", "a b", {}, "a b x"},
    {"created here since", "A b", "b", "A b"},
    {"newer here", "b7", "b5", "b7"},
    {"a group with members", "a", "a f[b g[c]]", "a f[b g[c]]", {0, 4, 0, 0}},
    {"members without their group", "a", "a f[b g[c]]", "a b g[c]", {0, 3, 0, 0}, "f"},
    {"members without a group in between", "a", "a f[b g[c]]", "a f[b c]", {0, 3, 0, 0}, "g"},
    {"a group without a member", "a", "a f[b c]", "a f[c]", {0, 2, 0, 0}, "b"},
    {"a removed group", "f[a g[b]] c", "c", "c", {0, 0, 4, 0}},
    {"a removed group leaves what stays", "x f[a g[b]] c", "x c", "x a b c", {0, 0, 2, 0}, "a b"},
    {"out of a removed group", "f[a b] c", "b5 c", "c b5", {1, 0, 2, 0}},
    {"into a new group", "a b", "f[a5] b", "b f[a5]", {1, 1, 0, 0}},
    {"into a new group that is not wanted", "a b", "f[a5] b", "a5 b", {1, 0, 0, 0}, "f"},
    {"into another group, but moved here later", "f[a7] g[]", "f[] g[a5]", "f[a7] g[]"},
    {"groups moved into each other", "f9[g1[a]]", "g5[f5[a]]", "f9[] g5[a]", {1, 0, 0, 0}},
    {"twice here", "a5 b f[a9]", "b f[]", "a9 b f[]", {0, 0, 0, 1}, "a"},
    {"twice here and not there", "a5 b f[a9]", "b f[]", "b f[]", {0, 0, 1, 1}},
    {"a group twice here", "f[a] f5[b]", "f5[a b]", "f5[a b]", {0, 0, 0, 1}},
    {"the older one is wanted", "a5 b a9", "b a9", "a20 b", {0, 0, 0, 1}, "", 0},
    {"twice there", "a5", "a2 f[a9]", "f[a9]", {1, 1, 0, 0}},
    {"twice there, not wanted", "a5", "a9 a9", "a5", {}, "a"},
};

INSTANTIATE_TEST_SUITE_P(Tables, SyncApply, testing::ValuesIn(cases));

TEST(SyncApply, KeepsWhatIsOfThisMachine)
{
    LinkList local = marked("a");
    local[0].bookmarkData = "here";
    LinkList imported = marked("a5");
    imported[0].id = QUuid::createUuid();
    imported[0].bookmarkData = "there";
    const LinkList applied =
        applySyncChanges(local, imported, analyzeSyncChanges(local, imported, exportDate), now).links;
    EXPECT_EQ(applied.at(0).id, local.at(0).id);
    EXPECT_EQ(applied.at(0).bookmarkData, "here");
    EXPECT_EQ(applied.at(0).path, u"at 5");
}

} // namespace
} // namespace orvelle::test
