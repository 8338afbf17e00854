#pragma once

#include "base/Timestamp.h"
#include "links/LinkItem.h"
#include "links/LinkTree.h"

#include <functional>
#include <optional>

namespace orvelle {

// Edits of a tree as pure functions. Depth is the number of groups around an
// item: 0 at the top level. Each returns why it refused, or nothing when the
// tree was changed; a refused edit leaves the tree as it was.

/// The date of an edit made `now` of what was last edited at `present`: now,
/// but in a later second than that, so that an edit is always newer than what
/// the user saw when making it: also where a clock that is ahead of ours dated
/// that, and in documents, which have no parts of seconds.
Timestamp editDate(const std::optional<Timestamp> &present, Timestamp now);

/// Why an edit was not done.
enum class EditRefusal {
    NotFound,    ///< no such item or group
    NotAGroup,   ///< the target cannot hold items
    TooDeep,     ///< the target group's depth is 2 or more
    IntoItself,  ///< a group cannot move below itself
    NothingToDo, ///< first of its list, not below a group, already at the top, nothing to sort
    NotStored,   ///< the snapshot before a destructive step could not be kept
};

/// The line that the log gets, and the command line prints.
QString logText(EditRefusal refusal);

struct LinkLocation {
    LinkItem item;
    std::optional<LinkItem> parent; ///< absent at the top level
    qsizetype index = 0;            ///< in the parent's children, or in the top level
    int depth = 0;
};

struct GroupAtDepth {
    LinkItem group;
    int depth = 0;
};

std::optional<LinkLocation> findLinkLocation(const LinkList &links, const QUuid &id);
std::optional<int> getDepth(const LinkList &links, const QUuid &id);
/// Whether `childId` lies somewhere below `parentId`. An item is not its own
/// descendant.
bool isDescendant(const LinkList &links, const QUuid &parentId, const QUuid &childId);
/// Levels of groups below a group: 0 when it holds no group.
int maxNestedDepth(const LinkItem &group);
/// Every group in display order, a group before its own groups.
QList<GroupAtDepth> allGroups(const LinkList &links, int depth = 0);

/// Moves an item into a group, or to the top level when there is none. An
/// index counts in the destination after the item was taken out; beyond its
/// end, or without one, the item comes last; below 0 it comes first. Moving B
/// to 0 in [A, B, C] gives [B, A, C]. Sets the item's modifiedAt. How deep a
/// moved group is itself does not matter.
std::optional<EditRefusal> moveItem(LinkList &links, const QUuid &id, const std::optional<QUuid> &toGroup,
                                    std::optional<qsizetype> at, Timestamp now);

/// Moves several items so that they stand side by side in display order. Items
/// inside another moved one travel with it. Here `before` counts in the
/// destination as it is before anything moves: moving A and B before 2 in
/// [A, C, B, D] gives [C, A, B, D]. All or nothing.
std::optional<EditRefusal> moveItems(LinkList &links, const QList<QUuid> &ids, const std::optional<QUuid> &toGroup,
                                     std::optional<qsizetype> before, Timestamp now);

/// Whether the item stands right below a group that could take it: one whose
/// depth is less than 3 and, when the item is a group, plus 1 plus the item's
/// maxNestedDepth() less than 4. Below a group of depth 2 this holds, and the
/// move is refused all the same.
bool canIndent(const LinkList &links, const QUuid &id);
/// Moves the item to the end of the group right above it.
std::optional<EditRefusal> indentItem(LinkList &links, const QUuid &id, Timestamp now);
/// Whether the item is in a group.
bool canOutdent(const LinkList &links, const QUuid &id);
/// Moves the item out of its group, to right after it.
std::optional<EditRefusal> outdentItem(LinkList &links, const QUuid &id, Timestamp now);

/// Sorts the group's direct members by name as the locale does, without regard
/// to case; equal names keep their order. Sets the group's modifiedAt.
std::optional<EditRefusal> sortGroup(LinkList &links, const QUuid &groupId, Timestamp now);

/// Reorders the top level: these of its items come to stand before the item
/// `before`, or last, in display order. Others among `ids` are left where they
/// are, and nothing is stamped. NothingToDo when the order is such already.
std::optional<EditRefusal> reorderTopLevel(LinkList &links, const QList<QUuid> &ids,
                                           const std::optional<QUuid> &before);

/// Gives an item that is about to enter the tree, and its members, new
/// identities where the tree has theirs already.
LinkItem withFreeIdentities(const LinkList &links, const LinkItem &item);

/// Removes all these items with their subtrees. NotFound when none is there.
std::optional<EditRefusal> removeItems(LinkList &links, const QList<QUuid> &ids);

/// Applies `change` to each of the items and sets their modifiedAt. Identities,
/// members and being a group stay, whatever it does to them. NotFound when none
/// is there.
std::optional<EditRefusal> changeEach(LinkList &links, const QList<QUuid> &ids,
                                      const std::function<void(LinkItem &)> &change, Timestamp now);

} // namespace orvelle
