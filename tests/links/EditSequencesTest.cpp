#include "StoreFixture.h"
#include "links/LinkTree.h"
#include "support/LogCapture.h"

#include <random>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

/// Any edit a view could ask for, sensible or not.
class RandomEdits
{
public:
    RandomEdits(quint32 seed, LinkStore &store) : m_random(seed), m_store(store) {}

    qsizetype below(qsizetype bound) { return static_cast<qsizetype>(m_random() % static_cast<quint32>(bound)); }

    void make()
    {
        const LinkList all = flatten(m_store.links());
        const LinkItem picked = all.isEmpty() ? namedLink(u"none"_s) : all.at(below(all.size()));
        const QUuid id = picked.id;
        const QUuid group = groupOrAny(all);
        const auto target = below(3) == 0 ? std::nullopt : std::optional(group);
        const auto at = below(2) == 0 ? std::nullopt : std::optional(below(12) - 2);
        using Action = std::function<void()>;
        const Action actions[] = {
            [&] { m_store.addLink(fresh()); },
            [&] { m_store.addLinkToGroup(fresh(), group); },
            [&] { m_store.insertLink(below(4) == 0 ? picked : fresh(), below(8) - 2); },
            [&] { m_store.moveLink(id, target, at); },
            [&] { m_store.moveLink(id, target, at); },
            [&] { m_store.moveLinks(several(all), target, at); },
            [&] {
                m_store.moveLinks({below(5), below(9)}, below(9));
            },
            [&] { m_store.indentLink(id); },
            [&] { m_store.outdentLink(id); },
            [&] { m_store.sortGroupAlphabetically(group); },
            [&] { m_store.updateLinks(several(all), [](LinkItem &item) { item.customIconColor = u"red"_s; }); },
            [&] { m_store.updateLink(renamed(picked)); },
        };
        actions[below(std::size(actions))]();
    }

    void remove()
    {
        const LinkList all = flatten(m_store.links());
        m_store.removeLinks(several(all));
    }

private:
    LinkItem fresh()
    {
        LinkItem item = LinkItem::make(u"n%1"_s.arg(below(1000)), u"https://e"_s,
                                       below(3) == 0 ? LinkType::Group : LinkType::Url, {1});
        return item;
    }

    static LinkItem renamed(LinkItem item)
    {
        item.name += u'x';
        return item;
    }

    QUuid groupOrAny(const LinkList &all)
    {
        const auto groups = allGroups(m_store.links());
        if (groups.isEmpty() || below(10) == 0)
            return all.isEmpty() ? QUuid() : all.at(below(all.size())).id;
        return groups.at(below(groups.size())).group.id;
    }

    QList<QUuid> several(const LinkList &all)
    {
        QList<QUuid> ids;
        for (qsizetype i = below(4); i > 0 && !all.isEmpty(); --i)
            ids += all.at(below(all.size())).id;
        return ids;
    }

    std::mt19937 m_random;
    LinkStore &m_store;
};

void expectSound(const LinkList &links)
{
    QSet<QString> stableIds;
    QSet<QUuid> ids;
    walk(links, [&](const LinkItem &item) {
        ASSERT_EQ(item.isGroup(), item.children.has_value());
        ASSERT_FALSE(stableIds.contains(item.stableId));
        ASSERT_FALSE(ids.contains(item.id));
        stableIds += item.stableId;
        ids += item.id;
    });
}

TEST_F(StoreTest, AnySequenceOfEditsKeepsTheTreeSoundAndCanBeUndone)
{
    constexpr int rounds = 60;
    constexpr int editsARound = 40;
    const quint32 seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const LogCapture quiet;
    int edited = 0;
    for (int round = 0; round < rounds; ++round) {
        put(u"a f[b g[c]] d"_s);
        start();
        RandomEdits random(seed + static_cast<quint32>(round), *store);
        QList<QByteArray> states = {storedBytes()};
        for (int i = 0; i < editsARound; ++i) {
            const int writes = defaults.writeCount();
            changes = 0;
            clock.advance(std::chrono::seconds(1));
            i % editsARound == editsARound / 2 ? random.remove() : random.make();
            const int expected = storedBytes() == states.last() ? 0 : 1;
            ASSERT_EQ(defaults.writeCount() - writes, expected);
            ASSERT_EQ(changes, expected);
            expectSound(store->links());
            ASSERT_FALSE(HasFatalFailure());
            if (expected > 0)
                states += storedBytes();
        }
        ASSERT_EQ(storedBytes(), encodeLinks(store->links()));
        edited += static_cast<int>(states.size()) - 1;
        // Each step back keeps a copy of the tree on the disk first, which takes its time.
        const qsizetype back = std::min<qsizetype>(round % 20 == 0 ? editsARound : 1, states.size() - 1);
        for (qsizetype i = 1; i <= back; ++i) {
            ASSERT_TRUE(store->undo());
            ASSERT_EQ(storedBytes(), states[states.size() - 1 - i]);
        }
        for (qsizetype i = back - 1; i >= 0; --i) {
            ASSERT_TRUE(store->redo());
            ASSERT_EQ(storedBytes(), states[states.size() - 1 - i]);
        }
        ASSERT_FALSE(store->redo());
    }
    EXPECT_GT(edited, rounds * editsARound / 2) << "most of the edits did something";
}

TEST_F(StoreTest, OnlyRefusedMovesAreLogged)
{
    put(u"a f[g[h[]]]"_s);
    start();
    LogCapture log;
    EXPECT_EQ(store->moveLink(idOf(u"a"_s), idOf(u"h"_s)), EditRefusal::TooDeep);
    EXPECT_EQ(store->moveLinks({idOf(u"f"_s)}, idOf(u"g"_s)), EditRefusal::IntoItself);
    EXPECT_EQ(store->moveLink(idOf(u"z"_s), std::nullopt), EditRefusal::NotFound);
    EXPECT_EQ(store->sortGroupAlphabetically(idOf(u"f"_s)), EditRefusal::NothingToDo);
    EXPECT_EQ(store->outdentLink(idOf(u"a"_s)), EditRefusal::NothingToDo);
    EXPECT_EQ(log.lines(),
              QStringList({u"LinkStore: Déplacement refusé: profondeur maximale atteinte (3 niveaux)"_s,
                           u"LinkStore: Déplacement refusé: impossible de déplacer un groupe dans ses propres "
                           u"enfants"_s}));
    EXPECT_EQ(changes, 0);
}

TEST_F(StoreTest, AMoveIsJudgedOnTheTreeItLandsIn)
{
    struct Case {
        QString theirs;
        std::optional<EditRefusal> refusal;
        QString after;
    };
    const Case cases[] = {
        {u"x a f[g[]]"_s, std::nullopt, u"x f[g[a]]"_s},
        {u"a f[k[g[]]]"_s, EditRefusal::TooDeep, u"a f[k[g[]]]"_s},
        {u"f[g[]]"_s, EditRefusal::NotFound, u"f[g[]]"_s},
    };
    for (const Case &c : cases) {
        put(u"a f[g[]]"_s);
        start();
        otherProcessPuts(c.theirs);
        EXPECT_EQ(store->moveLink(idOf(u"a"_s), idOf(u"g"_s)), c.refusal);
        EXPECT_EQ(stored(), c.after);
        EXPECT_EQ(shown(), c.after);
        EXPECT_EQ(store->canUndo(), !c.refusal);
    }
    put(u"a b c"_s);
    start();
    otherProcessPuts(u"y a b c"_s);
    store->moveLinks({2}, 1);
    EXPECT_EQ(stored(), u"y a c b") << "offsets mean the items they meant before";
}

TEST_F(StoreTest, ARemovalWithoutASnapshotIsRefused)
{
    put(u"a b"_s);
    QFile obstacle(folder.filePath(u"snapshots"_s));
    ASSERT_TRUE(obstacle.open(QFile::WriteOnly));
    start();
    EXPECT_EQ(store->removeLinks({idOf(u"a"_s)}), EditRefusal::NotStored);
    EXPECT_EQ(stored(), u"a b");
}

TEST_F(StoreTest, PicturesStayWithTheirLinksThroughUndoAndReload)
{
    put(u"a f[b]"_s);
    start();
    int announced = 0;
    QObject::connect(store.get(), &LinkStore::faviconsChanged, [&announced] { ++announced; });
    const auto picture = [this](const QString &name) {
        return store->find(idOf(name))->faviconData.value_or(QByteArray("none"));
    };
    LinkItem renamed = namedLink(u"b"_s);
    renamed.name = u"B"_s;
    ASSERT_TRUE(store->updateLink(renamed));
    const int writes = defaults.writeCount();
    changes = 0;
    store->setFaviconData({{idOf(u"b"_s), QByteArray("png")}, {idOf(u"a"_s), QByteArray("old")}});
    store->setFaviconData({{idOf(u"b"_s), QByteArray("png")}, {idOf(u"z"_s), QByteArray("png")}});
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(changes + defaults.writeCount() - writes, 0);

    ASSERT_TRUE(store->updateLink(renamed));
    EXPECT_EQ(picture(u"b"_s), "png") << "a copy from before the picture came";
    ASSERT_TRUE(store->undo());
    ASSERT_TRUE(store->undo());
    EXPECT_EQ(store->find(idOf(u"b"_s))->name, u"b");
    EXPECT_EQ(picture(u"b"_s), "png") << "fetched after the step that was undone";
    store->setFaviconData({{idOf(u"a"_s), std::nullopt}});
    ASSERT_TRUE(store->redo());
    EXPECT_EQ(picture(u"b"_s), "png");
    EXPECT_EQ(picture(u"a"_s), "none");
    otherProcessPuts(u"b x"_s);
    defaults.announceOutsideChanges();
    EXPECT_EQ(picture(u"b"_s), "png");

    LinkItem moved = *store->find(idOf(u"b"_s));
    moved.path = u"https://elsewhere.example"_s;
    moved.faviconData.reset();
    ASSERT_TRUE(store->updateLink(moved));
    EXPECT_EQ(picture(u"b"_s), "none") << "another address, another picture";
    ASSERT_TRUE(store->undo());
    EXPECT_EQ(picture(u"b"_s), "png");
}

} // namespace
} // namespace orvelle::test
