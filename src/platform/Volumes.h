#pragma once

#include <QString>

#include <optional>

namespace orvelle {

/// A network volume as it is mounted here.
struct RemoteVolume {
    QString mountPoint;     ///< absolute path without trailing slash ("/" alone excepted)
    QString remountAddress; ///< "smb://server/share", percent-encoded, without trailing slash
    friend bool operator==(const RemoteVolume &, const RemoteVolume &) = default;
};

/// The mounted volumes, as the system lists them: the volumes themselves are not
/// touched, so one that is gone holds up nobody. Any thread.
class Volumes
{
public:
    virtual ~Volumes() = default;

    /// The network volume that holds `path` (absolute); absent when the volume
    /// is local or its kind has no address.
    virtual std::optional<RemoteVolume> remoteVolumeHolding(const QString &path) const = 0;

    /// The mount point on the way to `path` (absolute, links followed) beyond
    /// which nobody may answer: of a network, of what another program serves, of
    /// what is mounted when it is looked at. Empty for what is at hand: the disks
    /// of this machine, and what holds the home folder, as nothing works without.
    virtual QString distantVolumeHolding(const QString &path) const = 0;

    /// The user's home folder from the system's user database, falling back to
    /// the environment's only when the database has no entry. Without trailing
    /// slash.
    virtual QString realHomeDirectory() const = 0;
};

} // namespace orvelle
