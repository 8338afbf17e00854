#pragma once

#include "platform/Applications.h"

#include <QObject>
#include <QThreadPool>

#include <memory>

namespace orvelle {

/// The applications as GIO knows them. Programs are started from a worker
/// thread, so that a slow disk or service does not hold up the interface.
class GioApplications : public Applications
{
public:
    GioApplications();
    /// Waits up to two seconds for programs that are just being started.
    ~GioApplications() override;

    QList<DesktopApplication> installed() const override;
    std::optional<DesktopApplication> find(const QString &path, const QString &id = {}) const override;
    void launch(const QString &path, const QString &id = {}) override;

private:
    std::unique_ptr<QThreadPool> m_launchers;
};

} // namespace orvelle
