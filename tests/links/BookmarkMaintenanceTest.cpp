#include "links/BookmarkMaintenance.h"

#include "links/HomePaths.h"
#include "links/LinkMigration.h"
#include "support/Fakes.h"
#include "support/LogCapture.h"
#include "support/Outline.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

LinkItem fileAt(const QString &path, const std::optional<QByteArray> &bookmark = std::nullopt)
{
    LinkItem item = LinkItem::make(u"f"_s, path, LinkType::File, {5});
    item.bookmarkData = bookmark;
    return item;
}

LinkItem groupOf(const LinkList &children)
{
    LinkItem group = LinkItem::make(u"g"_s, {}, LinkType::Group, {5});
    group.children = children;
    return group;
}

TEST(LinkMigration, FillsWhatOldItemsLackAndNothingElse)
{
    FakeFileBookmarks bookmarks;
    bookmarks.missing = {u"/gone"_s};
    LinkItem old = fileAt(u"/there"_s);
    old.stableId.clear();
    old.createdAt.reset();
    old.modifiedAt.reset();
    LinkList links = {groupOf({old, fileAt(u"/gone"_s)}), namedLink(u"a"_s)};
    const LinkItem untouched = links.at(1);
    LogCapture log;

    EXPECT_TRUE(migrateItems(links, bookmarks, {77}));
    const LinkItem &item = links.at(0).children->at(0);
    EXPECT_EQ(item.bookmarkData, FakeFileBookmarks::bookmarkOf(u"/there"_s));
    EXPECT_EQ(item.stableId.size(), 36);
    EXPECT_EQ(item.createdAt, Timestamp{77});
    EXPECT_EQ(item.modifiedAt, Timestamp::distantPast());
    EXPECT_EQ(item.contentModifiedAt, std::nullopt);
    EXPECT_EQ(links.at(0).children->at(1).bookmarkData, std::nullopt);
    EXPECT_EQ(links.at(1), untouched);
    EXPECT_TRUE(log.contains(u"LinkStore: Erreur migration bookmark pour /gone: no such file"_s));

    const LinkList once = links;
    EXPECT_FALSE(migrateItems(links, bookmarks, {99})) << "a second run changes nothing";
    EXPECT_EQ(links, once);
}

TEST(BookmarkMaintenance, RenewsStaleBookmarksAndTellsOfLostOnes)
{
    struct Case {
        const char *situation;
        std::optional<QByteArray> bookmark;
        bool renewed;
        bool unrecoverable;
    };
    const Case cases[] = {
        {"good", "bm:/good", false, false},         {"renamed", "bm:/old", true, false},
        {"gone", "bm:/gone", false, true},          {"no access", "bm:/closed", false, true},
        {"not made here", "whatever", false, true}, {"none", std::nullopt, false, true},
    };
    for (const Case &c : cases) {
        FakeFileBookmarks bookmarks;
        bookmarks.missing = {u"/gone"_s};
        bookmarks.inaccessible = {u"/closed"_s};
        bookmarks.renamed = {{u"/old"_s, u"/new"_s}};
        LinkList links = {groupOf({fileAt(u"/p"_s, c.bookmark)}), namedLink(u"a"_s)};
        const BookmarkRefresh result = refreshBookmarks(links, bookmarks);
        EXPECT_EQ(result.renewed, c.renewed) << c.situation;
        EXPECT_EQ(result.unrecoverable, c.unrecoverable) << c.situation;
        EXPECT_EQ(links.at(0).children->at(0).bookmarkData, c.renewed ? QByteArray("bm:/new") : c.bookmark)
            << c.situation;
    }
}

TEST(BookmarkMaintenance, RebuildingKeepsOrDropsTheOldBookmarkOnFailure)
{
    FakeFileBookmarks bookmarks;
    bookmarks.missing = {u"/gone"_s};
    const LinkList before = {groupOf({fileAt(u"/gone"_s, "old"), fileAt(u"/there"_s, "old")})};
    LinkList kept = before;
    LinkList dropped = before;
    EXPECT_TRUE(regenerateBookmarksRecursive(kept, bookmarks));
    EXPECT_TRUE(recreateBookmarks(dropped, bookmarks));
    EXPECT_EQ(kept.at(0).children->at(0).bookmarkData, QByteArray("old"));
    EXPECT_EQ(dropped.at(0).children->at(0).bookmarkData, std::nullopt);
    EXPECT_EQ(kept.at(0).children->at(1).bookmarkData, QByteArray("bm:/there"));
}

TEST(BookmarkMaintenance, CommonAncestorIsFoundByTextPrefix)
{
    const std::pair<QStringList, QString> cases[] = {
        {{}, u"/home/ada"_s},
        {{u"/a/b/x"_s}, u"/a/b/x"_s},
        {{u"/a/b/x"_s, u"/a/b/y"_s}, u"/a/b"_s},
        {{u"/a/b/x"_s, u"/a/bc"_s}, u"/a/b"_s},
        {{u"/a/x"_s, u"/b/x"_s}, u"/"_s},
        {{u"/a"_s, u"/b"_s}, u"/"_s},
        {{u"relative"_s, u"/b"_s}, u"/"_s},
    };
    for (const auto &[paths, expected] : cases)
        EXPECT_EQ(findCommonAncestor(paths, u"/home/ada"_s), expected) << qPrintable(paths.join(u' '));
}

TEST(HomePaths, GoOutAndComeBack)
{
    const std::pair<QString, QString> cases[] = {
        {u"/home/ada/Docs"_s, u"~/Docs"_s},
        {u"/home/ada"_s, u"~"_s},
        {u"/home/adam/x"_s, u"/home/adam/x"_s},
        {u"/media/stick/x"_s, u"/media/stick/x"_s},
        {u"https://a/home/ada"_s, u"https://a/home/ada"_s},
    };
    for (const auto &[local, portable] : cases) {
        const LinkList links = {groupOf({fileAt(local)})};
        const LinkList outside = makePortable(links, u"/home/ada"_s);
        EXPECT_EQ(outside.at(0).children->at(0).path, portable);
        EXPECT_EQ(resolveHomePaths(outside, u"/home/ada"_s), links);
    }
}

TEST(HomePaths, NetworkAddressOfAPath)
{
    FakeVolumes volumes;
    volumes.remote = {{u"/mnt/nas"_s, u"smb://nas/share"_s}};
    EXPECT_EQ(networkURL(u"/mnt/nas/a b/é#?%;.txt"_s, volumes), u"smb://nas/share/a%20b/%C3%A9%23%3F%25%3B.txt"_s);
    EXPECT_EQ(networkURL(u"/mnt/nas"_s, volumes), u"smb://nas/share"_s);
    EXPECT_EQ(networkURL(u"/mnt/nasty/x"_s, volumes), std::nullopt);
}

} // namespace
} // namespace orvelle::test
