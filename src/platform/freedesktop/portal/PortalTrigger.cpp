#include "platform/freedesktop/portal/PortalTrigger.h"

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <memory>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

template<auto Unref>
struct XkbDeleter {
    template<typename T>
    void operator()(T *pointer) const
    {
        Unref(pointer);
    }
};
using Context = std::unique_ptr<xkb_context, XkbDeleter<xkb_context_unref>>;
using Keymap = std::unique_ptr<xkb_keymap, XkbDeleter<xkb_keymap_unref>>;

constexpr xkb_keycode_t evdevOffset = 8; ///< of XKB's key codes
constexpr xkb_keysym_t lastLatin1 = 0xff;
constexpr xkb_keysym_t firstSpecial = 0xff00; ///< Return, F1, the arrows, ...

constexpr std::array<std::pair<HotKey::Modifier, const char *>, 4> modifierNames{{
    {HotKey::Control, "CTRL"},
    {HotKey::Alt, "ALT"},
    {HotKey::Shift, "SHIFT"},
    {HotKey::Super, "LOGO"},
}};

/// Of several layouts the first that gives what a shortcut can be made of.
xkb_keysym_t symbolOf(xkb_keymap *keymap, xkb_keycode_t key)
{
    for (xkb_layout_index_t layout = 0; keymap && layout < xkb_keymap_num_layouts_for_key(keymap, key); ++layout) {
        const xkb_keysym_t *symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols) != 1)
            continue;
        if (symbols[0] != XKB_KEY_NoSymbol && (symbols[0] <= lastLatin1 || symbols[0] >= firstSpecial))
            return symbols[0];
    }
    return XKB_KEY_NoSymbol;
}

Keymap parsed(xkb_context *context, const QByteArray &text)
{
    if (text.isEmpty())
        return nullptr;
    return Keymap(xkb_keymap_new_from_buffer(context, text.constData(), static_cast<std::size_t>(text.size()),
                                             XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

Keymap american(xkb_context *context)
{
    const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
    return Keymap(xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

} // namespace

QString portalTrigger(const HotKey &hotKey, const QByteArray &keymap)
{
    const Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return {};
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const auto key = static_cast<xkb_keycode_t>(hotKey.key) + evdevOffset;
    xkb_keysym_t symbol = symbolOf(parsed(context.get(), keymap).get(), key);
    if (symbol == XKB_KEY_NoSymbol)
        symbol = symbolOf(american(context.get()).get(), key);
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
