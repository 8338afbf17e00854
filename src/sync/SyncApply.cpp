#include "links/LinkContent.h"
#include "sync/ItemDates.h"
#include "sync/PairMerge.h"
#include "sync/SyncAnalysis.h"
#include "sync/TreeParts.h"

#include <QSet>

#include <algorithm>

namespace orvelle {

namespace {

class SyncApplication
{
public:
    SyncApplication(const LinkList &local, const LinkList &imported, const SyncAnalysis &analysis, Timestamp now)
        : m_parts(local), m_analysis(analysis), m_now(now)
    {
        readGroups(imported, nullptr);
    }

    AppliedSync run()
    {
        // What becomes a group has to be one before anything comes into it,
        // and what stays is out of a group before that goes.
        each(SyncCategory::UpdatedRemote, [this](const SyncChange &change) { update(change); });
        each(SyncCategory::Added, [this](const SyncChange &change) { add(*change.importedLink); });
        for (const auto &[part, stableId] : m_moves)
            move(part, stableId);
        m_result.updatedCount = m_updated.size();
        noteWhatIsLeftAlone();
        for (const DuplicateGroup &duplicates : m_analysis.duplicateGroups)
            resolve(duplicates);
        each(SyncCategory::Removed, [this](const SyncChange &change) { remove(change.localLink->stableId); });
        return {m_parts.tree(), m_result};
    }

private:
    struct Imported {
        const LinkItem *group; ///< around the newest copy; null at the top level
        Timestamp date;
    };

    void readGroups(const LinkList &links, const LinkItem *group)
    {
        for (const LinkItem &item : links) {
            const auto known = m_imported.find(item.stableId);
            if (known == m_imported.end())
                m_imported.insert(item.stableId, {group, itemDate(item)});
            else if (itemDate(item) > known->date)
                *known = {group, itemDate(item)};
            if (item.children)
                readGroups(*item.children, &item);
        }
    }

    template<typename Do>
    void each(SyncCategory category, Do apply)
    {
        for (const SyncChange &change : m_analysis.changes) {
            if (change.category == category && change.isSelected)
                apply(change);
        }
    }

    /// Where the document has an item: the nearest group around it that is here.
    int groupFor(const QString &stableId) const
    {
        QSet<QString> seen; // copies of groups may be in each other
        const auto around = [this](const QString &one) { return m_imported.value(one, {nullptr, {}}).group; };
        for (const LinkItem *group = around(stableId); group && !seen.contains(group->stableId);
             group = around(group->stableId)) {
            seen.insert(group->stableId);
            const int part = m_parts.find(group->stableId);
            if (part != TreeParts::none && m_parts.item(part).isGroup())
                return part;
        }
        return TreeParts::topLevel;
    }

    void update(const SyncChange &change)
    {
        const LinkItem &imported = *change.importedLink;
        const int part = m_parts.find(imported.stableId);
        if (part == TreeParts::none)
            return;
        if (itemDate(imported) > itemDate(m_parts.item(part)))
            m_moves.emplace_back(part, imported.stableId);
        if (auto merged = mergePair(m_parts.item(part), imported))
            put(part, std::move(*merged));
    }

    bool put(int part, LinkItem item)
    {
        item.id = m_parts.item(part).id;
        item.bookmarkData = m_parts.item(part).bookmarkData;
        const bool changes = contentOf(item) != contentOf(m_parts.item(part));
        if (changes)
            m_updated.insert(part);
        m_parts.replace(part, std::move(item));
        return changes;
    }

    void move(int part, const QString &stableId)
    {
        const int group = groupFor(stableId);
        if (group != m_parts.groupOf(part) && m_parts.move(part, group))
            m_updated.insert(part);
    }

    void add(const LinkItem &item)
    {
        if (m_parts.find(item.stableId) != TreeParts::none)
            return;
        m_parts.add(item, groupFor(item.stableId));
        ++m_result.addedCount;
    }

    void remove(const QString &stableId)
    {
        const int part = m_parts.find(stableId);
        if (part == TreeParts::none)
            return;
        m_parts.remove(part);
        ++m_result.removedCount;
    }

    /// A pair of which the user does not want the document's copy.
    void noteWhatIsLeftAlone()
    {
        for (const SyncChange &change : m_analysis.changes) {
            if (change.category == SyncCategory::UpdatedRemote && !change.isSelected)
                m_leftAlone.insert(change.importedLink->stableId);
        }
    }

    void resolve(const DuplicateGroup &duplicates)
    {
        const LinkList &instances = duplicates.instances;
        const qsizetype kept = duplicates.keepIndex;
        if (kept < 0 || kept >= instances.size())
            return;
        const int part = m_parts.find(instances.at(kept).stableId);
        if (part == TreeParts::none)
            return;
        const bool changes = !m_leftAlone.contains(instances.at(kept).stableId) && keep(part, instances, kept);
        if (changes || m_parts.isRepeated(part))
            ++m_result.duplicatesResolved;
    }

    bool keep(int part, const LinkList &instances, qsizetype kept)
    {
        const LinkItem &newest =
            *std::max_element(instances.begin(), instances.end(),
                              [](const LinkItem &a, const LinkItem &b) { return itemDate(a) < itemDate(b); });
        LinkItem item = instances.at(kept);
        if (itemDate(item) < itemDate(newest)) {
            if (contentOf(item) == contentOf(m_parts.item(part)) && itemDate(m_parts.item(part)) > itemDate(newest))
                return false;
            item.modifiedAt = std::max(m_now, itemDate(newest) + 1);
            if (item.type == LinkType::Note)
                item.contentModifiedAt = item.modifiedAt;
            return put(part, std::move(item));
        }
        for (const LinkItem &other : instances) {
            if (auto merged = mergePair(item, other))
                item = std::move(*merged);
        }
        return itemDate(item) >= itemDate(m_parts.item(part)) && put(part, std::move(item));
    }

    TreeParts m_parts;
    const SyncAnalysis &m_analysis;
    Timestamp m_now;
    QHash<QString, Imported> m_imported;
    std::vector<std::pair<int, QString>> m_moves; ///< what the document has elsewhere, and newer
    QSet<int> m_updated;
    QSet<QString> m_leftAlone;
    SyncResult m_result;
};

} // namespace

AppliedSync applySyncChanges(const LinkList &local, const LinkList &imported, const SyncAnalysis &analysis,
                             Timestamp now)
{
    return SyncApplication(local, imported, analysis, now).run();
}

} // namespace orvelle
