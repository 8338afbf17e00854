#include "sync/TreeParts.h"

#include "support/Outline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

LinkItem named(const QString &name, bool isGroup)
{
    return treeFrom(isGroup ? name + u"[]"_s : name).constFirst();
}

/// "-f" removes, "b>g" moves to the end of a group ("root" is the top level),
/// "+x>g" adds there, "f=link" and "f=group" make it something else.
void change(TreeParts &parts, const QString &step)
{
    const auto part = [&parts](const QString &name) {
        return name == u"root" ? TreeParts::topLevel : parts.find(namedLink(name).stableId);
    };
    const QString name = step.section(u'>', 0, 0).section(u'=', 0, 0);
    const QString to = step.section(u'>', 1);
    if (name.startsWith(u'-'))
        parts.remove(part(name.mid(1)));
    else if (name.startsWith(u'+'))
        parts.add(namedLink(name.mid(1)), part(to));
    else if (step.contains(u'='))
        parts.replace(part(name), named(name, step.endsWith(u"=group")));
    else
        parts.move(part(name), part(to));
}

TEST(TreeParts, KeepsTheOrderThroughManyChanges)
{
    const struct {
        const char16_t *tree;
        const char16_t *steps;
        const char16_t *expected;
    } cases[] = {
        {u"a f[b g[c]] d", u"-f", u"a b g[c] d"},
        {u"a f[b g[c]] d", u"-f -g", u"a b c d"},
        {u"a f[b g[c]] d", u"-g -f", u"a b c d"},
        {u"a f[b g[c]] d", u"-f b>g", u"a g[c b] d"},
        {u"a f[b g[c]] d", u"b>root b>f", u"a f[g[c] b] d"},
        {u"a f[b g[c]] d", u"f=link", u"a f b g[c] d"},
        {u"a f[b g[c]] d", u"f=link f>g", u"a b g[c f] d"},
        {u"a f[b g[c]] d", u"f=link f=group +x>f", u"a f[x] b g[c] d"},
        {u"a f[b g[c]] d", u"f=link b>root f=group", u"a f[] g[c] d b"},
        {u"a f[b g[c]] d", u"f=link -f", u"a b g[c] d"},
        {u"a f[b g[c]] d", u"-b -g -c +x>f", u"a f[x] d"},
        {u"a f[b g[c]] d", u"f>g", u"a f[b g[c]] d"},
        {u"a f[b g[c]] d", u"g>root f>g", u"a d g[c f[b]]"},
    };
    for (const auto &[tree, steps, expected] : cases) {
        TreeParts parts(treeFrom(QString::fromUtf16(tree)));
        for (const QString &step : QString::fromUtf16(steps).split(u' '))
            change(parts, step);
        EXPECT_EQ(outlineOf(parts.tree()), QString::fromUtf16(expected)) << QString::fromUtf16(steps).toStdString();
    }
}

TEST(TreeParts, KnowsTheGroupOfWhatCameIntoAnothersPlace)
{
    TreeParts parts(treeFrom(u"f[g[c]]"_s));
    change(parts, u"-g"_s);
    EXPECT_EQ(parts.groupOf(parts.find(namedLink(u"c"_s).stableId)), parts.find(namedLink(u"f"_s).stableId));
    change(parts, u"f=link"_s);
    EXPECT_EQ(parts.groupOf(parts.find(namedLink(u"c"_s).stableId)), TreeParts::topLevel);
}

} // namespace
} // namespace orvelle::test
