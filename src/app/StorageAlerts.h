#pragma once

#include <QObject>

namespace orvelle {

class Alerts;
class LinkStore;
class UserDefaults;
struct DefaultsError;

/// Tells the user what went wrong with storing: once per spell of failures,
/// not once per failure.
class StorageAlerts : public QObject
{
    Q_OBJECT

public:
    StorageAlerts(UserDefaults &defaults, LinkStore &links, Alerts &alerts, QObject *parent = nullptr);

    /// The settings were damaged and are now in this file.
    void damagedSettingsMovedTo(const QString &path);
    /// Stored links that could not be read lie under `key`.
    void linksSetAside(const QString &key);
    /// A write failed, or will.
    void writeFailed(const DefaultsError &error);

private:
    void show(const QString &message, const QString &informativeText);

    LinkStore &m_links;
    Alerts &m_alerts;
    bool m_failing = false;
};

} // namespace orvelle
