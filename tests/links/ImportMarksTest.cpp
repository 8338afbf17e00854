#include "links/exchange/ImportMarks.h"

#include "links/StoreFixture.h"
#include "links/exchange/LinkExchange.h"

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

LinkItem made(const QString &name, LinkType type, const QString &path)
{
    return LinkItem::make(name, path, type, Timestamp{1000});
}

class ImportMarksTest : public StoreTest
{
protected:
    void SetUp() override
    {
        start();
        begin();
    }
    void begin() { marks = std::make_unique<ImportMarks>(*store, defaults, debugMode); }
    void arrive(const LinkList &items, const QString &reason = u"import"_s)
    {
        const auto append = [items](LinkList &tree) {
            tree += items;
            return true;
        };
        ASSERT_TRUE(store->edit(LinkStore::Step::Destructive, reason, append));
    }
    bool asks(const LinkItem &item) const { return marks->asksFor(item, item.path); }

    std::unique_ptr<ImportMarks> marks;
    const LinkItem own = made(u"own"_s, LinkType::File, u"/own"_s);
    const LinkItem file = made(u"file"_s, LinkType::File, u"/x/tool"_s);
};

TEST_F(ImportMarksTest, OnlyWhatComesFromElsewhereAndMayLeadToAFileIsMarked)
{
    struct {
        LinkType type;
        const char16_t *path;
        bool marked;
    } const kinds[] = {
        {LinkType::File, u"/x", true},
        {LinkType::Folder, u"/x", true},
        {LinkType::Url, u"file:///x", true},
        {LinkType::Url, u" FILE:///x", true},
        {LinkType::Url, u"smb://server/x", true},
        {LinkType::Url, u"odd:x", true},
        {LinkType::Url, u"https://example.org/x", false},
        {LinkType::Url, u"HTTPS://example.org/x", false},
        {LinkType::Url, u"mailto:ada@example.org", false},
        {LinkType::Note, u"", false},
    };
    for (const auto &each : kinds) {
        const LinkItem item = made(u"x"_s, each.type, QString::fromUtf16(each.path));
        LinkItem group = made(u"g"_s, LinkType::Group, {});
        group.children = LinkList{item};
        arrive({group});
        EXPECT_EQ(asks(item), each.marked) << qPrintable(item.path);
    }
    for (const auto &[reason, marked] : {std::pair(u"import"_s, true),
                                         {u"replace"_s, true},
                                         {u"sync"_s, true},
                                         {u"restore"_s, true},
                                         {u"add"_s, false},
                                         {u"undo"_s, false}}) {
        const LinkItem item = made(u"x"_s, LinkType::File, u"/x"_s);
        arrive({item}, reason);
        EXPECT_EQ(asks(item), marked) << qPrintable(reason);
    }
}

TEST_F(ImportMarksTest, OwnLinksThatComeBackAreStillOwnUntilTheirPathIsAnother)
{
    store->addLink(own);
    LinkItem moved = own;
    moved.path = u"/elsewhere"_s;
    const auto become = [](const LinkItem &item) {
        return [item](LinkList &tree) {
            tree = {item};
            return true;
        };
    };
    ASSERT_TRUE(store->edit(LinkStore::Step::Ordinary, u"sync"_s, become(own)));
    EXPECT_FALSE(asks(own));
    ASSERT_TRUE(store->edit(LinkStore::Step::Ordinary, u"sync"_s, become(moved)));
    EXPECT_TRUE(asks(moved));
}

TEST_F(ImportMarksTest, WhatWasAllowedIsRememberedForThatTargetAlone)
{
    arrive({file});
    marks->allow(file, file.path);
    EXPECT_FALSE(asks(file));
    begin(); // another process
    EXPECT_FALSE(asks(file));
    EXPECT_TRUE(marks->asksFor(file, u"/x/other"_s));
    LinkItem again = file;
    again.path = u"/x/other"_s;
    ASSERT_TRUE(store->edit(LinkStore::Step::Ordinary, u"sync"_s, [again](LinkList &tree) {
        tree = {again};
        return true;
    }));
    EXPECT_TRUE(asks(again));
    store->removeLink(file.id);
    EXPECT_TRUE(asks(again)) << "undo may bring it back";
    marks->allow(own, own.path);
    EXPECT_FALSE(asks(own)) << "allowing marks nothing";
}

TEST_F(ImportMarksTest, MarksGoWithTheirLinks)
{
    arrive({file, own});
    store->removeLink(own.id);
    marks->dropGone();
    EXPECT_EQ(defaults.get<QStringList>(ImportMarks::baseKey()), (QStringList{file.stableId, QString()}));
    EXPECT_TRUE(asks(file));
    debugMode.toggle();
    EXPECT_FALSE(asks(file)) << "the other data set has marks of its own";
}

TEST_F(ImportMarksTest, WhatASnapshotBringsBackAfterItsMarkIsGoneIsAskedAboutAgain)
{
    arrive({file});
    store->removeLink(file.id);
    marks->dropGone();
    EXPECT_FALSE(asks(file));
    ASSERT_TRUE(store->undoLastDestructiveStep());
    EXPECT_TRUE(asks(file));
}

TEST_F(ImportMarksTest, AnEditMadeAgainOnAnotherProcessesTreeIsMarkedAsItEnds)
{
    put(u"a"_s);
    const auto fresh = std::make_shared<LinkItem>();
    otherProcessPuts(u"b"_s);
    ASSERT_TRUE(store->edit(LinkStore::Step::Destructive, u"import"_s, [fresh](LinkList &tree) {
        *fresh = made(u"x"_s, LinkType::File, u"/x"_s); // another identity each time
        tree += *fresh;
        return true;
    }));
    EXPECT_TRUE(asks(*fresh));
}

TEST_F(ImportMarksTest, DamagedMarksAskAboutNothingAndAreMended)
{
    ASSERT_TRUE(defaults.write(ImportMarks::baseKey(), QByteArray("odd")));
    EXPECT_FALSE(asks(file));
    arrive({file});
    EXPECT_TRUE(asks(file));
}

} // namespace
} // namespace orvelle::test
