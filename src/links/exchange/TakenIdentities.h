#pragma once

#include "links/LinkItem.h"

#include <QSet>

#include <optional>

namespace orvelle {

/// The identities that a tree has, for items that are about to enter it. Stable
/// ids count as the same in either case, as other programs write them.
class TakenIdentities
{
public:
    /// `expected` items are going to be known.
    explicit TakenIdentities(qsizetype expected = 0);

    void addAll(const LinkList &links);

    /// Gives the item other identities for those that are taken; absent when
    /// it can keep both. What it has then is taken, too.
    std::optional<LinkItem> claimed(const LinkItem &item);

private:
    bool claimStableId(const QString &text);

    QSet<QUuid> m_ids;
    QSet<QUuid> m_stableIds;
    QSet<QString> m_oddStableIds; ///< that are no UUIDs, in upper case
};

} // namespace orvelle
