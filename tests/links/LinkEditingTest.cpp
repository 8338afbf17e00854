#include "links/LinkEditing.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

using Refusal = std::optional<EditRefusal>;

constexpr Timestamp now{5000};

std::optional<QUuid> groupOf(const QString &name)
{
    return name.isEmpty() ? std::nullopt : std::optional(idOf(name));
}

QList<QUuid> idsOf(const QString &names)
{
    QList<QUuid> ids;
    for (const QString &name : names.split(u' ', Qt::SkipEmptyParts))
        ids += idOf(name);
    return ids;
}

/// The names of the items that carry the time of the edit.
QString stampedIn(const LinkList &links)
{
    QStringList names;
    for (const LinkItem &item : flatten(links)) {
        if (item.modifiedAt == now)
            names += item.name;
    }
    return names.join(u' ');
}

/// An edit of a tree given as an outline. Whoever shared the tree keeps it.
struct Edited {
    template<typename Change>
    Edited(const QString &outline, const Change &change) : before(treeFrom(outline)), after(before)
    {
        const LinkList untouched = before;
        refusal = change(after);
        EXPECT_EQ(before, untouched);
        EXPECT_TRUE(!refusal || after.isSharedWith(before)) << "a refused edit leaves the tree as it was";
    }

    LinkList before;
    LinkList after;
    Refusal refusal;
};

TEST(LinkEditing, MovesOneItem)
{
    struct Case {
        QString before;
        QString id;
        QString to; ///< empty: the top level
        std::optional<qsizetype> at;
        QString after; ///< null: refused
        Refusal refusal;
    };
    const Case cases[] = {
        {u"a b c"_s, u"b"_s, {}, 0, u"b a c"_s, {}},
        {u"a b c"_s, u"a"_s, {}, 1, u"b a c"_s, {}},
        {u"a b c"_s, u"a"_s, {}, 2, u"b c a"_s, {}},
        {u"a b c"_s, u"a"_s, {}, 3, u"b c a"_s, {}},
        {u"a b c"_s, u"a"_s, {}, {}, u"b c a"_s, {}},
        {u"a b c"_s, u"c"_s, {}, -4, u"c a b"_s, {}},
        {u"a b"_s, u"b"_s, {}, 1, u"a b"_s, {}},
        {u"a f[b c]"_s, u"a"_s, u"f"_s, 1, u"f[b a c]"_s, {}},
        {u"a f[b c]"_s, u"a"_s, u"f"_s, 9, u"f[b c a]"_s, {}},
        {u"f[b c] a"_s, u"c"_s, {}, 0, u"c f[b] a"_s, {}},
        {u"a f[g[c]]"_s, u"a"_s, u"g"_s, {}, u"f[g[c a]]"_s, {}},
        {u"a f[g[h[c]]]"_s, u"a"_s, u"h"_s, {}, {}, EditRefusal::TooDeep},
        {u"f[g[h[c]]]"_s, u"f"_s, u"h"_s, {}, {}, EditRefusal::TooDeep},
        {u"f[g[]] k[l[x]]"_s, u"k"_s, u"g"_s, {}, u"f[g[k[l[x]]]]"_s, {}},
        {u"f[g[c]]"_s, u"f"_s, u"g"_s, {}, {}, EditRefusal::IntoItself},
        {u"f[c]"_s, u"f"_s, u"f"_s, 0, {}, EditRefusal::IntoItself},
        {u"a b"_s, u"a"_s, u"b"_s, {}, {}, EditRefusal::NotAGroup},
        {u"a f[]"_s, u"z"_s, u"f"_s, {}, {}, EditRefusal::NotFound},
        {u"a f[]"_s, u"a"_s, u"z"_s, {}, {}, EditRefusal::NotFound},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(qPrintable(u"%1 | %2 to %3"_s.arg(c.before, c.id, c.to)));
        const Edited e(c.before, [&](LinkList &l) { return moveItem(l, idOf(c.id), groupOf(c.to), c.at, now); });
        EXPECT_EQ(e.refusal, c.refusal);
        EXPECT_EQ(outlineOf(e.after), c.refusal ? c.before : c.after);
        EXPECT_EQ(stampedIn(e.after), c.refusal ? QString() : c.id);
    }
    EXPECT_EQ(logText(EditRefusal::TooDeep), u"Déplacement refusé: profondeur maximale atteinte (3 niveaux)");
    EXPECT_EQ(logText(EditRefusal::IntoItself),
              u"Déplacement refusé: impossible de déplacer un groupe dans ses propres enfants");
}

TEST(LinkEditing, MovesSeveralItemsSideBySide)
{
    struct Case {
        QString before;
        QString ids;
        QString to;
        std::optional<qsizetype> at;
        QString after;
        QString stamped;
        Refusal refusal;
    };
    const Case cases[] = {
        {u"a c b d"_s, u"a b"_s, {}, 2, u"c a b d"_s, u"a b"_s, {}},
        {u"a b c d"_s, u"d a"_s, {}, 2, u"b a d c"_s, u"a d"_s, {}},
        {u"a b c"_s, u"a c"_s, {}, {}, u"b a c"_s, u"a c"_s, {}},
        {u"a b c"_s, u"a b c"_s, {}, 1, u"a b c"_s, u"a b c"_s, {}},
        {u"a f[b x] g[c]"_s, u"a b c"_s, u"f"_s, 1, u"f[a b c x] g[]"_s, u"a b c"_s, {}},
        {u"a f[b c] d"_s, u"c f"_s, {}, 0, u"f[b c] a d"_s, u"f"_s, {}},
        {u"a a2 f[]"_s, u"a a"_s, u"f"_s, {}, u"a2 f[a]"_s, u"a"_s, {}},
        {u"a f[g[c]]"_s, u"a f"_s, u"g"_s, {}, {}, {}, EditRefusal::IntoItself},
        {u"a f[g[h[]]]"_s, u"a"_s, u"h"_s, {}, {}, {}, EditRefusal::TooDeep},
        {u"a f[]"_s, u"a z"_s, u"f"_s, {}, {}, {}, EditRefusal::NotFound},
        {u"a f[]"_s, {}, u"f"_s, {}, {}, {}, EditRefusal::NothingToDo},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(qPrintable(u"%1 | %2 to %3"_s.arg(c.before, c.ids, c.to)));
        const Edited e(c.before, [&](LinkList &l) { return moveItems(l, idsOf(c.ids), groupOf(c.to), c.at, now); });
        EXPECT_EQ(e.refusal, c.refusal);
        EXPECT_EQ(outlineOf(e.after), c.refusal ? c.before : c.after);
        EXPECT_EQ(stampedIn(e.after), c.stamped);
    }
}

TEST(LinkEditing, IndentsBelowTheGroupAboveAndOutdentsAfterIt)
{
    struct Case {
        const char *situation;
        QString before;
        QString id;
        bool can;
        QString after; ///< null: refused
        Refusal refusal;
    };
    const Case indents[] = {
        {"below a group", u"f[b] a"_s, u"a"_s, true, u"f[b a]"_s, {}},
        {"first of the top level", u"a f[]"_s, u"a"_s, false, {}, EditRefusal::NothingToDo},
        {"first of a group", u"f[] g[a]"_s, u"a"_s, false, {}, EditRefusal::NothingToDo},
        {"below a link", u"b a"_s, u"a"_s, false, {}, EditRefusal::NothingToDo},
        {"below a group of depth 1", u"f[g[] a]"_s, u"a"_s, true, u"f[g[a]]"_s, {}},
        {"below a group of depth 2", u"f[g[h[] a]]"_s, u"a"_s, true, {}, EditRefusal::TooDeep},
        {"below a group of depth 3", u"f[g[h[i[] a]]]"_s, u"a"_s, false, {}, EditRefusal::TooDeep},
        {"a group of groups, just shallow enough", u"f[] a[b[c[x]]]"_s, u"a"_s, true, u"f[a[b[c[x]]]]"_s, {}},
        {"a group of groups, too deep", u"f[] a[b[c[d[]]]]"_s, u"a"_s, false, {}, EditRefusal::TooDeep},
        {"the same, a level down", u"f[g[] a[b[c[]]]]"_s, u"a"_s, false, {}, EditRefusal::TooDeep},
        {"unknown", u"f[] a"_s, u"z"_s, false, {}, EditRefusal::NotFound},
    };
    const Case outdents[] = {
        {"second of a group", u"f[b a c] d"_s, u"a"_s, true, u"f[b c] a d"_s, {}},
        {"of a nested group", u"f[g[a] b]"_s, u"a"_s, true, u"f[g[] a b]"_s, {}},
        {"of the top level", u"a f[]"_s, u"a"_s, false, {}, EditRefusal::NothingToDo},
        {"into a group of depth 2", u"f[g[h[i[a]]]]"_s, u"a"_s, true, {}, EditRefusal::TooDeep},
        {"unknown", u"f[]"_s, u"z"_s, false, {}, EditRefusal::NotFound},
    };
    const auto check = [](const Case &c, auto can, auto change) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(can(treeFrom(c.before), idOf(c.id)), c.can);
        const Edited e(c.before, [&](LinkList &l) { return change(l, idOf(c.id), now); });
        EXPECT_EQ(e.refusal, c.refusal);
        EXPECT_EQ(outlineOf(e.after), c.refusal ? c.before : c.after);
    };
    for (const Case &c : indents)
        check(c, canIndent, indentItem);
    for (const Case &c : outdents)
        check(c, canOutdent, outdentItem);
}

TEST(LinkEditing, SortsOneLevel)
{
    struct Case {
        QString before;
        QString id;
        QString after;
        Refusal refusal;
    };
    const Case cases[] = {
        {u"f[beta Alpha alpha2]"_s, u"f"_s, u"f[Alpha alpha2 beta]"_s, {}},
        {u"f[g[y x] b] a"_s, u"f"_s, u"f[b g[y x]] a"_s, {}},
        {u"k[f[c B a]]"_s, u"f"_s, u"k[f[a B c]]"_s, {}},
        {u"f[B a b A]"_s, u"f"_s, u"f[a A B b]"_s, {}},
        {u"f[a]"_s, u"f"_s, {}, EditRefusal::NothingToDo},
        {u"b a"_s, u"b"_s, {}, EditRefusal::NotAGroup},
        {u"f[b a]"_s, u"z"_s, {}, EditRefusal::NotFound},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(qPrintable(c.before));
        const Edited e(c.before, [&](LinkList &l) { return sortGroup(l, idOf(c.id), now); });
        EXPECT_EQ(e.refusal, c.refusal);
        EXPECT_EQ(outlineOf(e.after), c.refusal ? c.before : c.after);
        EXPECT_EQ(stampedIn(e.after), c.refusal ? QString() : c.id) << "not the members";
    }
}

TEST(LinkEditing, SortsAsTheLocaleDoes)
{
    const QLocale usual;
    QLocale::setDefault(QLocale(QLocale::French));
    LinkList links = treeFrom(u"f[Zoo Étude eau fin]"_s);
    EXPECT_FALSE(sortGroup(links, idOf(u"f"_s), now));
    QLocale::setDefault(usual);
    EXPECT_EQ(outlineOf(links), u"f[eau Étude fin Zoo]");
}

TEST(LinkEditing, ReordersTheTopLevelWithoutStamps)
{
    struct Case {
        QString before;
        QString ids;
        QString anchor; ///< empty: the end
        QString after;
    };
    const Case cases[] = {
        {u"a b c d"_s, u"b d"_s, u"a"_s, u"b d a c"_s},
        {u"a b c d"_s, u"a"_s, {}, u"b c d a"_s},
        {u"a b f[x]"_s, u"x a"_s, u"f"_s, u"b a f[x]"_s},
        {u"a b c"_s, u"a"_s, u"gone"_s, u"b c a"_s},
        {u"a b c"_s, u"a"_s, u"b"_s, {}},
        {u"a b c"_s, u"z"_s, u"a"_s, {}},
    };
    for (const Case &c : cases) {
        const Edited e(c.before, [&](LinkList &l) { return reorderTopLevel(l, idsOf(c.ids), groupOf(c.anchor)); });
        EXPECT_EQ(e.refusal.has_value(), c.after.isNull());
        EXPECT_EQ(outlineOf(e.after), c.after.isNull() ? c.before : c.after);
        EXPECT_EQ(stampedIn(e.after), u"");
    }
}

TEST(LinkEditing, RemovesAndChangesSeveral)
{
    const Edited removed(u"a f[b c] g[d] e"_s, [](LinkList &l) { return removeItems(l, idsOf(u"e b g d z"_s)); });
    EXPECT_EQ(outlineOf(removed.after), u"a f[c]");
    const Edited none(u"a"_s, [](LinkList &l) { return removeItems(l, idsOf(u"z"_s)); });
    EXPECT_EQ(none.refusal, EditRefusal::NotFound);

    const Edited changed(u"a f[b] g[]"_s, [](LinkList &l) {
        const auto spoil = [](LinkItem &item) {
            item.customIconColor = u"red"_s;
            item.id = {};
            item.stableId.clear();
            item.type = item.isGroup() ? LinkType::Note : LinkType::Group;
            item.children = treeFrom(u"x"_s);
        };
        return changeEach(l, idsOf(u"f b z"_s), spoil, now);
    });
    EXPECT_EQ(outlineOf(changed.after), u"a f[b] g[]");
    EXPECT_EQ(stampedIn(changed.after), u"f b");
    LinkItem expected = namedLink(u"b"_s);
    expected.customIconColor = u"red"_s;
    expected.modifiedAt = now;
    const LinkItem &b = *findItem(changed.after, idOf(u"b"_s));
    expected.createdAt = b.createdAt;
    EXPECT_EQ(b, expected);
    const Edited nothing(u"a"_s, [](LinkList &l) {
        return changeEach(
            l, idsOf(u"z"_s), [](LinkItem &) {}, now);
    });
    EXPECT_EQ(nothing.refusal, EditRefusal::NotFound);
}

TEST(LinkEditing, AnEditIsNewerThanWhatWasSeen)
{
    EXPECT_EQ(editDate(std::nullopt, Timestamp{100}), Timestamp{100});
    EXPECT_EQ(editDate(Timestamp{99.5}, Timestamp{100}), Timestamp{100});
    EXPECT_EQ(editDate(Timestamp{100.2}, Timestamp{100.9}), Timestamp{101}) << "a document has 100 for both";
    EXPECT_EQ(editDate(Timestamp{500}, Timestamp{100}), Timestamp{501}) << "by a clock that is ahead of ours";
}

TEST(LinkEditing, WhatEntersTheTreeTakesNobodysIdentity)
{
    const LinkList tree = treeFrom(u"a f[b]"_s);
    EXPECT_EQ(withFreeIdentities(tree, treeFrom(u"g[c]"_s).first()), treeFrom(u"g[c]"_s).first());
    const LinkItem copy = withFreeIdentities(tree, tree.at(1));
    EXPECT_EQ(outlineOf({copy}), u"f[b]");
    LinkList both = tree;
    both += copy;
    QSet<QUuid> ids;
    QSet<QString> stableIds;
    for (const LinkItem &item : flatten(both)) {
        ids += item.id;
        stableIds += item.stableId;
    }
    EXPECT_EQ(ids.size(), 5);
    EXPECT_EQ(stableIds.size(), 5);
}

TEST(LinkEditing, TellsPlacesAndDepths)
{
    const LinkList tree = treeFrom(u"a f[b g[c] h[k[]]] d"_s);
    const auto c = findLinkLocation(tree, idOf(u"c"_s));
    ASSERT_TRUE(c && c->parent);
    EXPECT_EQ(c->item.name + c->parent->name, u"cg");
    EXPECT_EQ(c->index, 0);
    EXPECT_EQ(c->depth, 2);
    const auto d = findLinkLocation(tree, idOf(u"d"_s));
    ASSERT_TRUE(d);
    EXPECT_FALSE(d->parent);
    EXPECT_EQ(d->index, 2);
    EXPECT_EQ(d->depth, 0);
    EXPECT_FALSE(findLinkLocation(tree, idOf(u"z"_s)));
    EXPECT_EQ(getDepth(tree, idOf(u"k"_s)), 2);
    EXPECT_FALSE(getDepth(tree, idOf(u"z"_s)));
    EXPECT_TRUE(isDescendant(tree, idOf(u"f"_s), idOf(u"c"_s)));
    EXPECT_FALSE(isDescendant(tree, idOf(u"f"_s), idOf(u"f"_s)));
    EXPECT_FALSE(isDescendant(tree, idOf(u"g"_s), idOf(u"b"_s)));
    EXPECT_EQ(maxNestedDepth(tree.at(1)), 2);
    EXPECT_EQ(maxNestedDepth(treeFrom(u"f[a b]"_s).first()), 0);
    QString groups;
    for (const GroupAtDepth &entry : allGroups(tree))
        groups += entry.group.name + QString::number(entry.depth);
    EXPECT_EQ(groups, u"f0g1h1k2");
    QString names;
    for (const LinkItem &item : flatten(tree))
        names += item.name;
    EXPECT_EQ(names, u"afbgchkd");
}

TEST(LinkEditing, AMoveLeavesOtherBranchesShared)
{
    const LinkList before = treeFrom(u"f[a b] g[h[c] d] k[]"_s);
    LinkList after = before;
    ASSERT_FALSE(moveItem(after, idOf(u"d"_s), idOf(u"k"_s), {}, now));
    EXPECT_TRUE(after.at(0).children->isSharedWith(*before.at(0).children));
    EXPECT_TRUE(after.at(1).children->at(0).children->isSharedWith(*before.at(1).children->at(0).children));
}

} // namespace
} // namespace orvelle::test
