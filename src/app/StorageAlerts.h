#pragma once

#include "base/Timestamp.h"

#include <QObject>

#include <optional>

namespace orvelle {

class Alerts;
class Clock;
class LinkStore;
class UserDefaults;
struct DefaultsError;

/// Tells the user what went wrong with storing: once per spell of failures,
/// not once per failure. A spell is over when the links have been stored, or
/// when nothing has failed for a while.
class StorageAlerts : public QObject
{
    Q_OBJECT

public:
    static constexpr double spellEnd = 600; ///< seconds without a failure

    StorageAlerts(UserDefaults &defaults, LinkStore &links, Clock &clock, Alerts &alerts, QObject *parent = nullptr);

    /// The settings were damaged and are now in this file.
    void damagedSettingsMovedTo(const QString &path);
    /// Stored links that could not be read lie under `key`.
    void linksSetAside(const QString &key);
    /// A write failed, or will.
    void writeFailed(const DefaultsError &error);

private:
    void show(const QString &message, const QString &informativeText);

    LinkStore &m_links;
    Clock &m_clock;
    Alerts &m_alerts;
    std::optional<Timestamp> m_lastFailure; ///< of this spell
};

} // namespace orvelle
