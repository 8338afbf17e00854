#include "menubar/ShortcutKeys.h"

#include <QStringList>

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace orvelle {

namespace {

struct Key {
    quint32 code;
    int physical;
    const char16_t *label;
};

constexpr const char16_t *unlabelled = u"?";

// The codes are Apple's (HIToolbox/Events.h): they number places on the keyboard.
constexpr Key keys[] = {
    {0, KEY_A, u"A"},
    {1, KEY_S, u"S"},
    {2, KEY_D, u"D"},
    {3, KEY_F, u"F"},
    {4, KEY_H, u"H"},
    {5, KEY_G, u"G"},
    {6, KEY_Z, u"Z"},
    {7, KEY_X, u"X"},
    {8, KEY_C, u"C"},
    {9, KEY_V, u"V"},
    {10, KEY_102ND, unlabelled},
    {11, KEY_B, u"B"},
    {12, KEY_Q, u"Q"},
    {13, KEY_W, u"W"},
    {14, KEY_E, u"E"},
    {15, KEY_R, u"R"},
    {16, KEY_Y, u"Y"},
    {17, KEY_T, u"T"},
    {18, KEY_1, u"1"},
    {19, KEY_2, u"2"},
    {20, KEY_3, u"3"},
    {21, KEY_4, u"4"},
    {22, KEY_6, u"6"},
    {23, KEY_5, u"5"},
    {24, KEY_EQUAL, u"="},
    {25, KEY_9, u"9"},
    {26, KEY_7, u"7"},
    {27, KEY_MINUS, u"-"},
    {28, KEY_8, u"8"},
    {29, KEY_0, u"0"},
    {30, KEY_RIGHTBRACE, u"]"},
    {31, KEY_O, u"O"},
    {32, KEY_U, u"U"},
    {33, KEY_LEFTBRACE, u"["},
    {34, KEY_I, u"I"},
    {35, KEY_P, u"P"},
    {36, KEY_ENTER, u"↩"},
    {37, KEY_L, u"L"},
    {38, KEY_J, u"J"},
    {39, KEY_APOSTROPHE, u"'"},
    {40, KEY_K, u"K"},
    {41, KEY_SEMICOLON, u";"},
    {42, KEY_BACKSLASH, u"\\"},
    {43, KEY_COMMA, u","},
    {44, KEY_SLASH, u"/"},
    {45, KEY_N, u"N"},
    {46, KEY_M, u"M"},
    {47, KEY_DOT, u"."},
    {48, KEY_TAB, u"⇥"},
    {49, KEY_SPACE, u"Space"},
    {50, KEY_GRAVE, u"`"},
    {51, KEY_BACKSPACE, u"⌫"},
    {escapeKeyCode, KEY_ESC, u"⎋"},
    {65, KEY_KPDOT, unlabelled},
    {67, KEY_KPASTERISK, unlabelled},
    {69, KEY_KPPLUS, unlabelled},
    {75, KEY_KPSLASH, unlabelled},
    {76, KEY_KPENTER, unlabelled},
    {78, KEY_KPMINUS, unlabelled},
    {81, KEY_KPEQUAL, unlabelled},
    {82, KEY_KP0, unlabelled},
    {83, KEY_KP1, unlabelled},
    {84, KEY_KP2, unlabelled},
    {85, KEY_KP3, unlabelled},
    {86, KEY_KP4, unlabelled},
    {87, KEY_KP5, unlabelled},
    {88, KEY_KP6, unlabelled},
    {89, KEY_KP7, unlabelled},
    {91, KEY_KP8, unlabelled},
    {92, KEY_KP9, unlabelled},
    {96, KEY_F5, u"F5"},
    {97, KEY_F6, u"F6"},
    {98, KEY_F7, u"F7"},
    {99, KEY_F3, u"F3"},
    {100, KEY_F8, u"F8"},
    {101, KEY_F9, u"F9"},
    {103, KEY_F11, u"F11"},
    {109, KEY_F10, u"F10"},
    {111, KEY_F12, u"F12"},
    {114, KEY_INSERT, unlabelled},
    {115, KEY_HOME, unlabelled},
    {116, KEY_PAGEUP, unlabelled},
    {117, KEY_DELETE, unlabelled},
    {118, KEY_F4, u"F4"},
    {119, KEY_END, unlabelled},
    {120, KEY_F2, u"F2"},
    {121, KEY_PAGEDOWN, unlabelled},
    {122, KEY_F1, u"F1"},
    {123, KEY_LEFT, u"←"},
    {124, KEY_RIGHT, u"→"},
    {125, KEY_DOWN, u"↓"},
    {126, KEY_UP, u"↑"},
};

struct ModifierName {
    quint32 flag;
    const char16_t *symbol;
    const char16_t *name;
    HotKey::Modifier modifier;
};

/// In the order in which they are shown.
constexpr ModifierName modifierNames[] = {
    {ControlModifier, u"⌃", u"Ctrl", HotKey::Control},
    {OptionModifier, u"⌥", u"Alt", HotKey::Alt},
    {ShiftModifier, u"⇧", u"Shift", HotKey::Shift},
    {CommandModifier, u"⌘", u"Super", HotKey::Super},
};

/// The words for keys whose label is a symbol.
constexpr std::pair<quint32, const char16_t *> spokenKeys[] = {
    {36, u"Enter"}, {48, u"Tab"},      {51, u"Backspace"}, {escapeKeyCode, u"Esc"}, {114, u"Insert"},
    {115, u"Home"}, {116, u"Page Up"}, {117, u"Delete"},   {119, u"End"},           {121, u"Page Down"},
};

constexpr Shortcut reserved[] = {
    {8, CommandModifier},
    {9, CommandModifier},
    {7, CommandModifier},
    {6, CommandModifier},
    {0, CommandModifier},
    {12, CommandModifier},
    {13, CommandModifier},
    {3, CommandModifier},
    {1, CommandModifier},
    {35, CommandModifier},
    {31, CommandModifier},
    {45, CommandModifier},
    {4, CommandModifier},
    {46, CommandModifier},
    {17, CommandModifier},
    {15, CommandModifier},
    {6, CommandModifier | ShiftModifier},
    {45, CommandModifier | ShiftModifier},
    {escapeKeyCode, CommandModifier},
    {49, ControlModifier},
};

const Key *find(quint32 keyCode)
{
    const auto *found = std::ranges::find(keys, keyCode, &Key::code);
    return found == std::end(keys) ? nullptr : found;
}

} // namespace

std::optional<int> physicalKeyOf(quint32 keyCode)
{
    const Key *key = find(keyCode);
    return key ? std::optional(key->physical) : std::nullopt;
}

std::optional<quint32> keyCodeOfPhysical(int physicalKey)
{
    const auto *found = std::ranges::find(keys, physicalKey, &Key::physical);
    return found == std::end(keys) ? std::nullopt : std::optional(found->code);
}

QString keyCodeToString(quint32 keyCode)
{
    const Key *key = find(keyCode);
    return QString::fromUtf16(key ? key->label : unlabelled);
}

QString displayString(const Shortcut &shortcut)
{
    QString result;
    for (const ModifierName &each : modifierNames) {
        if (shortcut.modifiers & each.flag)
            result += QString::fromUtf16(each.symbol);
    }
    return result + keyCodeToString(shortcut.keyCode);
}

QString spokenString(const Shortcut &shortcut)
{
    QStringList parts;
    for (const ModifierName &each : modifierNames) {
        if (shortcut.modifiers & each.flag)
            parts += QString::fromUtf16(each.name);
    }
    const auto *named = std::ranges::find(spokenKeys, shortcut.keyCode, &std::pair<quint32, const char16_t *>::first);
    parts += named == std::end(spokenKeys) ? keyCodeToString(shortcut.keyCode) : QString::fromUtf16(named->second);
    return parts.join(u'+');
}

std::span<const Shortcut> reservedShortcuts()
{
    return reserved;
}

bool isReserved(const Shortcut &shortcut)
{
    return std::ranges::find(reserved, shortcut) != std::end(reserved);
}

std::optional<HotKey> hotKeyOf(const Shortcut &shortcut)
{
    const Key *key = find(shortcut.keyCode);
    if (!key || !(shortcut.modifiers & (CommandModifier | OptionModifier | ControlModifier)))
        return std::nullopt;
    HotKey result{key->physical, {}};
    for (const ModifierName &each : modifierNames)
        result.modifiers.setFlag(each.modifier, shortcut.modifiers & each.flag);
    return result;
}

} // namespace orvelle
