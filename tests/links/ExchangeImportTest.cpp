#include "links/exchange/ExchangeImport.h"

#include "links/LinkTree.h"
#include "links/StoreFixture.h"
#include "links/exchange/ExchangeAnalysis.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeFile.h"
#include "links/exchange/ExchangeSettings.h"
#include "support/Hostile.h"

#include <QSet>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using Step = LinkStore::Step;

class FakeExchangeSettings : public ExchangeSettings
{
public:
    std::optional<ExportData> applied;

    void gather(ExportData &document) const override { document.quickLaunchEnabled = true; }
    bool apply(const ExportData &document) override
    {
        applied = document;
        return document.quickLaunchApps.has_value();
    }
};

class Exchange : public StoreTest
{
protected:
    /// A document with this tree.
    static QByteArray documentOf(const LinkList &links)
    {
        ExportData document;
        document.links = links;
        return encodeExchange(document);
    }
    static QByteArray documentOf(const QString &outline) { return documentOf(treeFrom(outline)); }

    LinkExchange exchange() { return LinkExchange(*store, settings, bookmarks, clock); }

    /// "imported skipped", or the refusal's number.
    std::pair<qint64, qint64> import(const QByteArray &document, ImportMode mode)
    {
        const auto result = exchange().importJSON(document, mode);
        EXPECT_TRUE(result);
        return result ? std::pair(result->importedCount, result->skippedCount) : std::pair(qint64(-1), qint64(-1));
    }

    QStringList snapshotReasons() const
    {
        QStringList reasons;
        for (const SnapshotInfo &snapshot : snapshots.list(false))
            reasons += snapshot.reason;
        return reasons;
    }

    FakeExchangeSettings settings;
};

using Counts = std::pair<qint64, qint64>;

TEST_F(Exchange, ExportsAPortableDocumentAndItsDigest)
{
    LinkItem file = namedLink(u"f"_s);
    file.type = LinkType::File;
    file.path = u"/home/ada/Documents/x"_s;
    start().edit(Step::Ordinary, {}, [file](LinkList &links) {
        links = {file};
        return true;
    });
    const auto exported = exchange().exportJSON();
    const auto document = decodeExchange(exported.bytes);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->version, 6);
    EXPECT_EQ(document->exportDate, clock.now());
    EXPECT_EQ(document->lastModifiedByMachineId, store->machineId());
    EXPECT_EQ(document->quickLaunchEnabled, true);
    EXPECT_EQ(document->links[0].path, u"~/Documents/x");
    EXPECT_EQ(document->checksum, linksChecksum(document->links));
    EXPECT_EQ(exported.contentDigest, exchangeDigests(*document).content);

    ASSERT_EQ(import(exported.bytes, ImportMode::Replace), Counts(1, 0));
    EXPECT_EQ(store->links()[0].path, file.path);
    EXPECT_EQ(store->links()[0].bookmarkData, FakeFileBookmarks::bookmarkOf(file.path));
}

TEST_F(Exchange, ReplaceKeepsIdentitiesAndIsOneUndoStep)
{
    put(u"a g[b]"_s);
    start();
    EXPECT_EQ(import(documentOf(u"x y[z w]"_s), ImportMode::Replace), Counts(4, 0));
    EXPECT_EQ(stored(), u"x y[z w]");
    EXPECT_EQ(store->links()[0].id, idOf(u"x"_s));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(snapshotReasons(), QStringList(u"replace"_s));
    ASSERT_TRUE(settings.applied);
    EXPECT_TRUE(store->undo());
    EXPECT_EQ(stored(), u"a g[b]");
}

TEST_F(Exchange, MergeSkipsByContentAndTheSecondTimeEverything)
{
    put(u"a g[b]"_s);
    start();
    // g has other members here, but a merge does not look into groups.
    const QByteArray document = documentOf(u"c a g[x] h[b]"_s);
    EXPECT_EQ(import(document, ImportMode::Merge), Counts(3, 2));
    EXPECT_EQ(stored(), u"a g[b] c h[b]");
    EXPECT_EQ(snapshotReasons(), QStringList(u"import"_s));
    const QByteArray before = storedBytes();
    EXPECT_EQ(import(document, ImportMode::Merge), Counts(0, 4));
    EXPECT_EQ(storedBytes(), before);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(snapshotReasons().size(), 1) << "nothing was done";
    EXPECT_TRUE(store->undo());
    EXPECT_EQ(stored(), u"a g[b]");
}

void expectUniqueIdentities(const LinkList &links)
{
    QSet<QUuid> ids;
    QSet<QString> stableIds;
    walk(links, [&](const LinkItem &item) {
        ids.insert(item.id);
        stableIds.insert(item.stableId);
    });
    EXPECT_EQ(ids.size(), countAllLinks(links));
    EXPECT_EQ(stableIds.size(), countAllLinks(links));
    EXPECT_FALSE(stableIds.contains(QString()));
}

TEST_F(Exchange, NoImportGivesTwoItemsOneIdentity)
{
    LinkList twins = treeFrom(u"a g[b a]"_s);
    twins[0].name = u"renamed"_s;
    twins[1].children->first().stableId.clear();
    put(u"a"_s);
    start();
    EXPECT_EQ(import(documentOf(twins), ImportMode::Merge), Counts(4, 0));
    EXPECT_EQ(stored(), u"a renamed g[b a]");
    EXPECT_EQ(store->links()[0].stableId, namedLink(u"a"_s).stableId) << "who was here first keeps it";
    expectUniqueIdentities(store->links());
    EXPECT_EQ(import(documentOf(twins), ImportMode::Replace), Counts(4, 0));
    EXPECT_EQ(store->links()[0].stableId, namedLink(u"a"_s).stableId);
    expectUniqueIdentities(store->links());
}

TEST_F(Exchange, AMergeIsMadeAgainOnAnotherProcessesTree)
{
    put(u"a"_s);
    start();
    otherProcessPuts(u"a c"_s);
    EXPECT_EQ(import(documentOf(u"b c"_s), ImportMode::Merge), Counts(1, 1)) << "counted on the tree that was kept";
    EXPECT_EQ(stored(), u"a c b");
}

TEST_F(Exchange, SyncAppliesNothingYet)
{
    put(u"a"_s);
    start();
    EXPECT_EQ(import(documentOf(u"b"_s), ImportMode::Sync), Counts(0, 0));
    EXPECT_EQ(stored(), u"a");
    EXPECT_FALSE(settings.applied);
}

TEST_F(Exchange, ARefusalChangesNothing)
{
    put(u"a g[b]"_s);
    start();
    const QByteArray before = storedBytes();
    forEachHostileFile(u"exchange"_s, [this](const QString &name, const QByteArray &bytes) {
        if (!name.startsWith(u"bad-"))
            return;
        EXPECT_FALSE(exchange().importJSON(bytes, ImportMode::Replace)) << qPrintable(name);
        EXPECT_FALSE(exchange().importJSON(bytes, ImportMode::Merge)) << qPrintable(name);
    });
    // Nor does one that cannot keep the tree before it.
    QFile::remove(folder.filePath(u"snapshots"_s));
    QFile blocker(folder.filePath(u"snapshots"_s));
    ASSERT_TRUE(blocker.open(QFile::WriteOnly));
    const auto refused = exchange().importJSON(documentOf(u"x"_s), ImportMode::Replace);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().kind, ImportError::Kind::NotStored);
    EXPECT_EQ(storedBytes(), before);
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(settings.applied);
}

TEST_F(Exchange, EveryAcceptedFileLeavesAHealthyTree)
{
    start();
    forEachHostileFile(u"exchange"_s, [this](const QString &name, const QByteArray &bytes) {
        if (name.startsWith(u"bad-"))
            return;
        SCOPED_TRACE(qPrintable(name));
        for (const ImportMode mode : {ImportMode::Replace, ImportMode::Merge})
            ASSERT_TRUE(exchange().importJSON(bytes, mode));
        expectUniqueIdentities(store->links());
        walk(store->links(), [](const LinkItem &item) {
            EXPECT_EQ(item.isGroup(), item.children.has_value());
            EXPECT_TRUE(item.createdAt && item.modifiedAt);
            EXPECT_FALSE(item.name.isEmpty());
        });
    });
}

TEST_F(Exchange, VersionsDecideAboutTheWarningOnly)
{
    start();
    for (const auto &[version, mismatch] : {std::pair(5, false), {6, false}, {7, true}}) {
        ExportData document;
        document.version = version;
        const auto result = exchange().importJSON(encodeExchange(document), ImportMode::Replace);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->hasVersionMismatch, mismatch) << version;
    }
}

/// Groups "g1[g2[...]]", the innermost of `levels` levels being a link.
LinkList chain(int levels)
{
    LinkItem item = namedLink(u"leaf"_s);
    for (int level = levels - 1; level >= 1; --level) {
        LinkItem group = namedLink(u"g%1"_s.arg(level));
        group.type = LinkType::Group;
        group.path.clear();
        group.children = LinkList{item};
        item = group;
    }
    return {item};
}

TEST(ExchangeImport, CutsTheEleventhLevelAndDropsIncompleteItemsWhole)
{
    EXPECT_TRUE(isValidLink(chain(10)[0], 0));
    EXPECT_FALSE(isValidLink(chain(11)[0], 0));
    EXPECT_FALSE(isValidLink(namedLink(u"a"_s), maxImportDepth));
    struct Case {
        const char *what;
        LinkList items;
        int levels;
        qint64 kept;
        qint64 dropped;
    };
    LinkItem nameless = namedLink(u"a"_s);
    nameless.name.clear();
    LinkItem pathless = namedLink(u"a"_s);
    pathless.path.clear();
    LinkItem group = treeFrom(u"g[b c]"_s)[0];
    group.children->append(pathless);
    LinkItem crowded = namedLink(u"a"_s);
    crowded.children = treeFrom(u"b c"_s);
    LinkItem childless = treeFrom(u"g[b]"_s)[0];
    childless.children.reset();
    const Case cases[] = {
        {"ten levels", chain(10), 10, 10, 0},       {"eleven levels", chain(11), 10, 10, 1},
        {"thirty levels", chain(30), 10, 10, 20},   {"no name", {nameless, namedLink(u"b"_s)}, 1, 1, 1},
        {"no path", {pathless}, 0, 0, 1},           {"a group with one such", {group, namedLink(u"b"_s)}, 1, 1, 4},
        {"children of a link", {crowded}, 1, 1, 2}, {"a group without a list", {childless}, 1, 1, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        qint64 dropped = 0;
        const LinkList valid = validLinks(c.items, dropped);
        EXPECT_EQ(treeLevels(valid), c.levels);
        EXPECT_EQ(countAllLinks(valid), c.kept);
        EXPECT_EQ(dropped, c.dropped);
    }
}

TEST(ExchangeImport, TheSameMeansNamePathAndKind)
{
    const LinkList list = treeFrom(u"a g[b]"_s);
    LinkItem other = list[0];
    other.stableId = u"another"_s;
    EXPECT_TRUE(existsInList(other, list));
    other.type = LinkType::File;
    EXPECT_FALSE(existsInList(other, list));
    EXPECT_FALSE(existsInList(namedLink(u"b"_s), list)) << "groups are not searched";
    EXPECT_EQ(outlineOf(filterNewLinks(treeFrom(u"b a g[] c"_s), list)), u"b c");
}

TEST(ExchangeImport, CancellingEndsTheSlowHalf)
{
    class Cancelling : public FakeFileBookmarks
    {
    public:
        WorkProgress progress;
        mutable int created = 0;
        Result<QByteArray, FileBookmarkError> create(const QString &path) const override
        {
            if (++created == 3)
                const_cast<WorkProgress &>(progress).cancelled = true;
            return FakeFileBookmarks::create(path);
        }
    };
    ExportData document;
    for (int i = 0; i < 10; ++i)
        document.links += LinkItem::make(u"f"_s, u"/f%1"_s.arg(i), LinkType::File, {});
    const QByteArray bytes = encodeExchange(document);
    Cancelling bookmarks;
    const auto prepared = prepareImport(bytes, bookmarks, u"/home/ada"_s, {}, &bookmarks.progress);
    ASSERT_FALSE(prepared);
    EXPECT_EQ(prepared.error().kind, ImportError::Kind::Cancelled);
    EXPECT_EQ(bookmarks.created, 3);
    WorkProgress whole;
    EXPECT_TRUE(prepareImport(bytes, bookmarks, u"/home/ada"_s, {}, &whole));
    EXPECT_EQ(whole.permille, 1000);
}

TEST(ExchangeAnalysis, ComparesByStableIdAndContent)
{
    LinkList other = treeFrom(u"a g[c d] e"_s);
    other[0].modifiedAt = Timestamp{5};
    other[0].id = QUuid::createUuid();
    other[1].children->last().name = u"renamed"_s;
    // b is missing, c has moved into the group, d has another name, e is new.
    EXPECT_EQ(analyseExchange(treeFrom(u"a b c g[d]"_s), other), (ExchangeAnalysis{1, 2, 2, 1}));
    EXPECT_EQ(analyseExchange(other, other), (ExchangeAnalysis{0, 0, 5, 0}));
}

TEST(ExchangeFile, WritesForTheUserOnlyAndReadsPlainFilesOnly)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"a.ovexport"_s);
    EXPECT_FALSE(writePrivateFile(path, "one"));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadOther | QFile::WriteOwner);
    EXPECT_FALSE(writePrivateFile(path, "two"));
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther), 0);
    const auto bytes = readExchangeFile(path);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, "two");

    EXPECT_TRUE(writePrivateFile(folder.filePath(u"none/a"_s), "x"));
    EXPECT_FALSE(readExchangeFile(folder.path()));
    EXPECT_FALSE(readExchangeFile(u"/dev/zero"_s));
    EXPECT_FALSE(readExchangeFile(folder.filePath(u"none"_s)));
    QFile large(folder.filePath(u"large"_s));
    ASSERT_TRUE(large.open(QFile::WriteOnly) && large.resize(maxExchangeBytes + 1));
    EXPECT_FALSE(readExchangeFile(large.fileName()));
}

} // namespace
} // namespace orvelle::test
