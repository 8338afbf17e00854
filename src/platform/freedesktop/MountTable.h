#pragma once

#include "platform/Volumes.h"

#include <QByteArray>
#include <QList>
#include <QSet>

namespace orvelle {

/// One mounted file system.
struct Mount {
    QByteArray mountPoint; ///< absolute, octal escapes undone
    QByteArray type;       ///< "ext4", "cifs", "fuse.sshfs", ...
    QByteArray source;     ///< as the file system names it, octal escapes undone
    friend bool operator==(const Mount &, const Mount &) = default;
};

/// The lines of a mount table in the format of /proc/[pid]/mountinfo (proc(5)),
/// in their order. Lines that do not follow it are left out.
QList<Mount> parseMountInfo(const QByteArray &text);

/// The network volume that holds `path`, an absolute path in the file system's
/// bytes. Of nested mounts the deepest counts, of mounts on the same point the
/// last. A local mount below a network one hides it.
std::optional<RemoteVolume> remoteVolumeHolding(const QList<Mount> &mounts, const QByteArray &path);

/// The mount points, in the file system's bytes, beyond which nobody may answer.
/// Those that hold `home` are left out.
QSet<QByteArray> distantMountPoints(const QList<Mount> &mounts, const QByteArray &home);

/// The first of `mountPoints` that is met on the way to `path`; empty when there
/// is none. Follows symbolic links, and touches nothing beyond a mount point.
QByteArray mountPointOnTheWay(const QSet<QByteArray> &mountPoints, const QByteArray &path);

} // namespace orvelle
