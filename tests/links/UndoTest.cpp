#include "StoreFixture.h"
#include "links/LinkTree.h"
#include "links/TreeDifference.h"

#include <QFile>

#include <algorithm>
#include <functional>
#include <random>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

class RandomEditor
{
public:
    explicit RandomEditor(quint32 seed) : m_random(seed) {}

    int below(qsizetype bound) { return static_cast<int>(m_random() % static_cast<quint32>(bound)); }

    void edit(LinkStore &store)
    {
        QList<LinkItem> all;
        walk(store.links(), [&all](const LinkItem &item) { all += item; });
        LinkItem fresh = namedLink(u"n%1"_s.arg(m_random()));
        if (below(3) == 0) {
            fresh.type = LinkType::Group;
            fresh.children.emplace();
        }
        if (all.isEmpty() || below(3) == 0) {
            store.addLink(fresh);
            return;
        }
        LinkItem picked = all[below(all.size())];
        switch (below(3)) {
        case 0:
            store.addLinkToGroup(fresh, picked.id);
            break;
        case 1:
            store.removeLink(picked.id);
            break;
        default:
            picked.noteContent = QString(QChar(below(0x300)));
            store.updateLink(picked);
        }
    }

private:
    std::mt19937 m_random;
};

TEST_F(StoreTest, UndoAndRedoRestoreEveryStoredByte)
{
    const quint32 seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomEditor random(seed);
    put(u"a f[b g[c]] d"_s);
    start();
    QList<QByteArray> states = {storedBytes()};
    for (int i = 0; i < 60; ++i) {
        random.edit(*store);
        clock.advance(std::chrono::seconds(1));
        if (states.last() != storedBytes())
            states += storedBytes();
    }
    const qsizetype newest = states.size() - 1;
    qsizetype at = newest;
    for (int i = 0; i < 200; ++i) {
        const bool back = random.below(3) > 0;
        const bool possible = back ? at > 0 : at < newest;
        ASSERT_EQ(back ? store->canUndo() : store->canRedo(), possible);
        ASSERT_EQ(back ? store->undo() : store->redo(), possible);
        at += possible ? (back ? -1 : 1) : 0;
        ASSERT_EQ(storedBytes(), states[at]) << "step " << i;
    }
    store->addLink(namedLink(u"new"_s));
    EXPECT_FALSE(store->canRedo());
}

TEST_F(StoreTest, TheOldestStepsAreForgotten)
{
    start();
    for (int i = 0; i < 205; ++i)
        store->addLink(namedLink(u"n"_s));
    int steps = 0;
    while (store->undo())
        ++steps;
    EXPECT_EQ(steps, 200);
    EXPECT_EQ(store->links().size(), 5);
}

TEST_F(StoreTest, FewerLargeStepsAreKept)
{
    put(u"a"_s);
    start();
    for (char16_t c = u'a'; c < u'm'; ++c) {
        ASSERT_TRUE(store->edit(LinkStore::Step::Ordinary, {}, [c](LinkList &links) {
            links.first().noteContent = QString(1'000'000, c);
            return true;
        }));
    }
    int steps = 0;
    while (store->undo())
        ++steps;
    EXPECT_EQ(steps, 10);
}

TEST(TreeDifference, LeadsFromATreeOnlyWhereItStillApplies)
{
    const LinkList from = treeFrom(u"a f[b g[c d] e] h"_s);
    LinkList to = from;
    const LinkItem gone = *findItem(from, [](const LinkItem &item) { return item.name == u"c"; });
    ASSERT_TRUE(removeItem(to, gone.id));
    const TreeDifference step = TreeDifference::between(from, to);
    const auto renamed = [&from](const QString &name) {
        LinkList tree = from;
        LinkItem item = *findItem(from, [&name](const LinkItem &each) { return each.name == name; });
        item.name += u'!';
        EXPECT_TRUE(replaceItem(tree, item));
        return tree;
    };
    struct Case {
        LinkList tree;
        std::optional<QString> led;
    };
    const Case cases[] = {
        {from, u"a f[b g[d] e] h"_s},
        {renamed(u"h"_s), u"a f[b g[d] e] h!"_s},
        {renamed(u"d"_s), u"a f[b g[d!] e] h"_s},
        {to, std::nullopt},
        {treeFrom(u"a f[b g[x d] e] h"_s), std::nullopt},
        {treeFrom(u""_s), std::nullopt},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(outlineOf(c.tree).toStdString());
        LinkList tree = c.tree;
        EXPECT_EQ(step.applyTo(tree), c.led.has_value());
        EXPECT_EQ(outlineOf(tree), c.led.value_or(outlineOf(c.tree)));
    }
}

TEST(TreeDifference, HoldsWhatDiffersAndNotTheTree)
{
    LinkList from;
    for (int group = 0; group < 20; ++group) {
        from += LinkItem::make(u"g"_s, {}, LinkType::Group, Timestamp{0});
        for (int i = 0; i < 50; ++i)
            *from.last().children += LinkItem::make(u"n"_s, u"http://n.example/"_s, LinkType::Url, Timestamp{0});
    }
    struct Case {
        const char *what;
        std::function<void(LinkList &)> edit;
    };
    const auto some = qsizetype(sizeof(LinkItem));
    const Case cases[] = {
        {"an item goes to the last group",
         [](LinkList &tree) { tree.last().children->append(tree.first().children->takeFirst()); }},
        {"all groups change their places", [](LinkList &tree) { std::reverse(tree.begin(), tree.end()); }},
        {"a group is renamed and filled",
         [](LinkList &tree) {
             tree[7].name = u"renamed"_s;
             tree[7].children->prepend(namedLink(u"new"_s));
         }},
        {"a group goes", [](LinkList &tree) { tree.removeAt(3); }},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        LinkList to = from;
        c.edit(to);
        const TreeDifference there = TreeDifference::between(from, to);
        EXPECT_LT(there.bytes(), 10 * some);
        LinkList tree = from;
        EXPECT_TRUE(there.applyTo(tree));
        EXPECT_TRUE(tree == to);
        EXPECT_TRUE(TreeDifference::between(to, from).applyTo(tree));
        EXPECT_TRUE(tree == from);
    }
    EXPECT_GT(TreeDifference::between({}, from).bytes(), 1000 * some);
}

TEST_F(StoreTest, DestructiveStepsLeaveSnapshots)
{
    put(u"a b c"_s);
    start();
    store->addLink(namedLink(u"d"_s));
    EXPECT_EQ(snapshots.list(false).size(), 0) << "adding destroys nothing";
    store->removeLink(idOf(u"a"_s));
    ASSERT_EQ(snapshots.list(false).size(), 1);
    EXPECT_EQ(snapshots.list(false).first().reason, u"remove");
    EXPECT_EQ(snapshots.list(false).first().itemCount, 4);

    // A later process has no history, but the snapshots.
    start();
    EXPECT_FALSE(store->canUndo());
    EXPECT_TRUE(store->undoLastDestructiveStep());
    EXPECT_EQ(stored(), u"a b c d");
    EXPECT_TRUE(store->undoLastDestructiveStep());
    EXPECT_EQ(stored(), u"b c d") << "the undo was such a step itself";
    const QString oldest = snapshots.list(false).last().name;
    EXPECT_TRUE(store->restoreSnapshot(oldest));
    EXPECT_EQ(stored(), u"a b c d");
    EXPECT_FALSE(store->restoreSnapshot(u"nonsense"_s));
    EXPECT_TRUE(store->undo());
    EXPECT_EQ(stored(), u"b c d");
}

TEST_F(StoreTest, AStepThatFillsAnEmptyTreeCanBeTakenBackToo)
{
    put(u"a"_s);
    start();
    store->removeLink(idOf(u"a"_s));
    ASSERT_TRUE(store->restoreSnapshot(snapshots.list(false).first().name));
    EXPECT_EQ(stored(), u"a");
    EXPECT_TRUE(store->undoLastDestructiveStep());
    EXPECT_EQ(stored(), u"");
}

TEST_F(StoreTest, NoSnapshotNoDestruction)
{
    put(u"a b"_s);
    QFile obstacle(folder.filePath(u"snapshots"_s));
    ASSERT_TRUE(obstacle.open(QFile::WriteOnly));
    start();
    EXPECT_FALSE(store->removeLink(idOf(u"a"_s)));
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(shown(), u"a b");
    EXPECT_EQ(stored(), u"a b");
}

TEST_F(StoreTest, AReplacedTreeOfAnotherProcessIsKeptAsASnapshot)
{
    put(u"a"_s);
    start();
    otherProcessPuts(u"x y"_s);
    ASSERT_TRUE(store->edit(LinkStore::Step::Destructive, u"import"_s, [](LinkList &links) {
        links = treeFrom(u"i"_s);
        return true;
    }));
    EXPECT_EQ(stored(), u"i");
    const auto kept = snapshots.load(snapshots.list(false).first().name, false);
    ASSERT_TRUE(kept);
    EXPECT_EQ(outlineOf(*kept), u"x y");
    EXPECT_TRUE(store->undo());
    EXPECT_EQ(stored(), u"x y");
}

} // namespace
} // namespace orvelle::test
