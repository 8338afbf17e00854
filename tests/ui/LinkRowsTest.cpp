#include "ui/settings/LinkRows.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

namespace orvelle {

namespace {

using test::treeFrom;

/// The rows as an outline; a star marks groups that hold a match.
QString shown(const LinkRows &rows, int number = 0)
{
    QStringList parts;
    const LinkRows::Row &group = rows.at(number);
    for (int i = group.first; i < group.first + group.count; ++i) {
        const LinkRows::Row &row = rows.at(i);
        EXPECT_EQ(row.parent, number);
        EXPECT_EQ(row.position, i - group.first);
        EXPECT_EQ(rows.numberOf(row.item->id), i);
        QString part = row.item->name;
        if (row.holdsMatch)
            part += u'*';
        if (row.item->isGroup())
            part += u'[' + shown(rows, i) + u']';
        parts += part;
    }
    return parts.join(u' ');
}

QString marked(const QString &search, QString text)
{
    const QList<LinkSearch::Range> ranges = LinkSearch(search).rangesIn(text);
    for (auto range = ranges.crbegin(); range != ranges.crend(); ++range) {
        text.insert(range->start + range->length, u'>');
        text.insert(range->start, u'<');
    }
    return text;
}

} // namespace

TEST(LinkRows, SearchLeavesMatchesTheirGroupsAndTheirMembers)
{
    const LinkRows all(treeFrom(QStringLiteral("apple box[pear inner[apricot plum] fig] pots[pea] grape")));
    const QStringList folded = all.foldedTexts();
    const struct {
        const char *search;
        const char *left;
    } cases[] = {
        {"", "apple box[pear inner[apricot plum] fig] pots[pea] grape"},
        {"apricot", "box*[inner*[apricot]]"},
        {"BOX", "box[pear inner[apricot plum] fig]"},
        {"inner", "box*[inner[apricot plum]]"},
        {"pea", "box*[pear] pots*[pea]"},
        {"p ap", "apple box*[inner*[apricot]] grape"},
        {"no such", ""},
    };
    for (const auto &one : cases) {
        const LinkRows left = all.filtered(LinkSearch(QString::fromLatin1(one.search)), folded);
        EXPECT_EQ(shown(left).toStdString(), one.left) << one.search;
    }
}

TEST(LinkRows, ShapeIsWhoStandsWhere)
{
    const auto rows = [](const char *outline) { return LinkRows(treeFrom(QString::fromLatin1(outline))); };
    EXPECT_TRUE(rows("a f[b] c").hasSameShape(rows("a f[b] c")));
    for (const char *other : {"a f[b]", "a c f[b]", "a f[] b c", "a f[b] d"})
        EXPECT_FALSE(rows("a f[b] c").hasSameShape(rows(other))) << other;
}

TEST(LinkSearch, FindsWithoutRegardToCaseAndAccents)
{
    const struct {
        const char *search;
        const char *text;
        const char *marked;
    } cases[] = {
        {"cafe", "Le Café noir", "Le <Café> noir"},
        {"CAFÉ", "cafe", "<cafe>"},
        {"e", "Élève", "<É>l<è>v<e>"},
        {"noir le", "Le café noir", "<Le> café <noir>"},
        {"aa", "aaa", "<aa>a"},
        {"ab bc", "abc", "<abc>"},
        {"strasse", "Straße 5", "<Straße> 5"},
        {"fi", "ﬁn", "<ﬁ>n"},
        {"x", "no", "no"},
        {"  ", "as it is", "as it is"},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(marked(QString::fromUtf8(one.search), QString::fromUtf8(one.text)).toStdString(), one.marked)
            << one.search;
    }
    // Combining marks, and a letter outside the basic plane.
    EXPECT_EQ(marked(QStringLiteral("e"), QStringLiteral("cafe\u0301!")), QStringLiteral("caf<e\u0301>!"));
    EXPECT_EQ(marked(QStringLiteral("k"), QStringLiteral("\U0001F600k")), QStringLiteral("\U0001F600<k>"));
}

} // namespace orvelle
