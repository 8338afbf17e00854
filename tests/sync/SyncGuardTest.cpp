#include "sync/SyncGuard.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

LinkList numbered(int from, int to)
{
    LinkList links;
    for (int i = from; i < to; ++i)
        links += namedLink(QString::number(i));
    return links;
}

TEST(MassRemoval, IsAGreatShareOrAGreatNumber)
{
    const struct {
        int had;
        int lost;
        bool isMass;
    } cases[] = {{5, 5, false},    {6, 6, true},    {25, 5, false},        {30, 6, false},       {29, 6, true},
                 {100, 20, false}, {100, 21, true}, {10'000, 1000, false}, {10'000, 1001, true}, {0, 0, false}};
    for (const auto &one : cases) {
        const auto removal = massRemoval(numbered(0, one.had), numbered(one.lost, one.had + 100));
        ASSERT_EQ(removal.has_value(), one.isMass) << one.lost << " of " << one.had;
        if (removal) {
            EXPECT_EQ(*removal, (MassRemoval{one.lost, one.had}));
        }
    }
}

TEST(MassRemoval, CountsIdentitiesAtAllLevels)
{
    const LinkList before = treeFrom(QStringLiteral("a f[b c g[d e]] h"));
    EXPECT_EQ(massRemoval(before, treeFrom(QStringLiteral("h"))), (MassRemoval{7, 8}));
    EXPECT_EQ(massRemoval(before, treeFrom(QStringLiteral("h[d[c b] e f] g a"))), std::nullopt) << "moved";
    EXPECT_EQ(massRemoval(before + before, before), std::nullopt) << "copies of one item";
}

} // namespace
} // namespace orvelle::test
