#pragma once

#include "platform/Volumes.h"

namespace orvelle {

/// Volumes from the kernel's mount table, read anew at each call.
class MountVolumes : public Volumes
{
public:
    /// `mountInfo`: a file in the format of /proc/[pid]/mountinfo, see proc(5).
    explicit MountVolumes(QString mountInfo = QStringLiteral("/proc/self/mountinfo"));

    std::optional<RemoteVolume> remoteVolumeHolding(const QString &path) const override;
    QString realHomeDirectory() const override;

private:
    QString m_mountInfo;
};

} // namespace orvelle
