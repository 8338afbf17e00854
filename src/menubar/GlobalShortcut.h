#pragma once

#include "menubar/ShortcutKeys.h"

#include <QObject>

#include <optional>

namespace orvelle {

class Notifications;
class UserDefaults;

/// The combination that opens the menu from any program: what the settings say
/// of it, and its registration. Main thread.
class GlobalShortcut : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Off, ///< switched off, or withdrawn while another is recorded
        Registered,
        HeldByAnother, ///< another program has it
        NoSuchKey,     ///< the keyboard that is set lacks a key of it
        Unavailable,   ///< this desktop lets no program register keys
        Undecided,     ///< the desktop asks the user
        Denied,        ///< by the user or the desktop
        Refused,       ///< what is stored is no combination that could be used
    };

    struct Services {
        UserDefaults &defaults;
        Notifications &notifications;
        HotKeyService &hotKeys;
    };
    explicit GlobalShortcut(const Services &services, QObject *parent = nullptr);

    /// Registers what the settings say, and from then on posts
    /// globalShortcutFired at each press.
    void setup();
    void remove();

    State state() const { return m_state; }
    /// As HotKeyService::desktopTrigger().
    QString desktopTrigger() const { return m_services.hotKeys.desktopTrigger(); }
    bool isEnabled() const;
    /// What is stored, with the default for what is not; absent when a stored
    /// number is out of range.
    std::optional<Shortcut> shortcut() const;

    // By the user; each posts globalShortcutChanged. False when it could not be
    // stored.
    bool setEnabled(bool enabled);
    bool setShortcut(const Shortcut &shortcut);

signals:
    void stateChanged();

private:
    State registered();
    void setState(State state);
    void storedElsewhere(const QStringList &keys);

    Services m_services;
    State m_state = State::Off;
    bool m_isSetUp = false;
};

} // namespace orvelle
