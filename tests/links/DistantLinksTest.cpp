#include "StoreFixture.h"
#include "links/BookmarkMaintenance.h"
#include "links/PromptBookmarks.h"
#include "support/LogCapture.h"

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

LinkItem fileLink(const QString &path, const std::optional<QByteArray> &bookmark = {})
{
    LinkItem file = LinkItem::make(path.section(u'/', -1), path, LinkType::File, {1});
    file.bookmarkData = bookmark;
    return file;
}

/// A store beside a volume at /nas that answers when the test says so.
class DistantLinksTest : public StoreTest
{
protected:
    LinkStore &startWith(const LinkList &links)
    {
        EXPECT_TRUE(defaults.write(LinkStore::linksBaseKey(), encodeLinks(links)));
        store = std::make_unique<LinkStore>(LinkStore::Services{defaults, debugMode, notifications, clock, prompt,
                                                                volumes, power, snapshots, hooks, &distant});
        return *store;
    }
    std::optional<QByteArray> bookmarkOf(const LinkItem &item) const { return store->find(item.id)->bookmarkData; }
    /// As views make them.
    LinkItem added(const QString &path)
    {
        LinkItem file = fileLink(path);
        if (const auto bookmark = store->fileBookmarks().create(path))
            file.bookmarkData = *bookmark;
        store->addLink(file);
        return file;
    }

    const QString nas = u"/nas"_s;
    PromptBookmarks prompt{bookmarks, volumes};
    FakeDistantFiles distant{bookmarks};
    void SetUp() override { volumes.distant = {nas, u"/other"_s}; }
};

TEST_F(DistantLinksTest, WhatLacksABookmarkGetsItWhenItsVolumeAnswers)
{
    bookmarks.missing = {u"/nas/gone"_s};
    const LinkItem here = fileLink(u"/here"_s);
    const LinkItem there = fileLink(u"/nas/there"_s);
    const LinkItem gone = fileLink(u"/nas/gone"_s);
    LogCapture log;
    startWith({here, there, gone, fileLink(u"/other/x"_s)});
    EXPECT_EQ(bookmarkOf(here), "bm:/here");
    EXPECT_EQ(bookmarkOf(there), std::nullopt);
    EXPECT_EQ(distant.waiting(), 2) << "one for each volume";
    const LinkItem late = added(u"/nas/late"_s);
    EXPECT_EQ(distant.waiting(), 3);
    EXPECT_TRUE(log.lines().filter(u"Erreur"_s).isEmpty()) << "nobody looked yet";

    distant.answers(nas);
    EXPECT_EQ(bookmarkOf(there), "bm:/nas/there");
    EXPECT_EQ(bookmarkOf(late), "bm:/nas/late");
    EXPECT_EQ(storedBytes(), encodeLinks(store->links()));
    EXPECT_TRUE(log.contains(u"LinkStore: Erreur migration bookmark pour /nas/gone: no such file"_s));
    ASSERT_TRUE(store->undo()) << "the adding, and nothing else";
    EXPECT_FALSE(store->canUndo());
    ASSERT_TRUE(store->redo());
    EXPECT_EQ(bookmarkOf(late), "bm:/nas/late");
    store->addLink(namedLink(u"web"_s));
    EXPECT_EQ(distant.waiting(), 1) << "what is gone is not asked for again and again";
}

TEST_F(DistantLinksTest, AnAnswerCountsForTheLinkAsItWasOnly)
{
    const LinkItem moved = fileLink(u"/nas/moved"_s);
    const LinkItem other = fileLink(u"/nas/other"_s);
    const LinkItem removed = fileLink(u"/nas/removed"_s);
    LinkItem group = LinkItem::make(u"g"_s, {}, LinkType::Group, {1});
    group.children.emplace();
    startWith({moved, other, removed, group});
    ASSERT_FALSE(store->moveLink(moved.id, group.id));
    LinkItem changed = *store->find(other.id);
    changed.path = u"/here"_s;
    ASSERT_TRUE(store->updateLink(changed));
    ASSERT_TRUE(store->removeLink(removed.id));
    distant.answers(nas);
    EXPECT_EQ(bookmarkOf(moved), "bm:/nas/moved") << "in its group";
    EXPECT_EQ(bookmarkOf(other), std::nullopt);
    EXPECT_FALSE(store->find(removed.id));
}

TEST_F(DistantLinksTest, AFolderIsKnownAsOneInTheEnd)
{
    volumes.distant = {folder.path()};
    startWith({});
    const QString music = folder.filePath(u"music"_s);
    ASSERT_TRUE(QDir().mkdir(music));
    const LinkItem link = added(music);
    EXPECT_EQ(store->find(link.id)->type, LinkType::File);
    LinkItem renamed = *store->find(link.id);
    renamed.name = u"Tunes"_s;
    ASSERT_TRUE(store->updateLink(renamed));
    distant.answers(folder.path());
    EXPECT_EQ(store->find(link.id)->type, LinkType::Folder);
    ASSERT_TRUE(store->undo()) << "of the name, from before anybody had looked";
    distant.answers(folder.path());
    EXPECT_EQ(store->find(link.id)->name, u"music"_s);
    EXPECT_EQ(store->find(link.id)->type, LinkType::Folder);
}

TEST_F(DistantLinksTest, StaleBookmarksAreRenewedOnEachVolumeByItself)
{
    const LinkItem here = fileLink(u"/here"_s, "bm:/here"_ba);
    const LinkItem there = fileLink(u"/nas/there"_s, "bm:/nas/there"_ba);
    const LinkItem repaired = fileLink(u"/nas/repaired"_s, "bm:/nas/repaired"_ba);
    startWith({here, there, repaired, fileLink(u"/nas/gone"_s, "junk"_ba), fileLink(u"/nas/lost"_s, "junk"_ba)});
    bookmarks.renamed = {
        {u"/here"_s, u"/new"_s}, {u"/nas/there"_s, u"/nas/new"_s}, {u"/nas/repaired"_s, u"/nas/elsewhere"_s}};
    int offers = 0;
    store->refreshStaleBookmarks([&offers] { ++offers; });
    EXPECT_EQ(bookmarkOf(here), "bm:/new");
    EXPECT_EQ(offers, 0);
    LinkItem mended = repaired;
    mended.bookmarkData = "bm:/chosen";
    ASSERT_TRUE(store->updateLink(mended));
    distant.answers(nas);
    EXPECT_EQ(bookmarkOf(there), "bm:/nas/new");
    EXPECT_EQ(bookmarkOf(repaired), "bm:/chosen") << "not looked at";
    EXPECT_EQ(offers, 1);
}

TEST_F(DistantLinksTest, AnswersComeToNobodyWhenTheStoreIsGone)
{
    startWith({fileLink(u"/nas/there"_s)});
    ASSERT_TRUE(defaults.write(LinkStore::rootBookmarksBaseKey(), QList<QByteArray>{"bm:/nas/old"}));
    store->restoreRootAccess();
    EXPECT_EQ(distant.waiting(), 2) << "a root folder may lie anywhere";
    store.reset();
    distant.answers(nas);
    EXPECT_EQ(distant.waiting(), 1);
}

} // namespace
} // namespace orvelle::test
