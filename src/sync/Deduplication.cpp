#include "sync/Deduplication.h"

#include "links/LinkTree.h"
#include "sync/Adoption.h"
#include "sync/RebuiltList.h"

#include <QHash>

namespace orvelle {

namespace {

/// What is known of the copies of one identity.
struct Copies {
    CountedDate newest;
    const LinkItem *text = nullptr; ///< the note with the newest text
    bool isRepeated = false;
    bool staysSomewhere = false; ///< a copy that may not vanish
    bool isEmitted = false;
};

class Deduplicator
{
public:
    using MayVanish = std::function<bool(const LinkItem &)>;

    Deduplicator(const LinkList &items, const MayVanish &mayVanish, const SaneDates &dates)
        : m_items(items), m_mayVanish(mayVanish), m_dates(dates)
    {
        m_copies.reserve(countAll(items));
        scan(items);
    }

    LinkList run(std::optional<Timestamp> movedAt)
    {
        if (!m_anyRepeated)
            return m_items;
        noteWhatStays(m_items);
        const LinkList tree = rebuild(m_items, Orphanage::noRoute);
        // Rescued groups may leave out further copies.
        for (std::size_t i = 0; i < m_leftOut.size(); ++i) {
            const LeftOut one = m_leftOut[i];
            rescue(*one.item->children, one.route);
        }
        return m_orphans.adoptInto(tree, movedAt);
    }

private:
    struct LeftOut {
        const LinkItem *item;
        int route;
    };

    void scan(const LinkList &list)
    {
        for (const LinkItem &item : list) {
            const qsizetype before = m_copies.size();
            Copies &copies = m_copies[item.stableId];
            const bool isFirst = m_copies.size() > before;
            copies.isRepeated = !isFirst;
            m_anyRepeated |= !isFirst;
            if (isFirst || m_dates.itemDate(item) > copies.newest)
                copies.newest = m_dates.itemDate(item);
            if (item.type == LinkType::Note &&
                (!copies.text || m_dates.contentDate(item) > m_dates.contentDate(*copies.text)))
                copies.text = &item;
            if (item.children)
                scan(*item.children);
        }
    }

    void noteWhatStays(const LinkList &list)
    {
        for (const LinkItem &item : list) {
            Copies &copies = m_copies[item.stableId];
            copies.staysSomewhere = copies.staysSomewhere || !m_mayVanish(item);
            if (item.children)
                noteWhatStays(*item.children);
        }
    }

    LinkList rebuild(const LinkList &list, int route)
    {
        RebuiltList out(list);
        for (const LinkItem &item : list) {
            Copies &copies = m_copies[item.stableId];
            if (copies.isRepeated && (copies.isEmitted || m_dates.itemDate(item) < copies.newest)) {
                out.drop();
                leaveOut(item, route);
                continue;
            }
            copies.isEmitted = true;
            if (auto changed = emitted(item, copies, route))
                out.replace(std::move(*changed));
            else
                out.keep();
        }
        return out.take();
    }

    /// The item as it comes out, or nothing when it does so as it is.
    std::optional<LinkItem> emitted(const LinkItem &item, const Copies &copies, int route)
    {
        std::optional<LinkItem> changed;
        const LinkItem *text = copies.text;
        if (item.type == LinkType::Note && m_dates.contentDate(*text) > m_dates.contentDate(item)) {
            changed = item;
            changed->noteContent = text->noteContent;
            changed->noteRTFData = text->noteRTFData;
            changed->contentModifiedAt = text->contentModifiedAt;
        }
        if (!item.children)
            return changed;
        LinkList members = rebuild(*item.children, m_orphans.into(route, item.stableId));
        if (!isSameList(members, *item.children)) {
            if (!changed)
                changed = item;
            changed->children = std::move(members);
        }
        return changed;
    }

    void leaveOut(const LinkItem &item, int route)
    {
        if (item.children && !item.children->isEmpty())
            m_leftOut.push_back({&item, m_orphans.into(route, item.stableId)});
    }

    /// Saves what would go with a copy that was left out.
    void rescue(const LinkList &members, int route)
    {
        for (const LinkItem &item : members) {
            Copies &copies = m_copies[item.stableId];
            if (copies.isEmitted || m_dates.itemDate(item) < copies.newest || !copies.staysSomewhere) {
                leaveOut(item, route);
                continue;
            }
            copies.isEmitted = true;
            m_orphans.add(emitted(item, copies, route).value_or(item), route);
        }
    }

    const LinkList &m_items;
    const MayVanish &m_mayVanish;
    const SaneDates &m_dates;
    QHash<QStringView, Copies> m_copies; ///< by texts in m_items
    bool m_anyRepeated = false;
    std::vector<LeftOut> m_leftOut;
    Orphanage m_orphans;
};

} // namespace

LinkList deduplicate(const LinkList &items, std::optional<Timestamp> movedAt,
                     const std::function<bool(const LinkItem &)> &mayVanish, const SaneDates &dates)
{
    return Deduplicator(items, mayVanish, dates).run(movedAt);
}

} // namespace orvelle
