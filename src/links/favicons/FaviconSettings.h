#pragma once

#include <QObject>
#include <QString>

namespace orvelle {

class DebugModeManager;
class Notifications;
class UserDefaults;

/// Whether pictures of web sites are fetched, and from whom. Main thread.
///
/// Keys (through debug mode): "FaviconsEnabled" (bool, true when absent) and
/// "FaviconServiceHost" (string; a public service when absent or not a host
/// name).
class FaviconSettings : public QObject
{
    Q_OBJECT

public:
    FaviconSettings(UserDefaults &defaults, DebugModeManager &debugMode, Notifications &notifications,
                    QObject *parent = nullptr);

    bool isEnabled() const;
    void setEnabled(bool enabled);
    /// The host that is told the host name of each web link.
    QString serviceHost() const;

signals:
    void changed();

private:
    UserDefaults &m_defaults;
    DebugModeManager &m_debugMode;
};

} // namespace orvelle
