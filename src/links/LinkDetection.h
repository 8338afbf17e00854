#pragma once

#include "links/LinkItem.h"

namespace orvelle {

class Volumes;

/// The kind of link a typed, pasted or dropped text stands for: an address, or
/// a path ("/..." or "~..."), which is a folder when one exists there. On a
/// distant volume nobody looks: there a slash at the end makes a folder.
LinkType detectedType(const QString &text, const Volumes &volumes);

/// Whether something is there, if `text` is a path. On a distant volume, where
/// nobody looks, it is taken to be.
bool mayExist(const QString &text, const Volumes &volumes);

/// Whether the text can be added: an address of a known scheme, or a path.
bool isValidLink(const QString &text);

/// The symbol shown beside the text while it is typed.
QString detectedIconName(LinkType type);

/// A link's name when the user gave none: an address's host (the whole text
/// when it has none), a file's name without its last extension.
QString defaultName(const QString &textOrPath, LinkType type);

/// The link that quick add or the command line makes of `text`; absent when it
/// is not valid. "~" is expanded, and a path on a network volume becomes the
/// address under which that volume is mounted. An empty `name` is made up.
std::optional<LinkItem> linkFromText(const QString &text, const QString &name, const Volumes &volumes, Timestamp now);

} // namespace orvelle
