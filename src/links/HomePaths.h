#pragma once

#include "links/LinkItem.h"

namespace orvelle {

class Volumes;

/// Paths in the home folder as "~/...", for a document that leaves this
/// machine; the home folder itself is "~". Other paths, also of a neighbour
/// whose name merely begins the same, and addresses stay as they are.
LinkList makePortable(const LinkList &links, const QString &home);

/// The way back: "~" and "~/..." with this machine's home folder.
LinkList resolveHomePaths(const LinkList &links, const QString &home);

/// `path` with a leading "~" or "~/" replaced by `home`.
QString expandedHomePath(const QString &path, const QString &home);

/// The address under which another machine reaches `path`, when it lies on a
/// network volume: "smb://server/share/some%20file". Absent on a local volume.
std::optional<QString> networkURL(const QString &path, const Volumes &volumes);

} // namespace orvelle
