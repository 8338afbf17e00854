#include "links/LinkEditing.h"
#include "links/LinkTree.h"
#include "support/Outline.h"
#include "sync/ItemDates.h"
#include "sync/LinkMerge.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

/// A machine whose user edits its tree as views do.
class Replica
{
public:
    Replica(quint32 seed, double &now, LinkList shared) : links(std::move(shared)), m_random(seed), m_now(now) {}

    LinkList links;

    void edit()
    {
        m_now += 1;
        const LinkList all = flatten(links);
        const LinkItem picked = all.isEmpty() ? fresh() : all.at(below(all.size()));
        switch (below(4)) {
        case 0:
            place(fresh());
            break;
        case 1:
            move(picked);
            break;
        default:
            change(picked);
        }
    }

    /// The merge of the other's document, written now.
    void receive(const LinkList &document)
    {
        m_now += 1;
        const Timestamp exportDate{m_now};
        links = autoMergeLinks(links, document, exportDate, prefersRemoteOrder(links, exportDate), {});
    }

private:
    qsizetype below(qsizetype bound) { return static_cast<qsizetype>(m_random() % static_cast<quint32>(bound)); }

    LinkItem fresh()
    {
        const bool isGroup = below(3) == 0;
        const LinkType type = isGroup ? LinkType::Group : below(2) == 0 ? LinkType::Note : LinkType::Url;
        return LinkItem::make(u"n%1"_s.arg(m_now), u""_s, type, Timestamp{m_now});
    }

    void place(const LinkItem &item)
    {
        LinkList groups;
        walk(links, [&groups](const LinkItem &one) {
            if (one.isGroup())
                groups += one;
        });
        const qsizetype at = below(groups.size() + 1);
        if (at == groups.size())
            links.insert(below(links.size() + 1), item);
        else
            appendToGroup(links, groups.at(at).id, item);
    }

    void move(LinkItem item)
    {
        removeItem(links, item.id);
        item.modifiedAt = Timestamp{m_now};
        place(item);
    }

    void change(LinkItem item)
    {
        item.modifiedAt = Timestamp{m_now};
        item.name = u"named %1"_s.arg(m_now);
        if (item.type == LinkType::Note && below(2) == 0) {
            item.noteContent = item.name;
            item.contentModifiedAt = item.modifiedAt;
        }
        replaceItem(links, item);
    }

    std::mt19937 m_random;
    double &m_now;
};

struct Known {
    LinkItem item; ///< without members
    QString group;
    friend bool operator==(const Known &, const Known &) = default;
};
using KnownById = QHash<QString, Known>;

void learn(const LinkList &links, const QString &group, KnownById &known)
{
    for (const LinkItem &item : links) {
        Known one{item, group};
        one.item.children.reset();
        known.insert(item.stableId, one);
        if (item.children)
            learn(*item.children, item.stableId, known);
    }
}

/// All but the order of siblings, which each machine keeps for itself.
KnownById knownOf(const LinkList &links)
{
    KnownById known;
    learn(links, {}, known);
    return known;
}

/// No identity twice, and of each one that is left the newest copy.
void expectSound(const LinkList &merged, const LinkList &local, const LinkList &remote)
{
    const KnownById known = knownOf(merged);
    ASSERT_EQ(known.size(), countAll(merged));
    for (const LinkList &side : {local, remote}) {
        walk(side, [&](const LinkItem &item) {
            const auto found = known.constFind(item.stableId);
            ASSERT_NE(found, known.constEnd()) << "nothing was deleted";
            EXPECT_GE(itemDate(found->item), itemDate(item));
            if (item.type == LinkType::Note) {
                EXPECT_GE(contentDate(found->item), contentDate(item));
            }
        });
    }
}

TEST(MergeProperties, TwoMachinesThatExchangeDocumentsConverge)
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        double now = 2000;
        Replica here(seed, now, treeFrom(u"a b f[c g[d]] h[]"_s));
        Replica there(seed + 1000, now, here.links);
        std::mt19937 random(seed);
        for (int round = 0; round < 12; ++round) {
            for (quint32 edits = random() % 4; edits > 0; --edits)
                (random() % 2 ? here : there).edit();
            Replica &reader = random() % 2 ? here : there;
            const Replica &writer = &reader == &here ? there : here;
            const LinkList before = reader.links;
            reader.receive(writer.links);
            const LinkList merged = reader.links;
            expectSound(merged, before, writer.links);
            reader.receive(writer.links);
            ASSERT_EQ(reader.links, merged) << "a second time changes nothing";
            if (HasFailure())
                return;
        }
        for (int i = 0; i < 3; ++i) {
            here.receive(there.links);
            there.receive(here.links);
        }
        ASSERT_TRUE(knownOf(here.links) == knownOf(there.links)) << qPrintable(outlineOf(here.links)) << "\n"
                                                                 << qPrintable(outlineOf(there.links));
    }
}

/// Any tree at all: identities repeat, kinds change, dates are missing.
LinkList wildTree(std::mt19937 &random, int depth, int identities)
{
    LinkList links;
    for (auto count = random() % 5; count > 0; --count) {
        LinkItem item;
        item.stableId = QString::number(random() % static_cast<quint32>(identities));
        item.name = item.stableId;
        item.type = static_cast<LinkType>(random() % 5);
        for (auto *date : {&item.createdAt, &item.modifiedAt, &item.contentModifiedAt}) {
            if (random() % 3)
                *date = Timestamp{static_cast<double>(random() % 20)};
        }
        if (depth > 0 && (item.isGroup() || random() % 20 == 0))
            item.children = wildTree(random, depth - 1, identities);
        links += item;
    }
    return links;
}

TEST(MergeProperties, AnyTwoTreesKeepWhatIsNewerAndEachIdentityOnce)
{
    for (quint32 seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const int identities = 3 + static_cast<int>(random() % 30);
        const LinkList local = wildTree(random, 4, identities);
        const LinkList remote = wildTree(random, 4, identities);
        const Timestamp exportDate{static_cast<double>(random() % 20)};
        const bool prefer = random() % 2;
        const LinkList merged = autoMergeLinks(local, remote, exportDate, prefer, {});
        const KnownById known = knownOf(merged);
        ASSERT_EQ(known.size(), countAll(merged));
        const auto expectNewest = [&](const LinkItem &item) {
            const auto found = known.constFind(item.stableId);
            ASSERT_NE(found, known.constEnd()) << item.stableId.toStdString();
            EXPECT_GE(itemDate(found->item), itemDate(item)) << item.stableId.toStdString();
        };
        const QSet<QString> there = collectAllStableIds(remote);
        walk(remote, expectNewest);
        walk(local, [&](const LinkItem &item) {
            if (prefer || there.contains(item.stableId) || creationDate(item) >= exportDate)
                expectNewest(item);
        });
        EXPECT_EQ(deduplicateByStableId(merged), merged);
        // The first time gives each group a list of members.
        const LinkList once = autoMergeLinks(merged, merged, exportDate, prefer, {});
        EXPECT_EQ(autoMergeLinks(once, once, exportDate, prefer, {}).constData(), once.constData());
        if (HasFailure())
            return;
    }
}

TEST(MergeProperties, HostileSizesEndSoon)
{
    LinkList same;
    LinkList sameGroups;
    LinkList many;
    for (int i = 0; i < 100'000; ++i) {
        LinkItem item = namedLink(u"same"_s);
        same += item;
        item.type = LinkType::Group;
        item.children = LinkList{};
        sameGroups += item;
        item = namedLink(u"same"_s);
        item.stableId = QString::number(i);
        many += item;
    }
    sameGroups.first().children = many;
    LinkList deep;
    for (int level = 0; level < 250; ++level) {
        LinkItem group = sameGroups.last();
        group.stableId = QString::number(level);
        group.children = deep + many.mid(level * 400, 400);
        deep = {group};
    }
    const LinkList *all[] = {&same, &sameGroups, &many, &deep};
    const std::clock_t begun = std::clock(); // of this process alone, whatever else the machine does
    for (const LinkList *local : {&sameGroups, &deep}) {
        for (const LinkList *remote : all) {
            const LinkList merged = autoMergeLinks(*local, *remote, Timestamp{5}, false, {});
            ASSERT_EQ(collectAllStableIds(merged).size(), countAll(merged));
        }
    }
    EXPECT_LT((std::clock() - begun) / CLOCKS_PER_SEC, 60) << "eight merges of 100,000 items";
}

} // namespace
} // namespace orvelle::test
