#include "menubar/MenuBuilder.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "menubar/StartupJobs.h"
#include "menubar/WidgetOrderManager.h"

namespace orvelle {

namespace {

MenuEntry actionEntry(const QString &title, MenuAction::Kind kind, const QString &symbol)
{
    MenuEntry entry;
    entry.title = title;
    entry.action.kind = kind;
    entry.icon.symbol = symbol;
    return entry;
}

/// The themed icon that a tray host draws for one of our symbols.
QString themedIconName(const QString &symbol)
{
    return symbol == u"power" ? QStringLiteral("application-exit") : QString();
}

} // namespace

MenuBuilder::MenuBuilder(const LinkStore &links, const WidgetOrderManager &widgetOrder, StartupJobs &jobs)
    : m_links(links), m_widgetOrder(widgetOrder), m_jobs(jobs)
{
}

Menu MenuBuilder::buildMainMenu() const
{
    letServicesCatchUp();
    return currentMainMenu();
}

Menu MenuBuilder::currentMainMenu() const
{
    Menu menu;
    addLinks(menu);
    addWidgets(menu, true);
    addSyncMark(menu);
    MenuEntry bottomRow;
    bottomRow.kind = MenuEntry::Kind::BottomRow;
    menu.entries += bottomRow;
    return menu;
}

Menu MenuBuilder::buildLinksOnlyMenu() const
{
    letServicesCatchUp();
    Menu menu;
    addLinks(menu);
    addWidgets(menu, false);
    addSyncMark(menu);
    return menu;
}

void MenuBuilder::letServicesCatchUp() const
{
    m_jobs.checkSyncIfNeeded();
    m_jobs.refreshWeatherIfNeeded();
    m_jobs.checkClipboardNow();
}

Menu MenuBuilder::buildContextMenu() const
{
    Menu menu;
    menu.entries += actionEntry(text("menu.settings"_text), MenuAction::Kind::OpenSettings, {});
    menu.entries += actionEntry(text("menu.quit"_text), MenuAction::Kind::Quit, QStringLiteral("power"));
    return menu;
}

void MenuBuilder::addLinks(Menu &menu) const
{
    const LinkList &links = m_links.links();
    if (links.isEmpty()) {
        MenuEntry none;
        none.title = text("menu.noLinks"_text);
        none.enabled = false;
        menu.entries += none;
        return;
    }
    menu.entries.reserve(links.size());
    for (const LinkItem &item : links)
        menu.entries += menuEntry(item);
}

void MenuBuilder::addWidgets(Menu &menu, bool withMenuBarOnly) const
{
    for (const WidgetType type : m_widgetOrder.order()) {
        if (!m_jobs.isWidgetEnabled(type) || (m_jobs.isMenuBarOnly(type) && !withMenuBarOnly))
            continue;
        MenuEntry entry;
        entry.kind = MenuEntry::Kind::Widget;
        entry.widget = type;
        menu.entries += entry;
    }
}

void MenuBuilder::addSyncMark(Menu &menu) const
{
    const QString title = m_jobs.syncNeedsUser();
    if (title.isEmpty())
        return;
    MenuEntry mark = actionEntry(title, MenuAction::Kind::OpenSyncSettings, QStringLiteral("exclamationmark.cloud"));
    mark.icon.color = nsColor(QStringLiteral("orange"));
    menu.entries += mark;
}

QList<HostMenuEntry> hostMenuEntries(const Menu &menu)
{
    QList<HostMenuEntry> entries;
    for (const MenuEntry &entry : menu.entries) {
        entries += {static_cast<int>(entries.size()) + 1, entry.title, themedIconName(entry.icon.symbol),
                    entry.kind == MenuEntry::Kind::Separator};
    }
    return entries;
}

} // namespace orvelle
