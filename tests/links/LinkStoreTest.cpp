#include "StoreFixture.h"
#include "base/Uuid.h"
#include "links/BookmarkMaintenance.h"
#include "support/LogCapture.h"

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

const QString migrated = u"LinkStore: Migration effectuée (bookmarks + stableId/timestamps)"_s;

TEST_F(StoreTest, StartsInItsOrderAndListens)
{
    put(u"a"_s);
    const LinkStore &links = start();
    EXPECT_EQ(hooks.calls, QStringList({u"hydrateFavicons"_s, u"cleanupOrphanFavicons"_s, u"loadSyncState"_s}));
    EXPECT_EQ(defaults.get<QString>(u"orvelle_machineId"_s), links.machineId());
    EXPECT_TRUE(parseUuid(links.machineId()));
    const QString machine = links.machineId();
    hooks.calls.clear();
    power.systemWakes();
    emit notifications.syncableSettingsChanged();
    EXPECT_EQ(hooks.calls, QStringList({u"systemDidWake"_s, u"syncableSettingsDidChange"_s}));
    EXPECT_EQ(start().machineId(), machine);
}

TEST_F(StoreTest, UpgradesOldDataOnce)
{
    ASSERT_TRUE(
        defaults.write(LinkStore::linksBaseKey(),
                       QByteArray(R"([{"name":"a","path":"/f","type":"file"},{"name":"b","path":"u","type":"url",)"
                                  R"("createdAt":1,"modifiedAt":2}])")));
    LogCapture log;
    const LinkItem first = start().links().first();
    EXPECT_EQ(first.createdAt, clock.now());
    EXPECT_EQ(first.modifiedAt, Timestamp::distantPast());
    EXPECT_EQ(log.lines().count(migrated), 1);
    const LinkList kept = store->links();
    clock.advance(std::chrono::hours(1));
    EXPECT_EQ(start().links(), kept) << "identities made up while loading are stored";
    EXPECT_EQ(log.lines().count(migrated), 1);
}

TEST_F(StoreTest, EveryEditIsSavedOnceAndAnnouncedOnce)
{
    put(u"a f[b]"_s);
    start();
    const int writes = defaults.writeCount();
    hooks.calls.clear();
    store->addLink(namedLink(u"c"_s));
    EXPECT_TRUE(store->addLinkToGroup(namedLink(u"d"_s), idOf(u"f"_s)));
    EXPECT_TRUE(store->removeLink(idOf(u"b"_s)));
    LinkItem renamed = namedLink(u"a"_s);
    renamed.name = u"A"_s;
    EXPECT_TRUE(store->updateLink(renamed));
    EXPECT_EQ(store->find(renamed.id)->modifiedAt, clock.now());
    EXPECT_TRUE(store->updateLink(renamed, false));
    EXPECT_EQ(store->find(renamed.id)->modifiedAt, renamed.modifiedAt);
    EXPECT_EQ(shown(), u"A f[d] c");
    EXPECT_EQ(stored(), shown());
    EXPECT_EQ(defaults.writeCount() - writes, 5);
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(hooks.calls.count(u"scheduleAutoSync"_s), 5);

    EXPECT_FALSE(store->removeLink(idOf(u"z"_s)));
    EXPECT_FALSE(store->addLinkToGroup(renamed, idOf(u"z"_s)));
    EXPECT_FALSE(store->updateLink(namedLink(u"z"_s)));
    EXPECT_EQ(defaults.writeCount() - writes, 5) << "a refused edit writes nothing";
    EXPECT_EQ(changes, 5);
}

TEST_F(StoreTest, SavingWithoutTriggerNeverAsksForAnUpload)
{
    start();
    hooks.calls.clear();
    EXPECT_TRUE(store->saveLinks(false));
    store->setAutoSyncingFromFile(true);
    EXPECT_TRUE(store->saveLinks());
    EXPECT_EQ(hooks.calls, QStringList());
    store->setAutoSyncingFromFile(false);
    EXPECT_TRUE(store->saveLinks());
    EXPECT_EQ(hooks.calls, QStringList(u"scheduleAutoSync"_s));
}

TEST_F(StoreTest, ALinkThatEntersHasIdentitiesOfItsOwn)
{
    put(u"a"_s);
    start();
    LinkItem same = store->links().first();
    store->addLink(same);
    same.id = QUuid::createUuid();
    same.stableId = same.stableId.toLower();
    store->addLink(same);
    same.stableId.clear();
    store->addLink(same);
    QSet<QUuid> ids;
    QSet<QString> stableIds;
    for (const LinkItem &item : store->links()) {
        ids += item.id;
        stableIds += item.stableId.toUpper();
    }
    EXPECT_EQ(ids.size(), 4);
    EXPECT_EQ(stableIds.size(), 4);
    EXPECT_FALSE(stableIds.contains(QString()));
}

TEST_F(StoreTest, FindsByEitherIdentity)
{
    put(u"f[a]"_s);
    start();
    LinkItem item = *store->find(idOf(u"a"_s));
    item.stableId = u"ABC"_s;
    ASSERT_TRUE(store->updateLink(item));
    EXPECT_EQ(store->findByText(u"abc"_s)->name, u"a");
    EXPECT_EQ(store->findByText(uuidText(item.id).toLower())->name, u"a");
    EXPECT_FALSE(store->findByText(u"a"_s));
}

TEST_F(StoreTest, DebugModeSwapsTheWholeTree)
{
    put(u"a b"_s);
    start();
    hooks.calls.clear();
    debugMode.toggle();
    EXPECT_EQ(shown(), u"");
    EXPECT_EQ(hooks.calls, QStringList({u"hydrateFavicons"_s, u"loadSyncState"_s}));
    EXPECT_FALSE(store->canUndo());
    store->addLink(namedLink(u"x"_s));
    EXPECT_EQ(stored(u"debug_orvelle_savedLinks"_s), u"x");
    EXPECT_EQ(stored(), u"a b");
    debugMode.toggle();
    EXPECT_EQ(shown(), u"a b");
    EXPECT_EQ(changes, 3);
}

TEST_F(StoreTest, UnreadableBytesAreSetAsideOnceAndCanComeBack)
{
    const QByteArray bad = R"([{"name":"a","path":"p","type":"link"}])";
    ASSERT_TRUE(defaults.write(LinkStore::linksBaseKey(), bad));
    start();
    EXPECT_EQ(shown(), u"");
    ASSERT_EQ(store->rescuedDataKeys().size(), 1);
    const QString key = store->rescuedDataKeys().first();
    EXPECT_TRUE(key.startsWith(u"orvelle_savedLinks_undecodable_2026-09-21T")) << qPrintable(key);
    EXPECT_EQ(storedBytes(key), bad);
    EXPECT_EQ(storedBytes(), bad) << "nothing is written back before the next save";
    clock.advance(std::chrono::hours(1));
    EXPECT_EQ(start().rescuedDataKeys(), QStringList(key)) << "identical bytes are copied once";
    EXPECT_EQ(store->keptUnreadableAt(), key) << "though they were there before, the load failed";
    EXPECT_FALSE(store->restoreRescuedData(key));
    EXPECT_FALSE(store->restoreRescuedData(u"orvelle_machineId"_s));

    store->addLink(namedLink(u"n"_s));
    EXPECT_EQ(stored(), u"n");
    put(u"a b"_s, key);
    EXPECT_TRUE(store->restoreRescuedData(key));
    EXPECT_EQ(stored(), u"a b");
    EXPECT_TRUE(store->undo());
    EXPECT_EQ(stored(), u"n");
}

TEST_F(StoreTest, NothingIsSavedOverBytesThatCouldNotBeSetAside)
{
    ASSERT_TRUE(defaults.write(LinkStore::linksBaseKey(), QByteArray("{")));
    defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, u"full"_s});
    start();
    store->addLink(namedLink(u"a"_s));
    EXPECT_TRUE(store->hasUnsavedChanges());
    EXPECT_GE(failures, 1);
    defaults.failWrites(std::nullopt);
    EXPECT_TRUE(store->saveLinks());
    EXPECT_EQ(stored(), u"a");
    ASSERT_EQ(store->rescuedDataKeys().size(), 1);
    EXPECT_EQ(storedBytes(store->rescuedDataKeys().first()), "{");
}

TEST_F(StoreTest, AFailedWriteIsKeptAndTriedAgain)
{
    put(u"a"_s);
    start();
    defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, u"full"_s});
    store->addLink(namedLink(u"b"_s));
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(shown(), u"a b");
    EXPECT_EQ(stored(), u"a");
    EXPECT_TRUE(store->hasUnsavedChanges());
    EXPECT_FALSE(store->saveLinks());
    defaults.failWrites(std::nullopt);
    store->addLink(namedLink(u"c"_s));
    EXPECT_EQ(stored(), u"a b c");
    EXPECT_FALSE(store->hasUnsavedChanges());
}

TEST_F(StoreTest, EditsAreMadeAgainOnAnotherProcesssTree)
{
    struct Case {
        const char *situation;
        QString theirs;
        std::function<void(LinkStore &)> edit;
        QString after;
    };
    const auto add = [](LinkStore &s) { s.addLink(namedLink(u"n"_s)); };
    const auto removeB = [](LinkStore &s) { s.removeLink(idOf(u"b"_s)); };
    const Case cases[] = {
        {"both add", u"a f[b] x"_s, add, u"a f[b] x n"_s},
        {"they add, we remove", u"a f[b x]"_s, removeB, u"a f[x]"_s},
        {"both remove the same", u"a f[]"_s, removeB, u"a f[]"_s},
        {"they empty everything", u""_s, add, u"n"_s},
    };
    for (const Case &c : cases) {
        put(u"a f[b]"_s);
        start();
        otherProcessPuts(c.theirs);
        c.edit(*store);
        EXPECT_EQ(stored(), c.after) << c.situation;
        EXPECT_EQ(shown(), c.after) << c.situation;
        EXPECT_EQ(changes, 1) << c.situation;
        EXPECT_FALSE(store->hasUnsavedChanges()) << c.situation;
    }
}

/// The tree of another process, where the item is changed so.
void changeElsewhere(FakeUserDefaults &defaults, LinkList tree, const QString &name,
                     const std::function<void(LinkItem &)> &change)
{
    ASSERT_FALSE(changeEach(tree, {idOf(name)}, change, {5}));
    defaults.otherProcessWrites(LinkStore::linksBaseKey(), encodeLinks(tree));
}

TEST_F(StoreTest, AnUpdateKeepsWhatAnotherProcessMadeOfTheSameItem)
{
    put(u"f[a]"_s);
    start();
    LinkItem note = *store->find(idOf(u"a"_s));
    note.type = LinkType::Note;
    note.noteContent = u"old"_s;
    ASSERT_TRUE(store->updateLink(note));
    changeElsewhere(defaults, store->links(), u"a"_s, [](LinkItem &item) { item.noteContent = u"theirs"_s; });
    note.name = u"ours"_s;
    ASSERT_TRUE(store->updateLink(note));
    EXPECT_EQ(store->find(note.id)->name, u"ours");
    EXPECT_EQ(store->find(note.id)->noteContent, u"theirs");

    LinkItem group = *store->find(idOf(u"f"_s));
    otherProcessPuts(u"f[a x]"_s);
    group.name = u"F"_s;
    ASSERT_TRUE(store->updateLink(group));
    EXPECT_EQ(store->find(group.id)->name, u"F");
    EXPECT_TRUE(store->find(idOf(u"x"_s))) << "added to the group meanwhile";
}

TEST_F(StoreTest, ARenewedBookmarkIsNotGivenToALinkThatLeadsElsewhereNow)
{
    put(u"a"_s);
    start();
    LinkItem file = *store->find(idOf(u"a"_s));
    file.type = LinkType::File;
    file.path = u"/old"_s;
    file.bookmarkData = FakeFileBookmarks::bookmarkOf(u"/old"_s);
    ASSERT_TRUE(store->updateLink(file));
    changeElsewhere(defaults, store->links(), u"a"_s, [](LinkItem &item) {
        item.path = u"/chosen"_s;
        item.bookmarkData = FakeFileBookmarks::bookmarkOf(item.path);
    });
    bookmarks.renamed = {{u"/old"_s, u"/new"_s}};
    store->refreshStaleBookmarks([] {});
    EXPECT_EQ(securePath(store->links().first(), bookmarks), u"/chosen");
}

TEST_F(StoreTest, UnsavedEditsSurviveAnOutsideChange)
{
    put(u"a"_s);
    start();
    defaults.failWrites(DefaultsError{DefaultsError::Kind::ReadOnly, {}});
    store->addLink(namedLink(u"b"_s));
    store->addLink(namedLink(u"c"_s));
    defaults.failWrites(std::nullopt);
    otherProcessPuts(u"x a"_s);
    defaults.announceOutsideChanges();
    EXPECT_EQ(shown(), u"x a b c");
    EXPECT_EQ(stored(), u"x a b c");
}

TEST_F(StoreTest, OutsideChangesAreShownAndEndTheHistory)
{
    put(u"a"_s);
    start();
    store->addLink(namedLink(u"b"_s));
    changes = 0;
    otherProcessPuts(u"x"_s);
    defaults.announceOutsideChanges();
    EXPECT_EQ(shown(), u"x");
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(store->canUndo());

    store->addLink(namedLink(u"b"_s));
    otherProcessPuts(u"x b y"_s);
    EXPECT_FALSE(store->undo()) << "not announced yet, and still not undone over it";
    EXPECT_EQ(stored(), u"x b y");
    EXPECT_EQ(shown(), u"x b y");
}

TEST_F(StoreTest, UnreadableBytesFromAnotherProcessAreSetAsideToo)
{
    put(u"a"_s);
    start();
    defaults.otherProcessWrites(LinkStore::linksBaseKey(), QByteArray("broken"));
    store->addLink(namedLink(u"b"_s));
    EXPECT_EQ(stored(), u"a b");
    ASSERT_EQ(store->rescuedDataKeys().size(), 1);
    EXPECT_EQ(storedBytes(store->rescuedDataKeys().first()), "broken");
}

TEST_F(StoreTest, TooDeepATreeIsRefused)
{
    start();
    LinkItem item = namedLink(u"leaf"_s);
    for (int i = 1; i < maxTreeLevels; ++i) {
        LinkItem group = LinkItem::make(u"g"_s, {}, LinkType::Group, {1});
        group.children = {item};
        item = group;
    }
    store->addLink(item);
    EXPECT_NE(stored(), u"undecodable");
    EXPECT_EQ(store->links().size(), 1);
    EXPECT_FALSE(store->addLinkToGroup(namedLink(u"a"_s), idOf(u"leaf"_s)));
    LinkItem deeper = LinkItem::make(u"g"_s, {}, LinkType::Group, {1});
    deeper.children = {item};
    store->addLink(deeper);
    EXPECT_EQ(store->links().size(), 1);
}

TEST_F(StoreTest, AnEditThatIsTooDeepOnAnotherProcessesTreeIsRefusedToo)
{
    put(u"f[a]"_s);
    start();
    LinkItem item = namedLink(u"leaf"_s);
    for (int i = 2; i < maxTreeLevels; ++i) {
        LinkItem group = LinkItem::make(u"g"_s, {}, LinkType::Group, {1});
        group.children = {item};
        item = group;
    }
    otherProcessPuts(u"wrap[f[a]]"_s);
    EXPECT_FALSE(store->addLinkToGroup(item, idOf(u"f"_s)));
    EXPECT_EQ(stored(), u"wrap[f[a]]");
    EXPECT_EQ(shown(), u"wrap[f[a]]");
}

TEST_F(StoreTest, BookmarksAreRenewedWithoutAnUndoStep)
{
    LinkItem file = LinkItem::make(u"f"_s, u"/old"_s, LinkType::File, {1});
    file.bookmarkData = FakeFileBookmarks::bookmarkOf(u"/old"_s);
    ASSERT_TRUE(defaults.write(LinkStore::linksBaseKey(), encodeLinks({file})));
    ASSERT_TRUE(defaults.write(LinkStore::rootBookmarksBaseKey(), QList<QByteArray>{"bm:/r", "bm:/old", "junk"}));
    start();
    bookmarks.renamed = {{u"/old"_s, u"/new"_s}};
    EXPECT_EQ(securePath(file, bookmarks), u"/new");
    store->refreshStaleBookmarks([] { ADD_FAILURE() << "all can be resolved"; });
    EXPECT_EQ(store->links().first().bookmarkData, QByteArray("bm:/new"));
    EXPECT_FALSE(store->canUndo());
    EXPECT_EQ(storedBytes(), encodeLinks(store->links()));
    store->restoreRootAccess();
    EXPECT_EQ(defaults.get<QList<QByteArray>>(LinkStore::rootBookmarksBaseKey()),
              QList<QByteArray>({"bm:/r", "bm:/new", "junk"}));

    LogCapture log;
    file.bookmarkData = "junk";
    EXPECT_EQ(securePath(file, bookmarks), u"/old");
    EXPECT_TRUE(log.contains(u"LinkStore: Erreur résolution bookmark: not a bookmark"_s));
}

TEST_F(StoreTest, RepairRebuildsBookmarksBelowTheChosenFolder)
{
    LinkItem one = LinkItem::make(u"1"_s, u"/data/x/1"_s, LinkType::File, {1});
    one.bookmarkData = "junk";
    LinkItem two = LinkItem::make(u"2"_s, u"/data/y"_s, LinkType::Folder, {1});
    two.bookmarkData = "junk";
    ASSERT_TRUE(defaults.write(LinkStore::linksBaseKey(), encodeLinks({one, two})));
    bookmarks.missing = {u"/data/y"_s};
    start();
    FakeFolderChooser chooser;
    const QByteArray before = storedBytes();
    store->repairBookmarks(chooser);
    EXPECT_EQ(chooser.startFolders, QStringList(u"/data"_s));
    EXPECT_EQ(storedBytes(), before) << "cancelled";
    chooser.answer = u"/data"_s;
    store->repairBookmarks(chooser);
    EXPECT_EQ(store->links().at(0).bookmarkData, QByteArray("bm:/data/x/1"));
    EXPECT_EQ(store->links().at(1).bookmarkData, QByteArray("junk"));
    EXPECT_EQ(defaults.get<QList<QByteArray>>(LinkStore::rootBookmarksBaseKey()), QList<QByteArray>({"bm:/data"}));
    EXPECT_TRUE(bookmarks.accessed.contains(u"/data"_s));
}

} // namespace
} // namespace orvelle::test
