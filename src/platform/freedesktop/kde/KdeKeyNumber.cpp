#include "platform/freedesktop/kde/KdeKeyNumber.h"

#include "platform/freedesktop/KeySymbols.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <utility>

namespace orvelle {

namespace {

constexpr std::array<std::pair<xkb_keysym_t, Qt::Key>, 22> special{{
    {XKB_KEY_Return, Qt::Key_Return},
    {XKB_KEY_KP_Enter, Qt::Key_Enter},
    {XKB_KEY_Tab, Qt::Key_Tab},
    {XKB_KEY_BackSpace, Qt::Key_Backspace},
    {XKB_KEY_Escape, Qt::Key_Escape},
    {XKB_KEY_Insert, Qt::Key_Insert},
    {XKB_KEY_Delete, Qt::Key_Delete},
    {XKB_KEY_Home, Qt::Key_Home},
    {XKB_KEY_End, Qt::Key_End},
    {XKB_KEY_Prior, Qt::Key_PageUp},
    {XKB_KEY_Next, Qt::Key_PageDown},
    {XKB_KEY_Left, Qt::Key_Left},
    {XKB_KEY_Right, Qt::Key_Right},
    {XKB_KEY_Up, Qt::Key_Up},
    {XKB_KEY_Down, Qt::Key_Down},
    {XKB_KEY_KP_Decimal, Qt::Key_Period},
    {XKB_KEY_KP_Separator, Qt::Key_Comma},
    {XKB_KEY_KP_Multiply, Qt::Key_Asterisk},
    {XKB_KEY_KP_Add, Qt::Key_Plus},
    {XKB_KEY_KP_Subtract, Qt::Key_Minus},
    {XKB_KEY_KP_Divide, Qt::Key_Slash},
    {XKB_KEY_KP_Equal, Qt::Key_Equal},
}};

constexpr std::array<std::pair<HotKey::Modifier, Qt::KeyboardModifier>, 4> modifiers{{
    {HotKey::Control, Qt::ControlModifier},
    {HotKey::Shift, Qt::ShiftModifier},
    {HotKey::Alt, Qt::AltModifier},
    {HotKey::Super, Qt::MetaModifier},
}};

bool isCharacter(xkb_keysym_t symbol)
{
    return symbol >= XKB_KEY_space && symbol <= XKB_KEY_ydiaeresis;
}

int upperCase(xkb_keysym_t character)
{
    return QChar(static_cast<char16_t>(character)).toUpper().unicode();
}

/// 0 for none.
int numberOf(xkb_keysym_t symbol)
{
    if (isCharacter(symbol))
        return upperCase(symbol);
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
        return Qt::Key_F1 + static_cast<int>(symbol - XKB_KEY_F1);
    if (symbol >= XKB_KEY_KP_0 && symbol <= XKB_KEY_KP_9)
        return Qt::Key_0 + static_cast<int>(symbol - XKB_KEY_KP_0);
    const auto *found = std::ranges::find(special, symbol, &std::pair<xkb_keysym_t, Qt::Key>::first);
    return found == special.end() ? 0 : found->second;
}

} // namespace

int kdeKeyNumber(const HotKey &hotKey, const QByteArray &keymap)
{
    const KeySymbols given = keySymbols(hotKey, keymap);
    HotKey::Modifiers held = hotKey.modifiers;
    xkb_keysym_t symbol = given.plain;
    // The number pad counts with its lock on, as it nearly always is.
    const bool isPad = symbol >= XKB_KEY_KP_Home && symbol <= XKB_KEY_KP_Delete;
    const bool isOther = held.testFlag(HotKey::Shift) && isCharacter(symbol) && isCharacter(given.shifted) &&
                         upperCase(symbol) != upperCase(given.shifted);
    if (isPad || isOther)
        symbol = given.shifted;
    held.setFlag(HotKey::Shift, held.testFlag(HotKey::Shift) && !isOther);
    const int key = numberOf(symbol);
    if (key == 0)
        return 0;
    Qt::KeyboardModifiers with;
    for (const auto &[ours, qts] : modifiers)
        with.setFlag(qts, held.testFlag(ours));
    return static_cast<int>(with.toInt()) | key;
}

} // namespace orvelle
