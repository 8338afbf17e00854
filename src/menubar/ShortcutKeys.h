#pragma once

#include "platform/HotKeyService.h"

#include <QFlags>
#include <QString>

#include <optional>
#include <span>

namespace orvelle {

// Shortcuts as they are stored and travel: a virtual key code of the Mac's
// keyboard (a place on the keyboard, whatever the layout prints there) and
// modifier flags. Command is the Super key here, option is Alt.

enum ShortcutModifier : quint32 {
    ShiftModifier = 0x20000,
    ControlModifier = 0x40000,
    OptionModifier = 0x80000,
    CommandModifier = 0x100000,
};
/// Of a stored number, what counts.
constexpr quint32 allShortcutModifiers = ShiftModifier | ControlModifier | OptionModifier | CommandModifier;

struct Shortcut {
    quint32 keyCode = 7; ///< X
    quint32 modifiers = CommandModifier | OptionModifier;
    friend bool operator==(const Shortcut &, const Shortcut &) = default;
};

constexpr quint32 escapeKeyCode = 53;

/// The physical key of Linux for a virtual key code; absent when there is none.
std::optional<int> physicalKeyOf(quint32 keyCode);
/// The other way about.
std::optional<quint32> keyCodeOfPhysical(int physicalKey);

/// What the key is called: its character on the US layout, a symbol, or "?".
QString keyCodeToString(quint32 keyCode);
/// "⌃⌥⇧⌘" as far as they are set, and the key: "⌥⌘X".
QString displayString(const Shortcut &shortcut);
/// The names on this system's keyboards: "Alt+Super+X".
QString spokenString(const Shortcut &shortcut);

/// Combinations that programs use themselves.
std::span<const Shortcut> reservedShortcuts();
bool isReserved(const Shortcut &shortcut);

/// Absent for a key without a place on this system's keyboards, and for a
/// combination that would take plain typing away from every program: one
/// without command, option or control.
std::optional<HotKey> hotKeyOf(const Shortcut &shortcut);

} // namespace orvelle
