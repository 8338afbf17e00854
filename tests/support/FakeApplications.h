#pragma once

#include "platform/Applications.h"

#include <algorithm>

namespace orvelle::test {

/// The applications that the test installs.
class FakeApplications : public Applications
{
public:
    QList<DesktopApplication> apps;
    QStringList launched;

    void install(const QString &name, const QStringList &keywords = {})
    {
        const QString id = name.toLower() + QStringLiteral(".desktop");
        apps += DesktopApplication{id, QStringLiteral("/apps/") + id, name, {}, keywords, {}};
    }
    QList<DesktopApplication> installed() const override { return apps; }
    std::optional<DesktopApplication> find(const QString &path, const QString &id = {}) const override
    {
        const auto found = std::ranges::find_if(apps, [&](const DesktopApplication &each) {
            return each.path == path || (!id.isEmpty() && each.id == id);
        });
        return found == apps.end() ? std::nullopt : std::optional(*found);
    }
    void launch(const QString &path, const QString &id = {}) override
    {
        if (const auto app = find(path, id))
            launched += app->name;
    }
};

} // namespace orvelle::test
