#include "links/exchange/TakenIdentities.h"

#include "base/Uuid.h"
#include "links/LinkTree.h"

namespace orvelle {

namespace {

template<typename T>
bool claim(const T &value, QSet<T> &taken)
{
    const qsizetype before = taken.size();
    taken.insert(value);
    return taken.size() > before;
}

} // namespace

TakenIdentities::TakenIdentities(qsizetype expected)
{
    m_ids.reserve(expected);
    m_stableIds.reserve(expected);
}

void TakenIdentities::addAll(const LinkList &links)
{
    walk(links, [this](const LinkItem &item) {
        claim(item.id, m_ids);
        claimStableId(item.stableId);
    });
}

std::optional<LinkItem> TakenIdentities::claimed(const LinkItem &item)
{
    const bool freeId = claim(item.id, m_ids);
    const bool freeStableId = claimStableId(item.stableId);
    if (freeId && freeStableId)
        return std::nullopt;
    LinkItem unique = item;
    while (!freeId && !claim(unique.id = QUuid::createUuid(), m_ids)) {
    }
    while (!freeStableId && !claimStableId(unique.stableId = newUuidText())) {
    }
    return unique;
}

bool TakenIdentities::claimStableId(const QString &text)
{
    if (text.isEmpty())
        return false;
    const auto uuid = parseUuid(text);
    return uuid ? claim(*uuid, m_stableIds) : claim(text.toUpper(), m_oddStableIds);
}

} // namespace orvelle
