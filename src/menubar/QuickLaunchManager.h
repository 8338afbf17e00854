#pragma once

#include "links/exchange/ExchangeDocument.h"

#include <QObject>

namespace orvelle {

class Applications;
class DebugModeManager;
class Notifications;
class UserDefaults;

enum class QuickLaunchDisplayStyle { Souffle, Dock, Neon, Encre };

QString rawValue(QuickLaunchDisplayStyle style);
/// Souffle for a text that names no style.
QuickLaunchDisplayStyle quickLaunchDisplayStyle(const QString &rawValue);

/// The quick-launch widget: its settings and the applications in its slots.
/// Slots are numbered from 0; a number that is none does nothing. Main thread.
class QuickLaunchManager : public QObject
{
    Q_OBJECT

public:
    static constexpr int maxSlots = 4;

    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Applications &applications;
    };
    explicit QuickLaunchManager(const Services &services, QObject *parent = nullptr);

    /// Always maxSlots; an empty slot is absent.
    const QuickLaunchSlots &apps() const { return m_apps; }
    bool isEnabled() const { return m_isEnabled; }
    QuickLaunchDisplayStyle displayStyle() const { return m_displayStyle; }
    void setEnabled(bool enabled);
    void setDisplayStyle(QuickLaunchDisplayStyle style);

    /// Puts the application of a desktop file into the slot. False, and nothing
    /// changes, when there is no such slot or no application that could be
    /// started there.
    bool setApp(int index, const QString &desktopFile);
    void removeApp(int index);
    /// Exchanges the contents of two slots.
    void moveApp(int from, int to);
    void launchApp(int index);

private:
    static bool isSlot(int index) { return index >= 0 && index < maxSlots; }
    void load();
    void save();

    Services m_services;
    QuickLaunchSlots m_apps;
    bool m_isEnabled = true;
    QuickLaunchDisplayStyle m_displayStyle = QuickLaunchDisplayStyle::Souffle;
};

} // namespace orvelle
