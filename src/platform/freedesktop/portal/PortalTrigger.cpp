#include "platform/freedesktop/portal/PortalTrigger.h"

#include "platform/freedesktop/KeySymbols.h"

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<std::pair<HotKey::Modifier, const char *>, 4> modifierNames{{
    {HotKey::Control, "CTRL"},
    {HotKey::Alt, "ALT"},
    {HotKey::Shift, "SHIFT"},
    {HotKey::Super, "LOGO"},
}};

} // namespace

QString portalTrigger(const HotKey &hotKey, const QByteArray &keymap)
{
    const xkb_keysym_t symbol = keySymbols(hotKey, keymap).plain;
    std::array<char, 64> name{};
    if (symbol == XKB_KEY_NoSymbol || xkb_keysym_get_name(symbol, name.data(), name.size()) <= 0)
        return {};
    QStringList parts;
    for (const auto &[modifier, word] : modifierNames) {
        if (hotKey.modifiers.testFlag(modifier))
            parts += QString::fromLatin1(word);
    }
    return (parts << QString::fromLatin1(name.data())).join(u'+');
}

} // namespace orvelle
