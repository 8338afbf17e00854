#include "links/favicons/FaviconSettings.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr auto enabledKey = "FaviconsEnabled"_L1;
constexpr auto hostKey = "FaviconServiceHost"_L1;
constexpr auto defaultHost = "www.google.com"_L1;

/// A host name with an optional port, and nothing else.
bool isHost(const QString &text)
{
    const QUrl url(u"https://"_s + text, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty() && url.authority() == text.toLower();
}

} // namespace

FaviconSettings::FaviconSettings(UserDefaults &defaults, DebugModeManager &debugMode, Notifications &notifications,
                                 QObject *parent)
    : QObject(parent), m_defaults(defaults), m_debugMode(debugMode)
{
    connect(&notifications, &Notifications::debugModeChanged, this, &FaviconSettings::changed);
}

bool FaviconSettings::isEnabled() const
{
    return m_defaults.get<bool>(m_debugMode.key(QString(enabledKey))).value_or(true);
}

void FaviconSettings::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return;
    if (m_defaults.write(m_debugMode.key(QString(enabledKey)), enabled))
        emit changed();
}

QString FaviconSettings::serviceHost() const
{
    const QString host = m_defaults.get<QString>(m_debugMode.key(QString(hostKey))).value_or(QString());
    return isHost(host) ? host.toLower() : QString(defaultHost);
}

} // namespace orvelle
