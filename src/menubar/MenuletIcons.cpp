#include "menubar/MenuletIcons.h"

namespace orvelle {

namespace {

constexpr MenuletIcon table[] = {
    {"link", "link", "menulet.iconLink"_text},
    {"link.circle", "link.circle.fill", "menulet.iconLinkCircle"_text},
    {"star", "star.fill", "menulet.iconStar"_text},
    {"bolt", "bolt.fill", "menulet.iconBolt"_text},
    {"bookmark", "bookmark.fill", "menulet.iconBookmark"_text},
    {"command", "command", "menulet.iconCommand"_text},
    {"globe", "globe", "menulet.iconGlobe"_text},
    {"sparkle", "sparkle", "menulet.iconSparkle"_text},
};

} // namespace

std::span<const MenuletIcon> menuletIcons()
{
    return table;
}

QString menuletSymbol(const QString &stored)
{
    for (const MenuletIcon &icon : table) {
        if (stored == QLatin1StringView(icon.stored))
            return QString::fromLatin1(icon.symbol);
    }
    return QString::fromLatin1(table[0].symbol);
}

} // namespace orvelle
