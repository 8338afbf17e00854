#include "sync/LinkMerge.h"

#include "links/LinkTree.h"
#include "sync/Adoption.h"
#include "sync/Deduplication.h"
#include "sync/ItemDates.h"
#include "sync/PairMerge.h"
#include "sync/RebuiltList.h"
#include "sync/RemoteIndex.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

SaneDates datesFor(const MergeContext &context)
{
    return context.now ? SaneDates(context.exportDate, *context.now) : SaneDates();
}

class LinkMerge
{
public:
    LinkMerge(const LinkList &remote, const MergeContext &context, bool preferRemoteOrder, const MergeLog &log)
        : m_dates(datesFor(context)),
          m_remote(remote, m_dates),
          m_exportDate(context.exportDate),
          m_shared(context.shared),
          m_preferRemoteOrder(preferRemoteOrder),
          m_log(log),
          m_matched(static_cast<std::size_t>(m_remote.size())),
          m_taken(static_cast<std::size_t>(m_remote.size()) + 1)
    {
    }

    LinkList run(const LinkList &local)
    {
        walk(local, [this](const LinkItem &item) {
            if (item.bookmarkData)
                m_bookmarks.insert(item.stableId, *item.bookmarkData);
        });
        const LinkList merged = mergeLevel(local, m_remote.root(), Orphanage::noRoute);
        return deduplicate(
            m_orphans.adoptInto(merged, m_exportDate), m_exportDate,
            [this](const LinkItem &item) { return mayBeDeleted(item) && m_remote.identity(item.stableId) < 0; },
            m_dates);
    }

private:
    using Level = RemoteIndex::Level;

    LinkList mergeLevel(const LinkList &local, Level level, int route)
    {
        RebuiltList out(local);
        for (const LinkItem &item : local) {
            const int identity = m_remote.identity(item.stableId);
            const int match = m_remote.newestIn(level, identity);
            if (match >= 0) {
                mergeInto(out, item, match, route);
            } else if (isGone(item, identity, level)) {
                remove(item, route);
                out.drop();
            } else {
                out.keep();
            }
        }
        // When the group is here twice, both are merged with the one there,
        // but only the first takes its other members: many times many
        // members is what nobody could wait for.
        auto taken = m_taken.begin() + (level.parent + 1);
        if (!*taken)
            addRemoteOnly(out, level);
        *taken = true;
        return out.take();
    }

    void mergeInto(RebuiltList &out, const LinkItem &local, int match, int route)
    {
        m_matched[static_cast<std::size_t>(match)] = true;
        auto merged = mergeItem(local, match, route);
        if (!merged) {
            out.keep();
            return;
        }
        // Nobody would find members in what is no group any more.
        LinkList members;
        if (!merged->isGroup() && local.isGroup() != m_remote.item(match).isGroup() && merged->children) {
            members = *merged->children;
            merged->children.reset();
        }
        out.replace(std::move(*merged));
        for (const LinkItem &member : members)
            out.add(member);
    }

    void addRemoteOnly(RebuiltList &out, Level level)
    {
        for (int i = level.begin; i < level.end; i = m_remote.endOf(i)) {
            if (!m_matched[static_cast<std::size_t>(i)])
                out.add(withOwnBookmarks(m_remote.item(i)));
        }
    }

    /// What was moved there keeps the bookmark it has here.
    LinkItem withOwnBookmarks(const LinkItem &item) const
    {
        if (m_bookmarks.isEmpty())
            return item;
        LinkList one = {item};
        changeItems(one, [this](const LinkItem &old) -> std::optional<LinkItem> {
            const auto own = m_bookmarks.constFind(old.stableId);
            if (own == m_bookmarks.constEnd())
                return std::nullopt;
            LinkItem changed = old;
            changed.bookmarkData = *own;
            return changed;
        });
        return one.first();
    }

    /// Absent when the local item stays as it is.
    std::optional<LinkItem> mergeItem(const LinkItem &local, int match, int route)
    {
        const LinkItem &remote = m_remote.item(match);
        auto merged = mergePair(local, remote, m_dates);
        if (!hasMembers(local) && !hasMembers(remote))
            return merged;
        const LinkList mine = local.children.value_or(LinkList());
        LinkList members = mergeLevel(mine, m_remote.below(match), m_orphans.into(route, local.stableId));
        if (!merged && local.children && isSameList(members, mine))
            return std::nullopt;
        if (!merged)
            merged = local;
        merged->children = std::move(members);
        return merged;
    }

    static bool hasMembers(const LinkItem &item)
    {
        return item.isGroup() || (item.children && !item.children->isEmpty());
    }

    bool mayBeDeleted(const LinkItem &item) const
    {
        if (m_preferRemoteOrder || (m_shared && !m_shared->contains(item.stableId)))
            return false;
        const Timestamp created = creationDate(item);
        return m_dates.isWrong(created) ? m_shared != nullptr : created < m_exportDate;
    }

    /// Whether the item was moved there, but is newer here.
    bool isNewerThanElsewhere(const LinkItem &item, int identity) const
    {
        return identity >= 0 && m_remote.newestDate(identity) < m_dates.itemDate(item);
    }

    bool isGone(const LinkItem &item, int identity, Level level) const
    {
        return mayBeDeleted(item) && !m_remote.isBelow(level, identity) && !isNewerThanElsewhere(item, identity);
    }

    void remove(const LinkItem &item, int route)
    {
        if (m_log)
            m_log(u"Auto-merge: suppression de '%1' (supprimé sur l'autre Mac)"_s.arg(item.name));
        if (item.children)
            saveMembers(*item.children, m_orphans.into(route, item.stableId));
    }

    void saveMembers(const LinkList &members, int route)
    {
        for (const LinkItem &item : members) {
            if (!mayBeDeleted(item) || isNewerThanElsewhere(item, m_remote.identity(item.stableId)))
                m_orphans.add(item, route);
            else if (item.children)
                saveMembers(*item.children, m_orphans.into(route, item.stableId));
        }
    }

    SaneDates m_dates;
    RemoteIndex m_remote;
    Timestamp m_exportDate;
    const QSet<QString> *m_shared;
    bool m_preferRemoteOrder;
    const MergeLog &m_log;
    QHash<QString, QByteArray> m_bookmarks; ///< of the items here
    std::vector<bool> m_matched;            ///< by position: merged with an item here
    std::vector<bool> m_taken;              ///< by the list's parent's position + 1: its other members came in
    Orphanage m_orphans;
};

} // namespace

bool prefersRemoteOrder(const LinkList &local, Timestamp exportDate)
{
    return exportDate > latestItemDate(local);
}

LinkList autoMergeLinks(const LinkList &local, const LinkList &remote, Timestamp exportDate, bool preferRemoteOrder,
                        const MergeLog &log)
{
    return LinkMerge(remote, {exportDate}, preferRemoteOrder, log).run(local);
}

LinkList autoMergeLinks(const LinkList &local, const LinkList &remote, const MergeContext &context, const MergeLog &log)
{
    const Timestamp latest = datesFor(context).count(latestItemDate(local)).counted;
    return LinkMerge(remote, context, context.preferRemoteOrder.value_or(context.exportDate > latest), log).run(local);
}

QSet<QString> collectAllStableIds(const LinkList &from)
{
    QSet<QString> stableIds;
    walk(from, [&stableIds](const LinkItem &item) { stableIds.insert(item.stableId); });
    return stableIds;
}

LinkList deduplicateByStableId(const LinkList &items)
{
    return deduplicate(items, std::nullopt, [](const LinkItem &) { return false; });
}

} // namespace orvelle
