#include "platform/freedesktop/KeySymbols.h"

#include <memory>

namespace orvelle {

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

xkb_keysym_t symbolAt(xkb_keymap *keymap, xkb_keycode_t key, xkb_layout_index_t layout, xkb_level_index_t level)
{
    const xkb_keysym_t *symbols = nullptr;
    return xkb_keymap_key_get_syms_by_level(keymap, key, layout, level, &symbols) == 1 ? symbols[0] : XKB_KEY_NoSymbol;
}

KeySymbols symbolsOf(xkb_keymap *keymap, xkb_keycode_t key)
{
    for (xkb_layout_index_t layout = 0; keymap && layout < xkb_keymap_num_layouts_for_key(keymap, key); ++layout) {
        const xkb_keysym_t plain = symbolAt(keymap, key, layout, 0);
        if (plain != XKB_KEY_NoSymbol && (plain <= lastLatin1 || plain >= firstSpecial))
            return {plain, symbolAt(keymap, key, layout, 1)};
    }
    return {};
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

KeySymbols keySymbols(const HotKey &hotKey, const QByteArray &keymap)
{
    const Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return {};
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const auto key = static_cast<xkb_keycode_t>(hotKey.key) + evdevOffset;
    const KeySymbols symbols = symbolsOf(parsed(context.get(), keymap).get(), key);
    return symbols.plain != XKB_KEY_NoSymbol ? symbols : symbolsOf(american(context.get()).get(), key);
}

} // namespace orvelle
