#pragma once

#include "links/exchange/LinkExchange.h"

namespace orvelle {

// The rules by which the items of a document come into the tree.

/// Levels of items that are taken in; what lies deeper is left out.
constexpr int maxImportDepth = 10;

/// False when `depth` (0 at the top level) reaches maxImportDepth, the name is
/// empty, a file, folder or address has an empty path, or any child of a group
/// is not valid one level deeper.
bool isValidLink(const LinkItem &item, int depth);

/// The items that are valid, after what lies too deep was cut off. Only groups
/// keep children, and each has a list of them. `dropped` grows by the number
/// of items left out.
LinkList validLinks(LinkList imported, qint64 &dropped);

/// Only groups keep children, and each has a list of them.
void keepChildrenOfGroupsOnly(LinkList &items);

/// Every item, groups and their members included.
qint64 countAllLinks(const LinkList &links);

/// Whether `list` itself, not its groups, holds an item of the same name, path
/// and kind.
bool existsInList(const LinkItem &item, const LinkList &list);

/// The imported items for which existsInList() finds nothing.
LinkList filterNewLinks(const LinkList &imported, const LinkList &existing);

struct AppliedImport {
    qint64 imported = 0; ///< every item that came in
    qint64 skipped = 0;  ///< top-level items left out as duplicates
};

/// Replace: the items become the tree. Merge: the new ones are appended to the
/// top level; one whose identity the tree has already gets another. Sync:
/// nothing.
AppliedImport applyImport(LinkList &tree, const LinkList &items, ImportMode mode);

} // namespace orvelle
