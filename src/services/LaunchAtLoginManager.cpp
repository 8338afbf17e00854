#include "services/LaunchAtLoginManager.h"

#include "platform/LaunchAtLogin.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcLaunchAtLogin, "LaunchAtLogin", QtInfoMsg)

void logFailure(const LaunchAtLogin::Outcome &outcome)
{
    if (!outcome)
        qCCritical(lcLaunchAtLogin).noquote()
            << "Erreur modification lancement au démarrage:" << outcome.error().description;
}

} // namespace

bool LaunchAtLoginManager::isEnabled() const
{
    return m_service.status() == LaunchAtLogin::Status::Enabled;
}

void LaunchAtLoginManager::setEnabled(bool enabled)
{
    logFailure(enabled ? m_service.registerApplication() : m_service.unregisterApplication());
}

void LaunchAtLoginManager::followProgram()
{
    logFailure(m_service.followProgram());
}

} // namespace orvelle
