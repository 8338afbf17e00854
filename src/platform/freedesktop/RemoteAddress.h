#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvelle {

/// The address of a mounted network file system from its type and source as
/// the mount table has them, percent-encoded and without trailing slash.
/// Absent for local file systems and for sources that follow no known form.
///
/// | type | source | address |
/// |---|---|---|
/// | cifs, smb3 | `//server/share` | `smb://server/share` |
/// | nfs, nfs4 | `server:/export` | `nfs://server/export` |
/// | fuse.sshfs | `user@host:/path` | `sftp://user@host/path` |
/// | fuse, davfs, fuse.davfs | `https://host/path` | the same |
std::optional<QString> addressOfSource(const QByteArray &type, const QByteArray &source);

/// True for the file system below which the desktop's virtual file system
/// (GVfs) shows each of its volumes as a folder.
bool isVolumesFolder(const QByteArray &type);

/// The address of such a folder from its name, "type:key=value,key=value", a
/// mount specification of GVfs: `smb-share:server=nas,share=media` is
/// "smb://nas/media".
std::optional<QString> addressOfVolumeFolder(const QByteArray &name);

} // namespace orvelle
