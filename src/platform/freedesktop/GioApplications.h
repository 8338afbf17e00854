#pragma once

#include "base/PatientThreads.h"
#include "platform/Applications.h"
#include "platform/freedesktop/MountVolumes.h"

namespace orvelle {

/// The applications as GIO knows them. Programs are started from a worker
/// thread, so that a slow disk or service does not hold up the interface.
class GioApplications : public Applications
{
public:
    GioApplications();

    QList<DesktopApplication> installed() const override;
    std::optional<DesktopApplication> find(const QString &path, const QString &id = {}) const override;
    void launch(const QString &path, const QString &id = {}) override;

private:
    MountVolumes m_volumes;
    PatientThreads m_launchers; ///< programs that are just being started
};

} // namespace orvelle
