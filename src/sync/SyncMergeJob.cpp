#include "sync/SyncMergeJob.h"

#include "links/LinkTree.h"
#include "links/exchange/ExchangeDocument.h"
#include "sync/ItemDates.h"
#include "sync/LinkMerge.h"

#include <QHash>

#include <cmath>

namespace orvelle {

namespace {

/// Documents have whole seconds.
Timestamp wholeSeconds(Timestamp date)
{
    return {std::floor(date.seconds)};
}

std::optional<Timestamp> wholeSeconds(const std::optional<Timestamp> &date)
{
    return date ? std::optional(wholeSeconds(*date)) : std::nullopt;
}

/// An item as all machines have it: without members, without what each machine
/// has of its own, and by itself.
LinkItem sharedContent(const LinkItem &item)
{
    LinkItem content = item;
    content.id = QUuid();
    content.children.reset();
    content.bookmarkData.reset();
    content.faviconData.reset();
    content.createdAt.reset();
    content.modifiedAt = wholeSeconds(itemDate(item));
    content.contentModifiedAt = wholeSeconds(item.contentModifiedAt);
    return content;
}

struct Place {
    LinkItem item;
    QString group;
};
using Places = QHash<QString, Place>;

void addPlaces(Places &places, const LinkList &links, const QString &group)
{
    for (const LinkItem &item : links) {
        places.insert(item.stableId, {sharedContent(item), group});
        if (item.children)
            addPlaces(places, *item.children, item.stableId);
    }
}

Places placesOf(const LinkList &links)
{
    Places places;
    addPlaces(places, links, {});
    return places;
}

bool isSame(const Place &a, const Place &b)
{
    return a.group == b.group && a.item == b.item;
}

/// The identities that the document may take away.
QSet<QString> removable(const SyncMergeInput &input)
{
    if (!input.base || input.removesNothing || !input.remote->history->contains(input.base->version))
        return {};
    QSet<QString> identities;
    walk(input.local, [&](const LinkItem &item) {
        if (input.base->items.contains(item.stableId) && itemDate(item) <= input.base->since)
            identities.insert(item.stableId);
    });
    return identities;
}

/// A note whose text was never edited has no date of that, and would count as
/// edited when it was last renamed: a rename would win over an edit made
/// elsewhere. Among machines that do date such edits, its text is a bit older
/// than the note: edits in the second in which it was made come after it.
class UneditedTexts
{
public:
    LinkList dated(LinkList links)
    {
        changeItems(links, [this](const LinkItem &item) -> std::optional<LinkItem> {
            if (item.type != LinkType::Note || item.contentModifiedAt)
                return std::nullopt;
            LinkItem note = item;
            note.contentModifiedAt = wholeSeconds(creationDate(item)) + -1;
            m_dates[item.stableId] += *note.contentModifiedAt;
            return note;
        });
        return links;
    }

    LinkList undated(LinkList links) const
    {
        if (m_dates.isEmpty())
            return links;
        changeItems(links, [this](const LinkItem &item) -> std::optional<LinkItem> {
            if (!item.contentModifiedAt || !m_dates.value(item.stableId).contains(*item.contentModifiedAt))
                return std::nullopt;
            LinkItem note = item;
            note.contentModifiedAt.reset();
            return note;
        });
        return links;
    }

private:
    QHash<QString, QList<Timestamp>> m_dates;
};

LinkList mergedTree(const SyncMergeInput &input, const MergeLog &log)
{
    MergeContext context;
    context.exportDate = input.remote->content.document->exportDate;
    context.now = input.now;
    QSet<QString> identities;
    if (input.remote->history || input.removesNothing) {
        if (input.remote->history)
            identities = removable(input);
        context.shared = &identities;
        context.preferRemoteOrder = false;
    }
    const LinkList &remote = input.remote->content.items;
    if (!input.remote->history)
        return autoMergeLinks(input.local, remote, context, log);
    UneditedTexts texts;
    const LinkList local = texts.dated(input.local);
    return texts.undated(autoMergeLinks(local, texts.dated(remote), context, log));
}

/// What makes the merged items at home here.
class Settling
{
public:
    Settling(const SyncMergeInput &input, const LinkList &merged)
        : m_exportDate(input.remote->content.document->exportDate),
          m_theirs(placesOf(input.remote->content.items)),
          m_merged(placesOf(merged))
    {
        walk(input.local, [this](const LinkItem &item) {
            m_ids.insert(item.stableId, item.id);
            m_taken.insert(item.id);
        });
    }

    std::optional<LinkItem> operator()(const LinkItem &item)
    {
        LinkItem settled = item;
        settled.id = idFor(item);
        if (!item.createdAt)
            settled.createdAt = m_exportDate;
        if (!item.modifiedAt)
            settled.modifiedAt = item.createdAt.value_or(Timestamp::distantPast());
        breakTie(settled);
        return settled == item ? std::nullopt : std::optional(settled);
    }

private:
    QUuid idFor(const LinkItem &item)
    {
        const auto known = m_ids.constFind(item.stableId);
        if (known != m_ids.constEnd())
            return *known;
        QUuid id = item.id;
        while (m_taken.contains(id))
            id = QUuid::createUuid();
        m_taken.insert(id);
        return id;
    }

    void breakTie(LinkItem &item) const
    {
        const auto theirs = m_theirs.constFind(item.stableId);
        if (theirs == m_theirs.constEnd())
            return;
        const Place &ours = *m_merged.constFind(item.stableId);
        if (isSame(ours, *theirs) || ours.item.modifiedAt != theirs->item.modifiedAt)
            return;
        const bool sameText =
            ours.item.noteContent == theirs->item.noteContent && ours.item.noteRTFData == theirs->item.noteRTFData;
        const Timestamp ourText = wholeSeconds(contentDate(ours.item));
        if (!sameText && ourText == wholeSeconds(contentDate(theirs->item)))
            item.contentModifiedAt = ourText + 1;
        LinkItem others = theirs->item;
        others.noteContent = ours.item.noteContent;
        others.noteRTFData = ours.item.noteRTFData;
        others.contentModifiedAt = ours.item.contentModifiedAt;
        if (others != ours.item || theirs->group != ours.group)
            item.modifiedAt = *ours.item.modifiedAt + 1;
    }

    Timestamp m_exportDate;
    Places m_theirs;
    Places m_merged;
    QHash<QString, QUuid> m_ids;
    QSet<QUuid> m_taken;
};

QStringList orderOf(const LinkList &links)
{
    QStringList order;
    walk(links, [&order](const LinkItem &item) { order += item.stableId; });
    return order;
}

} // namespace

SyncMergeOutcome mergeSyncDocument(const SyncMergeInput &input)
{
    SyncMergeOutcome outcome;
    outcome.tree = mergedTree(input, [&outcome](const QString &line) { outcome.removals += line; });
    keepPictures(outcome.tree, input.local);
    changeItems(outcome.tree, Settling(input, outcome.tree));
    outcome.changesTree = outcome.tree != input.local;
    if (!outcome.changesTree)
        outcome.tree = input.local;
    outcome.massRemoval = massRemoval(input.local, outcome.tree);
    outcome.result = countChanges(input.local, outcome.tree);
    return outcome;
}

SyncResult countChanges(const LinkList &before, const LinkList &after)
{
    SyncResult result;
    const Places had = placesOf(before);
    const Places has = placesOf(after);
    for (const auto &[stableId, place] : has.asKeyValueRange()) {
        const auto old = had.constFind(stableId);
        if (old == had.constEnd())
            ++result.addedCount;
        else if (!isSame(*old, place))
            ++result.updatedCount;
    }
    result.removedCount = had.size() + result.addedCount - has.size();
    return result;
}

bool differsFromDocument(const LinkList &tree, const SyncDocument &document)
{
    const Places ours = placesOf(tree);
    const Places theirs = placesOf(document.content.items);
    if (ours.size() != theirs.size())
        return true;
    return std::any_of(ours.keyValueBegin(), ours.keyValueEnd(), [&theirs](const auto &entry) {
        const auto there = theirs.constFind(entry.first);
        return there == theirs.constEnd() || !isSame(entry.second, *there);
    });
}

bool isOrderedOtherwise(const LinkList &tree, const SyncDocument &document)
{
    return orderOf(tree) != orderOf(document.content.items);
}

} // namespace orvelle
