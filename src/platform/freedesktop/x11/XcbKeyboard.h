#pragma once

#include "platform/HotKeyService.h"

#include <optional>
#include <vector>

namespace orvelle {

class XcbConnection;

/// Where the keyboard that is set now has its keys and modifiers: as it was when
/// this was made. Without an answer of the server it has no keys.
class XcbKeyboard
{
public:
    explicit XcbKeyboard(const XcbConnection &x);

    /// The server's number of a physical key; absent when the keyboard has none.
    std::optional<quint8> keycodeOf(int physicalKey) const;
    /// Absent when one of them is on no key.
    std::optional<quint16> maskOf(HotKey::Modifiers modifiers) const;
    /// Every combination of Caps Lock, Num Lock and Scroll Lock, that of none
    /// of them included.
    std::vector<quint16> lockCombinations() const;

private:
    void readSymbols(const XcbConnection &x);
    void readModifiers(const XcbConnection &x);
    quint16 modifierWith(std::initializer_list<quint32> symbols) const;
    bool hasAny(quint8 keycode, std::initializer_list<quint32> symbols) const;

    quint8 m_firstKeycode = 8;
    quint8 m_symbolsPerKey = 0;
    std::vector<quint32> m_symbols;
    quint8 m_keysPerModifier = 0;
    std::vector<quint8> m_modifierKeys; ///< eight groups, from Shift to Mod5
};

} // namespace orvelle
