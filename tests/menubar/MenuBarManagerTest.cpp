#include "menubar/MenuJson.h"
#include "menubar/MenuTestFakes.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;

QString keysOf(const Menu &menu)
{
    return menuOutline(menu).trimmed().replace(u'\n', u'|');
}

TEST(Menu, ShowsTheTreeThenEnabledWidgetsThenTheBottomRow)
{
    Shell shell;
    const QString bottom = QStringLiteral("[menu.quickAdd] [menu.quickNote] [menu.settings]");
    EXPECT_EQ(keysOf(shell.manager.buildMainMenu()), QStringLiteral("(menu.noLinks)|") + bottom);
    EXPECT_EQ(shell.calls.join(u' '), u"sync weather clipboard");

    shell.store.addLink(group("Work", {group("Empty", {}), item("Wiki", LinkType::Url, "https://w")}));
    shell.jobs.enabled = {WidgetType::Timer, WidgetType::Weather};
    shell.widgetOrder.moveUp(WidgetType::Timer);
    shell.widgetOrder.move(WidgetType::Timer, WidgetType::Clipboard);
    EXPECT_EQ(keysOf(shell.manager.buildMainMenu()),
              QStringLiteral("Work ▸|  Empty ▸|    (menu.empty)|  Wiki|<timer>|<weather>|") + bottom);
}

TEST(Menu, WidgetsOfTheStatusItemStayOutOfTheMenuAtThePointer)
{
    Shell shell;
    shell.jobs.enabled = {WidgetType::Timer, WidgetType::Weather, WidgetType::Network};
    shell.jobs.menuBarOnly = {WidgetType::Timer, WidgetType::Network, WidgetType::Calendar};
    struct {
        StatusItem::Host host;
        const char16_t *expected;
    } const cases[] = {
        {StatusItem::Host::Notifier, u"(menu.noLinks)|<weather>"},
        {StatusItem::Host::None,
         u"(menu.noLinks)|<weather>|<network>|<timer>|[menu.quickAdd] [menu.quickNote] [menu.settings]"},
    };
    for (const auto &each : cases) {
        shell.statusItem.currentHost = each.host;
        shell.manager.toggleMenuAtPointer();
        ASSERT_TRUE(shell.presenter.menu);
        EXPECT_EQ(keysOf(*shell.presenter.menu), QString::fromUtf16(each.expected));
        shell.manager.toggleMenuAtPointer();
    }
}

TEST(Menu, MarksTheSynchronisationOnlyWhenItNeedsTheUser)
{
    Shell shell;
    const qsizetype usual = shell.manager.buildMainMenu().entries.size();
    shell.jobs.syncTitle = QStringLiteral("Passphrase needed");
    const Menu menu = shell.manager.buildMainMenu();
    ASSERT_EQ(menu.entries.size(), usual + 1);
    const MenuEntry &mark = menu.entries.at(usual - 1);
    EXPECT_EQ(mark.title, shell.jobs.syncTitle);
    EXPECT_FALSE(mark.icon.symbol.isEmpty());
    EXPECT_EQ(menu.entries.last().kind, MenuEntry::Kind::BottomRow);
    EXPECT_TRUE(menuJson(menu).contains("openSyncSettings"));
    shell.calls.clear();
    shell.manager.perform(mark.action);
    EXPECT_EQ(shell.calls, Calls{QStringLiteral("sync settings")});
}

TEST(Menu, PrintsRowsAsTheyAreDrawn)
{
    struct Case {
        const char *situation;
        LinkItem link;
        const char *color;
        std::optional<bool> flag;
        const char *json; ///< what follows the title
    };
    const Case cases[] = {
        {"plain address", item("x", LinkType::Url, "https://e"), nullptr, {}, R"("enabled":true,"icon":"globe"})"},
        {"coloured folder without flag",
         item("x", LinkType::Folder, "/x"),
         "red",
         {},
         R"("enabled":true,"icon":"folder"})"},
        {"coloured folder with flag", item("x", LinkType::Folder, "/x"), "red", true,
         R"("enabled":true,"icon":"folder","tint":"red","italic":false,"chevron":false,"interactive":true})"},
        {"unknown colour with flag", item("x", LinkType::Folder, "/x"), "mauve", true,
         R"("enabled":true,"icon":"folder"})"},
        {"note",
         item("x", LinkType::Note),
         "yellow",
         {},
         R"("enabled":true,"icon":"note.text","tint":"yellow","italic":true,"chevron":false,"interactive":true})"},
        {"note not coloured", item("x", LinkType::Note), "yellow", false,
         R"("enabled":true,"icon":"note.text","italic":true,"chevron":false,"interactive":true})"},
        {"coloured group", group("x", {}), "blue", true,
         R"("enabled":true,"icon":"folder.fill","tint":"blue","italic":false,"chevron":true,"interactive":false,)"
         R"("children":[{"kind":"item","title":"menu.empty","enabled":false,"icon":""}]})"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.situation);
        LinkItem link = c.link;
        if (c.color)
            link.customIconColor = QString::fromLatin1(c.color);
        link.noteColoredInMenu = c.flag;
        QByteArray json = menuJson({{menuEntry(link)}});
        json.replace(" : ", ":").replace("\n", "").replace("  ", "");
        const QByteArray kind = link.isGroup() ? "submenu" : "item";
        EXPECT_EQ(json.toStdString(), ("[{\"kind\":\"" + kind + "\",\"title\":\"x\"," + c.json + "]").toStdString());
    }
}

TEST(MenuBarManager, SetsUpInOrderAndOpensSettingsForAnEmptyTree)
{
    Shell shell;
    shell.manager.setupMenuBar();
    EXPECT_TRUE(shell.statusItem.shown);
    shell.statusItem.painter(16, Qt::black);
    EXPECT_EQ(shell.calls.join(u' '), u"shortcut paint link");
    shell.clock.advance(499ms);
    EXPECT_FALSE(shell.calls.contains(QStringLiteral("settings")));
    shell.clock.advance(1ms);
    EXPECT_EQ(shell.calls.count(QStringLiteral("settings")), 1);

    Shell filled({item("x", LinkType::Url, "https://e")});
    filled.manager.setupMenuBar();
    filled.clock.advance(10s);
    EXPECT_FALSE(filled.calls.contains(QStringLiteral("settings")));
}

TEST(MenuBarManager, DrawsTheChosenIcon)
{
    for (const auto &[stored, symbol] :
         {std::pair("globe", "globe"), std::pair("link.circle", "link.circle.fill"), std::pair("rocket", "link")}) {
        Shell shell;
        shell.manager.setupMenuBar();
        ASSERT_TRUE(shell.defaults.write(QStringLiteral("MenuletIcon"), QString::fromLatin1(stored)));
        emit shell.notifications.menuletIconChanged();
        shell.statusItem.painter(16, Qt::black);
        EXPECT_EQ(shell.calls.last(), QStringLiteral("paint ") + QLatin1StringView(symbol));
    }
}

TEST(MenuBarManager, OpensWhatIsChosenByKind)
{
    struct Case {
        LinkItem link;
        const char *opened;
        bool accessed;
    };
    const Case cases[] = {
        {item("f", LinkType::File, "/a b"), "file:/a b", true},
        {item("d", LinkType::Folder, "/d"), "folder:/d", true},
        {item("u", LinkType::Url, "mailto:ada@example.org"), "url:mailto:ada@example.org", false},
        {item("s", LinkType::Url, "smb://nas/share"), "url:smb://nas/share", false},
        {item("bad", LinkType::Url, "no address"), "", false},
        {item("bad", LinkType::Url, "http://[::1"), "", false},
        {item("n", LinkType::Note, "quicknote://1"), "", false},
        {group("g", {}), "", false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.link.path.toStdString());
        Shell shell({c.link});
        shell.bookmarks.accessed.clear();
        shell.manager.perform({MenuAction::Kind::OpenLink, c.link.id});
        EXPECT_EQ(shell.workspace.opened.join(u'|'), QLatin1StringView(c.opened));
        EXPECT_EQ(shell.calls.contains(QStringLiteral("note")), c.link.type == LinkType::Note);
        EXPECT_EQ(shell.bookmarks.accessed.size(), c.accessed ? 1 : 0);
        shell.clock.advance(999ms);
        EXPECT_TRUE(shell.bookmarks.stopped.isEmpty());
        shell.clock.advance(1ms);
        EXPECT_EQ(shell.bookmarks.stopped, shell.bookmarks.accessed);
    }
}

TEST(MenuBarManager, ClicksOpenAndCloseAndGiveTheFocusBack)
{
    Shell shell({item("x", LinkType::Url, "https://e")});
    shell.manager.setupMenuBar();
    shell.calls.clear();
    shell.statusItem.userClicks({10, 20});
    ASSERT_TRUE(shell.presenter.menu);
    EXPECT_EQ(shell.presenter.menu->entries.last().kind, MenuEntry::Kind::BottomRow);
    EXPECT_EQ(shell.presenter.placement.position, QPoint(10, 20));
    shell.statusItem.userClicks({10, 20});
    EXPECT_FALSE(shell.presenter.isOpen());
    EXPECT_EQ(shell.calls.join(u' '), u"sync weather clipboard live still");
    EXPECT_EQ(shell.workspace.focusRequests, QList<WindowToken>{7});

    // Opened again before the end of the last one is known.
    shell.statusItem.userClicks({10, 20});
    const auto closed = shell.presenter.userChoosesSoon({});
    shell.clock.advance(1s);
    shell.statusItem.userClicks({10, 20});
    shell.calls.clear();
    closed();
    EXPECT_EQ(shell.calls.join(u' '), u"") << "its rows go on";
    EXPECT_EQ(shell.workspace.focusRequests.size(), 1) << "and it keeps the focus";
    shell.presenter.close();
    EXPECT_EQ(shell.calls.join(u' '), u"still");

    // The press that dismissed the popup arrives once more, as a click.
    shell.clock.advance(1s);
    shell.statusItem.userClicks({10, 20});
    shell.presenter.userPressesBeside();
    shell.clock.advance(200ms);
    shell.statusItem.userClicks({10, 20});
    EXPECT_FALSE(shell.presenter.isOpen());
    shell.statusItem.userClicks({10, 20});
    EXPECT_TRUE(shell.presenter.isOpen());

    // Escape leaves no click behind.
    shell.presenter.userChooses({});
    shell.statusItem.userRightClicks({10, 20});
    EXPECT_TRUE(shell.presenter.isOpen());
}

TEST(MenuBarManager, RightClickShowsTwoItemsAndQuitsWithoutAsking)
{
    Shell shell({item("x", LinkType::Url, "https://e")});
    shell.manager.setupMenuBar();
    shell.statusItem.userRightClicks({1, 2});
    ASSERT_TRUE(shell.presenter.menu);
    EXPECT_EQ(keysOf(*shell.presenter.menu), u"menu.settings|menu.quit");
    EXPECT_EQ(shell.presenter.menu->entries.at(1).icon.symbol, u"power");
    shell.presenter.userChooses(shell.presenter.menu->entries.at(1).action);
    EXPECT_EQ(shell.defaults.get<bool>(QStringLiteral("SkipQuitConfirmation")), true);
    EXPECT_EQ(shell.calls.last(), u"terminate");

    ASSERT_EQ(shell.statusItem.hostMenu.size(), 2);
    shell.statusItem.userChoosesInHostMenu(shell.statusItem.hostMenu.at(0).id);
    EXPECT_EQ(shell.calls.last(), u"settings");
}

TEST(MenuBarManager, PopupAtThePointerHasTheBottomRowOnlyWithoutTray)
{
    for (const auto host : {StatusItem::Host::Notifier, StatusItem::Host::None}) {
        Shell shell({item("x", LinkType::Url, "https://e")});
        shell.statusItem.currentHost = host;
        shell.manager.setupMenuBar();
        emit shell.notifications.globalShortcutFired();
        ASSERT_TRUE(shell.presenter.menu);
        EXPECT_TRUE(shell.manager.isShowingPopupMenu());
        EXPECT_EQ(shell.presenter.placement.position, QPoint(300, 400));
        EXPECT_EQ(shell.presenter.menu->entries.size(), host == StatusItem::Host::None ? 2 : 1);
        shell.manager.toggleMenuAtPointer();
        EXPECT_FALSE(shell.presenter.isOpen());
        EXPECT_FALSE(shell.manager.isShowingPopupMenu());
    }
}

TEST(MenuBarManager, QuickNoteIsStoredAndOpened)
{
    Shell shell;
    shell.manager.perform({MenuAction::Kind::QuickNote, {}});
    ASSERT_EQ(shell.store.links().size(), 1);
    const LinkItem note = shell.store.links().first();
    EXPECT_EQ(note.name, u"note.defaultName");
    EXPECT_EQ(note.customIconColor, QStringLiteral("yellow"));
    EXPECT_TRUE(note.path.startsWith(u"quicknote://"));
    EXPECT_EQ(note.path.mid(12), note.path.mid(12).toUpper());
    EXPECT_EQ(shell.windows.lastNote, note.id);
}

TEST(MenuBarManager, OffersTheRepairOnlyForUnresolvedFiles)
{
    Shell shell({item("f", LinkType::File, "/gone")});
    shell.bookmarks.missing = {QStringLiteral("/gone")};
    shell.manager.setupMenuBar();
    shell.clock.advance(999ms);
    EXPECT_TRUE(shell.alerts.shown.isEmpty());
    shell.clock.advance(1ms);
    ASSERT_EQ(shell.alerts.shown.size(), 1);
    EXPECT_EQ(shell.alerts.shown.first().buttons.join(u' '), u"repair.fix repair.later");
    shell.alerts.userChooses(0);
    EXPECT_EQ(shell.folderChooser.startFolders.size(), 1);

    LinkItem there = item("f", LinkType::File, "/there");
    there.bookmarkData = FakeFileBookmarks::bookmarkOf(there.path);
    Shell sound({there});
    sound.manager.setupMenuBar();
    sound.clock.advance(2s);
    EXPECT_TRUE(sound.alerts.shown.isEmpty());
}

TEST(MenuBarManager, SaysOnceThatThereIsNoTray)
{
    Shell shell({item("x", LinkType::Url, "https://e")});
    shell.manager.setupMenuBar();
    // A panel that comes late is no missing panel.
    emit shell.statusItem.hostChanged(StatusItem::Host::None);
    shell.clock.advance(5s);
    EXPECT_TRUE(shell.alerts.shown.isEmpty());
    shell.statusItem.currentHost = StatusItem::Host::None;
    for (int i = 0; i < 3; ++i) {
        emit shell.statusItem.hostChanged(StatusItem::Host::None);
        shell.clock.advance(5s);
    }
    ASSERT_EQ(shell.alerts.shown.size(), 1);
}

} // namespace
} // namespace orvelle::test
