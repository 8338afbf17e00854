#pragma once

#include "links/LinkItem.h"

#include <QSet>

#include <functional>
#include <optional>

namespace orvelle {

// Pure operations on a tree. Those that change one copy only the lists on the
// way to the change; every other branch stays shared with the copies around.

/// Positions from the root list down to an item; empty when there is none.
using ItemPath = QList<qsizetype>;

/// Where the item is. A list's own items are looked at before what is below
/// them.
ItemPath pathTo(const LinkList &links, const QUuid &id);
/// The item at a path that is not empty.
const LinkItem &itemAt(const LinkList &links, const ItemPath &path);
/// The list that holds the path's last position, ready to be changed.
LinkList &listHolding(LinkList &links, const ItemPath &path);

/// The first item, depth first, for which `matches` holds; null when there is
/// none. Valid until the list changes.
const LinkItem *findItem(const LinkList &links, const std::function<bool(const LinkItem &)> &matches);
const LinkItem *findItem(const LinkList &links, const QUuid &id);

/// Calls `visit` for every item in display order, groups before their members.
void walk(const LinkList &links, const std::function<void(const LinkItem &)> &visit);

/// All items in display order.
LinkList flatten(const LinkList &links);

/// Number of items, groups included.
qint64 countAll(const LinkList &links);

/// Levels of the tree: 0 when empty, 1 without groups that have members.
int treeLevels(const LinkList &links);

/// Replaces the item that has the same id. False when there is none.
bool replaceItem(LinkList &links, const LinkItem &item);

/// Removes the item with its whole subtree. False when there is none.
bool removeItem(LinkList &links, const QUuid &id);

/// Takes these items out, with their subtrees, and returns them in display
/// order. Those inside another one of them stay inside it.
LinkList takeItems(LinkList &links, const QSet<QUuid> &ids);

/// Appends to the group's children. False when there is no such group.
bool appendToGroup(LinkList &links, const QUuid &groupId, const LinkItem &item);

/// Offers every item to `change` and puts what it returns in the item's place;
/// absent leaves the item alone. Children are offered by themselves, so
/// `change` does not look at them. True when anything changed.
bool changeItems(LinkList &links, const std::function<std::optional<LinkItem>(const LinkItem &)> &change);

/// Pictures of web links are no part of what is stored or undone: a link that
/// is in `shown` too, at the same address, gets the picture it has there, or
/// none if it has none.
void keepPictures(LinkList &links, const LinkList &shown);

} // namespace orvelle
