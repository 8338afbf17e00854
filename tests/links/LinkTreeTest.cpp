#include "links/LinkTree.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct TreeCase {
    const char *situation;
    QString before;
    std::function<bool(LinkList &)> operation;
    QString after; ///< null: refused
};

TEST(LinkTree, OperationsReachEveryDepthAndRefuseTheUnknown)
{
    const auto remove = [](const QString &name) {
        return [name](LinkList &links) { return removeItem(links, idOf(name)); };
    };
    const auto append = [](const QString &group) {
        return [group](LinkList &links) { return appendToGroup(links, idOf(group), namedLink(u"n"_s)); };
    };
    const auto rename = [](const QString &name) {
        return [name](LinkList &links) {
            LinkItem item = namedLink(name);
            item.name = u"X"_s;
            return replaceItem(links, item);
        };
    };
    const TreeCase cases[] = {
        {"remove at the root", u"a b c"_s, remove(u"b"_s), u"a c"_s},
        {"remove deep", u"a f[b g[c]] d"_s, remove(u"c"_s), u"a f[b g[]] d"_s},
        {"remove a group with its subtree", u"a f[b g[c]] d"_s, remove(u"f"_s), u"a d"_s},
        {"remove what is not there", u"a f[b]"_s, remove(u"z"_s), {}},
        {"append to a nested group", u"f[g[c] b]"_s, append(u"g"_s), u"f[g[c n] b]"_s},
        {"append to an empty group", u"f[]"_s, append(u"f"_s), u"f[n]"_s},
        {"append to a link", u"a f[]"_s, append(u"a"_s), {}},
        {"append to nothing", u"a"_s, append(u"z"_s), {}},
        {"replace deep", u"f[g[c d]]"_s, rename(u"d"_s), u"f[g[c X]]"_s},
        {"replace what is not there", u"f[g[c]]"_s, rename(u"z"_s), {}},
    };
    for (const TreeCase &c : cases) {
        const LinkList before = treeFrom(c.before);
        LinkList links = before;
        EXPECT_EQ(c.operation(links), !c.after.isNull()) << c.situation;
        EXPECT_EQ(outlineOf(links), c.after.isNull() ? c.before : c.after) << c.situation;
        EXPECT_EQ(outlineOf(before), c.before) << c.situation;
    }
}

TEST(LinkTree, UntouchedBranchesStayShared)
{
    const LinkList before = treeFrom(u"f[a b] g[h[c] d]"_s);
    LinkList after = before;
    ASSERT_TRUE(removeItem(after, idOf(u"d"_s)));
    EXPECT_TRUE(after.at(0).children->isSharedWith(*before.at(0).children));
    EXPECT_TRUE(after.at(1).children->at(0).children->isSharedWith(*before.at(1).children->at(0).children));
    LinkList same = before;
    EXPECT_FALSE(changeItems(same, [](const LinkItem &) { return std::nullopt; }));
    EXPECT_TRUE(same.isSharedWith(before));
}

TEST(LinkTree, CountsAndMeasures)
{
    const std::tuple<QString, int, int> cases[] = {
        {u""_s, 0, 0}, {u"a b"_s, 2, 1}, {u"f[]"_s, 1, 1}, {u"a f[b g[c]] d"_s, 6, 3}};
    for (const auto &[outline, count, levels] : cases) {
        EXPECT_EQ(countAll(treeFrom(outline)), count) << qPrintable(outline);
        EXPECT_EQ(treeLevels(treeFrom(outline)), levels) << qPrintable(outline);
    }
}

} // namespace
} // namespace orvelle::test
