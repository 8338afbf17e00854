#include "links/LinkLog.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "platform/Clock.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// What an editor has made of an item, to be done again on a copy of it that
/// another process has changed meanwhile: a field that the editor left alone
/// keeps that process's value.
LinkItem withChanges(LinkItem current, const LinkItem &before, const LinkItem &edited)
{
    const auto take = [&](auto field) {
        if (edited.*field != before.*field)
            current.*field = edited.*field;
    };
    const auto takeAll = [&take](auto... fields) { (take(fields), ...); };
    takeAll(&LinkItem::name, &LinkItem::path, &LinkItem::type, &LinkItem::children, &LinkItem::bookmarkData,
            &LinkItem::customIconName, &LinkItem::customIconColor, &LinkItem::stableId, &LinkItem::createdAt,
            &LinkItem::modifiedAt, &LinkItem::noteContent, &LinkItem::noteRTFData, &LinkItem::noteColoredInMenu,
            &LinkItem::contentModifiedAt);
    return current;
}

} // namespace

/// Makes an edit and tells why it was refused. The reason is that of its last
/// run, as it may run again on another process's tree.
std::optional<EditRefusal> LinkStore::attempt(Step step, const QString &reason, const Attempt &change)
{
    const auto refusal = std::make_shared<std::optional<EditRefusal>>();
    const bool done = edit(step, reason, [change, refusal](LinkList &links) {
        *refusal = change(links);
        return !refusal->has_value();
    });
    if (done)
        return std::nullopt;
    if (!*refusal)
        return step == Step::Destructive ? EditRefusal::NotStored : EditRefusal::TooDeep;
    if (*refusal == EditRefusal::TooDeep || *refusal == EditRefusal::IntoItself)
        qCInfo(lcLinkStore).noquote() << logText(**refusal);
    return *refusal;
}

void LinkStore::addLink(const LinkItem &item)
{
    edit(Step::Ordinary, u"add"_s, [item](LinkList &links) {
        links.append(withFreeIdentities(links, item));
        return true;
    });
}

bool LinkStore::addLinkToGroup(const LinkItem &item, const QUuid &groupId)
{
    return edit(Step::Ordinary, u"add"_s, [item, groupId](LinkList &links) {
        return appendToGroup(links, groupId, withFreeIdentities(links, item));
    });
}

void LinkStore::insertLink(const LinkItem &item, qsizetype index)
{
    edit(Step::Ordinary, u"add"_s, [item, index](LinkList &links) {
        links.insert(std::clamp<qsizetype>(index, 0, links.size()), withFreeIdentities(links, item));
        return true;
    });
}

bool LinkStore::removeLink(const QUuid &id)
{
    return edit(Step::Destructive, u"remove"_s, [id](LinkList &links) { return removeItem(links, id); });
}

std::optional<EditRefusal> LinkStore::removeLinks(const QList<QUuid> &ids)
{
    return attempt(Step::Destructive, u"remove"_s, [ids](LinkList &links) { return removeItems(links, ids); });
}

bool LinkStore::updateLink(const LinkItem &item, bool touchModifiedAt)
{
    const auto before = find(item.id);
    if (!before)
        return false;
    const Timestamp now = m_services.clock.now();
    return edit(Step::Ordinary, u"update"_s, [before = *before, item, touchModifiedAt, now](LinkList &links) {
        const LinkItem *old = findItem(links, item.id);
        if (!old)
            return false;
        LinkItem fresh = withChanges(*old, before, item);
        if (touchModifiedAt)
            fresh.modifiedAt = editDate(old->modifiedAt, now);
        // A copy that was taken before the picture came does not take it away.
        fresh.faviconData = item.faviconData || fresh.path != old->path ? item.faviconData : old->faviconData;
        return replaceItem(links, fresh);
    });
}

std::optional<EditRefusal> LinkStore::updateLinks(const QList<QUuid> &ids,
                                                  const std::function<void(LinkItem &)> &change)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"update"_s,
                   [ids, change, now](LinkList &links) { return changeEach(links, ids, change, now); });
}

void LinkStore::moveLinks(const QSet<qsizetype> &from, qsizetype to)
{
    // By identity, as offsets mean nothing on another process's tree.
    QList<QUuid> ids;
    std::optional<QUuid> before;
    for (qsizetype i = 0; i < m_links.size(); ++i) {
        if (from.contains(i))
            ids += m_links.at(i).id;
        else if (!before && i >= to)
            before = m_links.at(i).id;
    }
    attempt(Step::Ordinary, u"move"_s, [ids, before](LinkList &links) { return reorderTopLevel(links, ids, before); });
}

std::optional<EditRefusal> LinkStore::moveLink(const QUuid &id, const std::optional<QUuid> &toGroup,
                                               std::optional<qsizetype> at)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"move"_s,
                   [id, toGroup, at, now](LinkList &links) { return moveItem(links, id, toGroup, at, now); });
}

std::optional<EditRefusal> LinkStore::moveLinks(const QList<QUuid> &ids, const std::optional<QUuid> &toGroup,
                                                std::optional<qsizetype> before)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"move"_s, [ids, toGroup, before, now](LinkList &links) {
        return moveItems(links, ids, toGroup, before, now);
    });
}

std::optional<EditRefusal> LinkStore::indentLink(const QUuid &id)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"move"_s, [id, now](LinkList &links) { return indentItem(links, id, now); });
}

std::optional<EditRefusal> LinkStore::outdentLink(const QUuid &id)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"move"_s, [id, now](LinkList &links) { return outdentItem(links, id, now); });
}

std::optional<EditRefusal> LinkStore::sortGroupAlphabetically(const QUuid &groupId)
{
    const Timestamp now = m_services.clock.now();
    return attempt(Step::Ordinary, u"sort"_s,
                   [groupId, now](LinkList &links) { return sortGroup(links, groupId, now); });
}

void LinkStore::setFaviconData(const QHash<QUuid, std::optional<QByteArray>> &pictures)
{
    const bool changed = changeItems(m_links, [&pictures](const LinkItem &old) -> std::optional<LinkItem> {
        const auto picture = pictures.constFind(old.id);
        if (picture == pictures.cend() || old.faviconData == *picture)
            return std::nullopt;
        LinkItem item = old;
        item.faviconData = *picture;
        return item;
    });
    if (changed)
        emit faviconsChanged();
}

} // namespace orvelle
