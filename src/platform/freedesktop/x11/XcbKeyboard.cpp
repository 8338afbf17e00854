#include "platform/freedesktop/x11/XcbKeyboard.h"

#include "platform/freedesktop/x11/XcbTools.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>

namespace orvelle {
namespace {

/// X servers number the keys of Linux from 8, as the first eight were taken.
constexpr int evdevOffset = 8;

} // namespace

XcbKeyboard::XcbKeyboard(const XcbConnection &x)
{
    readSymbols(x);
    readModifiers(x);
}

void XcbKeyboard::readSymbols(const XcbConnection &x)
{
    const xcb_setup_t *setup = xcb_get_setup(x.raw());
    m_firstKeycode = setup->min_keycode;
    const auto count = quint8(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(x.raw(), m_firstKeycode, count);
    const XcbPtr<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(x.raw(), cookie, nullptr));
    if (!reply)
        return;
    const xcb_keysym_t *first = xcb_get_keyboard_mapping_keysyms(reply.get());
    m_symbolsPerKey = reply->keysyms_per_keycode;
    m_symbols.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(reply.get()));
}

void XcbKeyboard::readModifiers(const XcbConnection &x)
{
    const auto cookie = xcb_get_modifier_mapping(x.raw());
    const XcbPtr<xcb_get_modifier_mapping_reply_t> reply(xcb_get_modifier_mapping_reply(x.raw(), cookie, nullptr));
    if (!reply)
        return;
    const xcb_keycode_t *first = xcb_get_modifier_mapping_keycodes(reply.get());
    m_keysPerModifier = reply->keycodes_per_modifier;
    m_modifierKeys.assign(first, first + xcb_get_modifier_mapping_keycodes_length(reply.get()));
}

bool XcbKeyboard::hasAny(quint8 keycode, std::initializer_list<quint32> symbols) const
{
    const auto begin = (std::size_t(keycode) - m_firstKeycode) * m_symbolsPerKey;
    if (keycode < m_firstKeycode || begin + m_symbolsPerKey > m_symbols.size())
        return false;
    const auto first = m_symbols.begin() + std::ptrdiff_t(begin);
    return std::find_first_of(first, first + m_symbolsPerKey, symbols.begin(), symbols.end()) !=
           first + m_symbolsPerKey;
}

std::optional<quint8> XcbKeyboard::keycodeOf(int physicalKey) const
{
    const int keycode = physicalKey + evdevOffset;
    const auto begin = std::size_t(std::max(0, keycode - m_firstKeycode)) * m_symbolsPerKey;
    if (physicalKey <= 0 || keycode < m_firstKeycode || begin + m_symbolsPerKey > m_symbols.size())
        return std::nullopt;
    const auto first = m_symbols.begin() + std::ptrdiff_t(begin);
    const bool isThere =
        std::any_of(first, first + m_symbolsPerKey, [](quint32 symbol) { return symbol != XCB_NO_SYMBOL; });
    return isThere ? std::optional(quint8(keycode)) : std::nullopt;
}

/// 0 when no modifier is on a key with one of these symbols.
quint16 XcbKeyboard::modifierWith(std::initializer_list<quint32> symbols) const
{
    for (std::size_t i = 0; i < m_modifierKeys.size(); ++i) {
        if (m_modifierKeys[i] != 0 && hasAny(m_modifierKeys[i], symbols))
            return quint16(1U << (i / m_keysPerModifier));
    }
    return 0;
}

std::optional<quint16> XcbKeyboard::maskOf(HotKey::Modifiers modifiers) const
{
    struct {
        HotKey::Modifier modifier;
        quint16 mask;
    } const table[] = {
        {HotKey::Shift, XCB_MOD_MASK_SHIFT},
        {HotKey::Control, XCB_MOD_MASK_CONTROL},
        {HotKey::Alt, modifierWith({XKB_KEY_Alt_L, XKB_KEY_Alt_R})},
        {HotKey::Super, modifierWith({XKB_KEY_Super_L, XKB_KEY_Super_R})},
    };
    quint16 mask = 0;
    for (const auto &each : table) {
        if (!modifiers.testFlag(each.modifier))
            continue;
        if (each.mask == 0)
            return std::nullopt;
        mask |= each.mask;
    }
    return mask;
}

std::vector<quint16> XcbKeyboard::lockCombinations() const
{
    std::vector<quint16> result{0};
    for (const quint16 lock :
         {quint16(XCB_MOD_MASK_LOCK), modifierWith({XKB_KEY_Num_Lock}), modifierWith({XKB_KEY_Scroll_Lock})}) {
        const std::vector<quint16> before = result;
        for (const quint16 each : before) {
            const auto with = quint16(each | lock);
            if (std::ranges::find(result, with) == result.end())
                result.push_back(with);
        }
    }
    return result;
}

} // namespace orvelle
