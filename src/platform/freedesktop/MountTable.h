#pragma once

#include "platform/Volumes.h"

#include <QByteArray>
#include <QList>

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

} // namespace orvelle
