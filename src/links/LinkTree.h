#pragma once

#include "links/LinkItem.h"

#include <functional>
#include <optional>

namespace orvelle {

// Pure operations on a tree. Those that change one copy only the lists on the
// way to the change; every other branch stays shared with the copies around.

/// The first item, depth first, for which `matches` holds; null when there is
/// none. Valid until the list changes.
const LinkItem *findItem(const LinkList &links, const std::function<bool(const LinkItem &)> &matches);
const LinkItem *findItem(const LinkList &links, const QUuid &id);

/// Calls `visit` for every item in display order, groups before their members.
void walk(const LinkList &links, const std::function<void(const LinkItem &)> &visit);

/// Number of items, groups included.
qint64 countAll(const LinkList &links);

/// Levels of the tree: 0 when empty, 1 without groups that have members.
int treeLevels(const LinkList &links);

/// Replaces the item that has the same id. False when there is none.
bool replaceItem(LinkList &links, const LinkItem &item);

/// Removes the item with its whole subtree. False when there is none.
bool removeItem(LinkList &links, const QUuid &id);

/// Appends to the group's children. False when there is no such group.
bool appendToGroup(LinkList &links, const QUuid &groupId, const LinkItem &item);

/// Offers every item to `change` and puts what it returns in the item's place;
/// absent leaves the item alone. Children are offered by themselves, so
/// `change` does not look at them. True when anything changed.
bool changeItems(LinkList &links, const std::function<std::optional<LinkItem>(const LinkItem &)> &change);

} // namespace orvelle
