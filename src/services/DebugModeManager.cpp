#include "services/DebugModeManager.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"

#include <QLoggingCategory>

namespace orvelle {

Q_LOGGING_CATEGORY(lcDebugMode, "DebugMode", QtInfoMsg)

DebugModeManager::DebugModeManager(UserDefaults &defaults, Notifications &notifications, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_notifications(notifications)
{
    qCInfo(lcDebugMode).noquote() << "DebugModeManager initialisé - Mode debug désactivé au démarrage";
}

QString DebugModeManager::key(const QString &baseKey) const
{
    return m_isDebugMode ? debugPrefix() + baseKey : baseKey;
}

void DebugModeManager::toggle()
{
    m_isDebugMode = !m_isDebugMode;
    qCInfo(lcDebugMode).noquote() << "Mode debug basculé:" << m_isDebugMode;
    if (m_isDebugMode)
        enableDebugMode();
    else
        disableDebugMode();
    emit m_notifications.debugModeChanged();
}

void DebugModeManager::clearDebugData()
{
    const QStringList keys = m_defaults.keys();
    for (const QString &key : keys) {
        if (!key.startsWith(debugPrefix()))
            continue;
        if (const auto removed = m_defaults.remove(key); !removed)
            qCWarning(lcDebugMode).noquote() << "Could not remove" << key << ":" << removed.error().detail;
    }
    qCInfo(lcDebugMode).noquote() << "Données du mode debug effacées";
}

// The debug data set begins empty and is kept until it is cleared, so neither
// direction has anything to prepare.
void DebugModeManager::enableDebugMode() {}
void DebugModeManager::disableDebugMode() {}

} // namespace orvelle
