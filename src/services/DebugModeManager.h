#pragma once

#include <QObject>
#include <QString>

namespace orvelle {

class Notifications;
class UserDefaults;

/// Debug mode: a separate, throw-away data set. While it is on, every
/// persisted key is read and written under a prefixed name. Never persisted:
/// off at every start. Main thread only.
class DebugModeManager : public QObject
{
    Q_OBJECT

public:
    DebugModeManager(UserDefaults &defaults, Notifications &notifications, QObject *parent = nullptr);

    static QString debugPrefix() { return QStringLiteral("debug_"); }

    bool isDebugMode() const { return m_isDebugMode; }

    /// The key under which `baseKey` is stored in the current mode. Asked at
    /// each access, never kept.
    QString key(const QString &baseKey) const;

    /// Switches the mode and posts debugModeChanged.
    void toggle();

    /// Removes every stored key that begins with the prefix.
    void clearDebugData();

private:
    void enableDebugMode();
    void disableDebugMode();

    UserDefaults &m_defaults;
    Notifications &m_notifications;
    bool m_isDebugMode = false;
};

} // namespace orvelle
