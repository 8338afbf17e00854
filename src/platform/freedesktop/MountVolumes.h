#pragma once

#include "platform/Volumes.h"

#include <QByteArray>
#include <QSet>

#include <memory>
#include <mutex>

namespace orvelle {

/// Volumes from the kernel's mount table as it is at each call.
class MountVolumes : public Volumes
{
public:
    /// `mountInfo`: a file in the format of /proc/[pid]/mountinfo, see proc(5).
    explicit MountVolumes(QString mountInfo = QStringLiteral("/proc/self/mountinfo"));
    ~MountVolumes() override;

    std::optional<RemoteVolume> remoteVolumeHolding(const QString &path) const override;
    QString distantVolumeHolding(const QString &path) const override;
    QString realHomeDirectory() const override;

private:
    class Table;

    QString m_mountInfo;
    mutable std::mutex m_lock;
    std::unique_ptr<Table> m_table; ///< asked very often, so read when it has changed only
};

} // namespace orvelle
