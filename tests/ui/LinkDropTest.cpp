#include "UiWorld.h"
#include "support/Outline.h"
#include "ui/settings/LinkDropDelegate.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr int maxLevel = 3;

class LinkDrop : public ::testing::Test
{
protected:
    void show(const QString &outline)
    {
        world.links.edit(LinkStore::Step::Ordinary, u"test"_s, [&outline](LinkList &links) {
            links = treeFrom(outline);
            return true;
        });
    }

    LinkDropDelegate row(const QString &name, double height = 40)
    {
        const LinkItem item = world.links.find(idOf(name)).value_or(namedLink(name));
        const int level = getDepth(world.links.links(), idOf(name)).value_or(0);
        return {item, level, maxLevel, world.links, height, state};
    }

    QString shown() const { return outlineOf(world.links.links()); }

    UiWorld world;
    DropState state;
};

TEST_F(LinkDrop, ThePlaceInTheRowTellsWhereItLands)
{
    using enum DropPosition;
    struct Case {
        QString row;
        double height;
        double y;
        DropPosition position;
    };
    show(u"a e[] f[b g[c h[]]]"_s);
    const Case cases[] = {
        {u"a"_s, 0, 10, Before},  {u"a"_s, 0, 20, After},   {u"a"_s, -5, 14.9, Before}, {u"a"_s, 40, 19.9, Before},
        {u"a"_s, 40, 20, After},  {u"e"_s, 40, 5, Before},  {u"e"_s, 40, 10, Inside},   {u"e"_s, 40, 20, Inside},
        {u"e"_s, 40, 30, Inside}, {u"e"_s, 40, 35, After},  {u"f"_s, 40, 5, Before},    {u"f"_s, 40, 35, Inside},
        {u"g"_s, 40, 39, Inside}, {u"h"_s, 40, 19, Before}, {u"h"_s, 40, 21, After},    {u"e"_s, 0, 29, After},
    };
    for (const Case &c : cases)
        EXPECT_EQ(row(c.row, c.height).position(c.y), c.position) << qPrintable(c.row) << ' ' << c.height << ' ' << c.y;
    EXPECT_TRUE(row(u"g"_s).canAcceptDrop());
    EXPECT_FALSE(row(u"h"_s).canAcceptDrop()) << "the list's last level";
    EXPECT_FALSE(row(u"a"_s).canAcceptDrop());
}

TEST_F(LinkDrop, OneRowAtATimeIsTheTarget)
{
    show(u"a e[]"_s);
    state.draggedLinkId = idOf(u"a"_s);
    row(u"a"_s).dropEntered(30);
    EXPECT_EQ(state, (DropState{idOf(u"a"_s), DropPosition::After, idOf(u"a"_s)}));
    row(u"e"_s).dropEntered(5);
    row(u"a"_s).dropExited();
    EXPECT_EQ(state.dropTargetId, idOf(u"e"_s)) << "the row that is left is the target no more";
    row(u"e"_s).dropUpdated(20);
    EXPECT_EQ(state.dropTargetPosition, DropPosition::Inside);
    row(u"e"_s).dropExited();
    EXPECT_EQ(state, (DropState{std::nullopt, DropPosition::None, idOf(u"a"_s)}));
}

TEST_F(LinkDrop, DropsMove)
{
    constexpr double top = 1;
    constexpr double middle = 20;
    constexpr double bottom = 39;
    struct Case {
        QString before;
        QString dragged;
        QString row;
        double y;
        QString after; ///< null: refused
    };
    const Case cases[] = {
        {u"a b c"_s, u"c"_s, u"a"_s, top, u"c a b"_s},
        {u"a b c"_s, u"c"_s, u"a"_s, bottom, u"a c b"_s},
        {u"a b c d"_s, u"a"_s, u"c"_s, top, u"b c a d"_s},
        {u"a b c d"_s, u"a"_s, u"c"_s, bottom, u"b c d a"_s},
        {u"a f[b c]"_s, u"a"_s, u"c"_s, top, u"f[b a c]"_s},
        {u"a f[b c]"_s, u"a"_s, u"c"_s, bottom, u"f[b c a]"_s},
        {u"a f[b c]"_s, u"b"_s, u"a"_s, bottom, u"a b f[c]"_s},
        {u"a f[b]"_s, u"a"_s, u"f"_s, bottom, u"f[b a]"_s},
        {u"a f[] b"_s, u"a"_s, u"f"_s, middle, u"f[a] b"_s},
        {u"f[g[c]]"_s, u"f"_s, u"c"_s, top, {}},
        {u"f[g[c]]"_s, u"f"_s, u"f"_s, middle, {}},
        {u"a f[g[h[c]]]"_s, u"a"_s, u"c"_s, top, {}},
        {u"a b c d"_s, u"a b"_s, u"c"_s, bottom, u"c a b d"_s},
        {u"a b c d"_s, u"d a"_s, u"c"_s, top, u"b a d c"_s},
        {u"a f[x] b"_s, u"a b x"_s, u"f"_s, middle, u"f[a x b]"_s},
        {u"a b"_s, u"a"_s, u"gone"_s, top, {}},
        {u"a b"_s, {}, u"a"_s, top, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(qPrintable(u"%1 | %2 onto %3"_s.arg(c.before, c.dragged, c.row)));
        show(c.before);
        QList<QUuid> ids;
        for (const QString &name : c.dragged.split(u' ', Qt::SkipEmptyParts))
            ids += idOf(name);
        LinkDropDelegate delegate = row(c.row);
        delegate.dropEntered(c.y);
        state.draggedLinkId = idOf(c.dragged);
        const auto refusal = delegate.performDrop(c.y, LinkDropDelegate::payload(ids));
        EXPECT_EQ(refusal.has_value(), c.after.isNull());
        EXPECT_EQ(shown(), c.after.isNull() ? c.before : c.after);
        EXPECT_EQ(state, DropState());
    }
}

TEST_F(LinkDrop, ForeignPayloadsMoveNothing)
{
    show(u"a b"_s);
    for (const char *payload : {"", "b", "{}", "\xff\xfe", "https://example.org"}) {
        EXPECT_TRUE(row(u"a"_s).performDrop(1, payload));
        EXPECT_EQ(shown(), u"a b");
    }
}

} // namespace
} // namespace orvelle::test
