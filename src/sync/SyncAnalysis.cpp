#include "sync/SyncAnalysis.h"

#include "links/LinkContent.h"
#include "sync/ItemDates.h"
#include "sync/PairMerge.h"

#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array rawValues = {"identical"_L1, "updatedRemote"_L1, "updatedLocal"_L1,
                                  "added"_L1,     "removed"_L1,       "duplicate"_L1};

struct Side {
    QList<const LinkItem *> copies;
    qsizetype newest = 0;
    QString group; ///< around the newest

    const LinkItem *item() const { return copies.isEmpty() ? nullptr : copies.at(newest); }
    void add(const LinkItem &item_, const QString &around)
    {
        if (copies.isEmpty() || itemDate(item_) > itemDate(*item())) {
            newest = copies.size();
            group = around;
        }
        copies += &item_;
    }
};

struct Entry {
    Side local;
    Side imported;
};

/// Every identity, in the order in which it comes first.
class Entries
{
public:
    void read(const LinkList &links, Side Entry::*side, const QString &group = {})
    {
        for (const LinkItem &item : links) {
            const qsizetype before = m_numbers.size();
            qsizetype &number = m_numbers[item.stableId];
            if (m_numbers.size() > before) {
                number = before;
                m_entries.emplaceBack();
            }
            (m_entries[number].*side).add(item, group);
            if (item.children)
                read(*item.children, side, item.stableId);
        }
    }
    const QList<Entry> &all() const { return m_entries; }

private:
    QHash<QString, qsizetype> m_numbers;
    QList<Entry> m_entries;
};

SyncChange changeOf(const Entry &entry, Timestamp exportDate)
{
    const LinkItem *local = entry.local.item();
    const LinkItem *imported = entry.imported.item();
    SyncChange change;
    if (local && imported) {
        change = compareSynced(*local, *imported);
        if (change.category == SyncCategory::Identical && entry.local.group != entry.imported.group) {
            const bool newerThere = itemDate(*imported) > itemDate(*local);
            change.category = newerThere ? SyncCategory::UpdatedRemote : SyncCategory::UpdatedLocal;
        }
    } else if (imported) {
        change.importedLink = *imported;
        change.category = SyncCategory::Added;
    } else {
        change.localLink = *local;
        change.category = SyncCategory::Removed;
        change.isSelected = creationDate(*local) < exportDate;
    }
    return change;
}

DuplicateGroup duplicatesOf(const Entry &entry)
{
    DuplicateGroup duplicates;
    for (const LinkItem *copy : entry.local.copies + entry.imported.copies)
        duplicates.instances += *copy;
    for (qsizetype i = 1; i < duplicates.instances.size(); ++i) {
        if (itemDate(duplicates.instances.at(i)) > itemDate(duplicates.instances.at(duplicates.keepIndex)))
            duplicates.keepIndex = i;
    }
    duplicates.path = duplicates.instances.at(duplicates.keepIndex).path;
    duplicates.type = duplicates.instances.at(duplicates.keepIndex).type;
    return duplicates;
}

} // namespace

QString rawValue(SyncCategory category)
{
    return rawValues.at(static_cast<std::size_t>(category));
}

qint64 SyncAnalysis::count(SyncCategory category) const
{
    if (category == SyncCategory::Duplicate)
        return duplicateGroups.size();
    return std::count_if(changes.begin(), changes.end(),
                         [category](const SyncChange &change) { return change.category == category; });
}

SyncChange compareSynced(const LinkItem &local, const LinkItem &imported)
{
    SyncChange change;
    change.localLink = local;
    change.importedLink = imported;
    const LinkItem here = contentOf(local);
    if (here == contentOf(imported))
        return change;
    const auto merged = mergePair(local, imported);
    const bool takesRemote = merged && contentOf(*merged) != here;
    change.category = takesRemote ? SyncCategory::UpdatedRemote : SyncCategory::UpdatedLocal;
    const std::pair<bool, const char16_t *> details[] = {
        {local.path != imported.path, u"sync.details.pathChanged"},
        {local.customIconColor != imported.customIconColor, u"sync.details.colorChanged"},
        {local.customIconName != imported.customIconName, u"sync.details.iconChanged"}};
    for (const auto &[differs, key] : details) {
        if (differs)
            change.details += QString::fromUtf16(key);
    }
    return change;
}

SyncAnalysis analyzeSyncChanges(const LinkList &local, const LinkList &imported, Timestamp exportDate)
{
    Entries entries;
    entries.read(local, &Entry::local);
    entries.read(imported, &Entry::imported);
    SyncAnalysis analysis;
    for (const Entry &entry : entries.all()) {
        analysis.changes += changeOf(entry, exportDate);
        if (entry.local.copies.size() > 1 || entry.imported.copies.size() > 1)
            analysis.duplicateGroups += duplicatesOf(entry);
    }
    return analysis;
}

} // namespace orvelle
