#include "links/LinkColors.h"

namespace orvelle {

namespace {

constexpr LinkColor fixed(quint32 rgb)
{
    return {rgb, rgb};
}

constexpr LinkColor blue = {0x0a6cff, 0x3d9bff};
constexpr LinkColor green = {0x2da84a, 0x35d05b};
constexpr LinkColor orange = {0xf08300, 0xff9f2e};
constexpr LinkColor purple = {0x9b45cf, 0xbf6af2};
constexpr LinkColor yellow = {0xe5b800, 0xffd426};

constexpr ColorChoice colorTable[] = {
    {"color.red"_text, "red", {0xe0322b, 0xff6159}},
    {"color.orange"_text, "orange", orange},
    {"color.yellow"_text, "yellow", yellow},
    {"color.green"_text, "green", green},
    {"color.cyan"_text, "cyan", {0x1f9ed1, 0x5ac8f5}},
    {"color.blue"_text, "blue", blue},
    {"color.purple"_text, "purple", purple},
    {"color.pink"_text, "pink", fixed(0xff3399)},
    {"color.gray"_text, "gray", {0x86868b, 0x98989d}},
    {"color.pureRed"_text, "pureRed", fixed(0xff0000)},
    {"color.pureYellow"_text, "pureYellow", fixed(0xffff00)},
    {"color.pureGreen"_text, "pureGreen", fixed(0x00ff00)},
    {"color.pureCyan"_text, "pureCyan", fixed(0x00ffff)},
    {"color.pureBlue"_text, "pureBlue", fixed(0x0000ff)},
    {"color.pureMagenta"_text, "pureMagenta", fixed(0xff00ff)},
    {"color.black"_text, "black", fixed(0x000000)},
    {"color.white"_text, "white", fixed(0xffffff)},
};

} // namespace

std::span<const ColorChoice> allColors()
{
    return colorTable;
}

std::optional<LinkColor> nsColor(const std::optional<QString> &key)
{
    if (!key)
        return std::nullopt;
    for (const ColorChoice &choice : colorTable) {
        if (*key == QLatin1StringView(choice.key))
            return choice.color;
    }
    return std::nullopt;
}

LinkColor displayColor(const LinkItem &item)
{
    switch (item.type) {
    case LinkType::File:
        return blue;
    case LinkType::Folder:
        return orange;
    case LinkType::Url:
        return nsColor(item.customIconColor).value_or(item.isNetworkLink() ? blue : green);
    case LinkType::Group:
        return nsColor(item.customIconColor).value_or(purple);
    case LinkType::Note:
        return nsColor(item.customIconColor).value_or(yellow);
    }
    Q_UNREACHABLE();
}

} // namespace orvelle
