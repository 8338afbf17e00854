#pragma once

#include <QFlags>
#include <QObject>
#include <QString>

#include <optional>

namespace orvelle {

/// One key with its modifiers, anywhere on the desktop.
struct HotKey {
    enum Modifier : quint8 { Control = 1, Shift = 2, Alt = 4, Super = 8 };
    Q_DECLARE_FLAGS(Modifiers, Modifier)

    /// The physical key, whatever the layout prints on it, by its number in
    /// Linux's input-event-codes.h (KEY_X is 45).
    int key = 0;
    Modifiers modifiers;
    friend bool operator==(const HotKey &, const HotKey &) = default;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(HotKey::Modifiers)

/// Why a hot key is not registered.
struct HotKeyError {
    enum class Kind {
        Unavailable,   ///< this desktop lets no program register keys
        HeldByAnother, ///< another program has registered the same combination
        NoSuchKey,     ///< the keyboard has no such key or modifier
        Undecided,     ///< the desktop asks the user; hotKeyFound() or hotKeyLost() follows
        Denied,        ///< by the user or the desktop
    };
    Kind kind = Kind::Unavailable;
    int code = 0; ///< of the display server, for the log
    friend bool operator==(const HotKeyError &, const HotKeyError &) = default;
};

/// The one hot key of the application. The keyboard's lock keys make no
/// difference to it. Main thread.
class HotKeyService : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// In place of the one before. Nothing is registered when this fails.
    virtual std::optional<HotKeyError> registerHotKey(const HotKey &hotKey) = 0;
    /// Without effect when none is registered.
    virtual void unregisterHotKey() = 0;
    /// What the desktop says that the combination is, where it decides itself:
    /// to be shown as it stands. Empty where it is the one asked for.
    virtual QString desktopTrigger() const { return {}; }

signals:
    /// The combination was pressed; not repeated while it is held down.
    void fired();
    /// Another keyboard or layout was set, and the combination can no longer
    /// be, or can be again.
    void hotKeyLost(const orvelle::HotKeyError &error);
    void hotKeyFound(); ///< or desktopTrigger() is another
};

} // namespace orvelle
