#include "menubar/Menu.h"

#include "base/Text.h"

namespace orvelle {

namespace {

MenuIcon iconOf(const LinkItem &item)
{
    MenuIcon icon;
    icon.symbol = item.sfSymbolName();
    icon.color = displayColor(item);
    if (item.type == LinkType::File || item.type == LinkType::Folder)
        icon.filePath = item.path;
    icon.imageData = item.faviconData.value_or(QByteArray());
    return icon;
}

} // namespace

MenuEntry menuEntry(const LinkItem &item)
{
    MenuEntry entry;
    entry.title = item.name;
    entry.icon = iconOf(item);
    const bool isNote = item.type == LinkType::Note;
    if (item.isGroup()) {
        entry.kind = MenuEntry::Kind::Submenu;
        entry.childLinks = item.children.value_or(LinkList());
    } else {
        entry.action = {MenuAction::Kind::OpenLink, item.id};
    }
    if (item.coloredInMenu())
        entry.tint = nsColor(item.customIconColor);
    entry.customRow = isNote || entry.tint;
    if (entry.customRow) {
        entry.italic = isNote;
        entry.chevron = item.isGroup();
        entry.interactive = !item.isGroup();
    }
    return entry;
}

QList<MenuEntry> childEntries(const MenuEntry &submenu)
{
    QList<MenuEntry> entries;
    if (submenu.childLinks.isEmpty()) {
        MenuEntry empty;
        empty.title = text("menu.empty"_text);
        empty.enabled = false;
        return {empty};
    }
    entries.reserve(submenu.childLinks.size());
    for (const LinkItem &child : submenu.childLinks)
        entries += menuEntry(child);
    return entries;
}

} // namespace orvelle
