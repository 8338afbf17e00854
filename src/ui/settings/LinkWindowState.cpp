#include "ui/settings/LinkWindowState.h"

#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

namespace orvelle {

namespace {

QString splitterKey()
{
    return QStringLiteral("SettingsLinksSplitter");
}

template<typename T>
void keep(UserDefaults &defaults, const QString &key, const T &value)
{
    // Should it not be stored, the list opens as it did before; that is all.
    if (defaults.get<T>(key).value_or(T()) != value)
        static_cast<void>(defaults.write(key, value));
}

} // namespace

LinkWindowState::LinkWindowState(UserDefaults &defaults, const DebugModeManager &debugMode)
    : m_defaults(defaults), m_debugMode(debugMode)
{
}

QStringList LinkWindowState::openGroups() const
{
    return m_defaults.get<QStringList>(m_debugMode.key(QStringLiteral("SettingsOpenGroups"))).value_or(QStringList());
}

QByteArray LinkWindowState::splitter() const
{
    return m_defaults.get<QByteArray>(splitterKey()).value_or(QByteArray());
}

void LinkWindowState::keepOpenGroups(const QStringList &stableIds)
{
    keep(m_defaults, m_debugMode.key(QStringLiteral("SettingsOpenGroups")), stableIds);
}

void LinkWindowState::keepSplitter(const QByteArray &state)
{
    keep(m_defaults, splitterKey(), state);
}

} // namespace orvelle
