#include "menubar/MenuBarManager.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/NewNote.h"
#include "menubar/AppWindows.h"
#include "menubar/MenuletIcons.h"
#include "menubar/StartupJobs.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcMenuBar, "MenuBarManager", QtInfoMsg)

QString menuletIconKey()
{
    return QStringLiteral("MenuletIcon");
}

std::optional<LinkOpener::Caution> cautionOf(const MenuBarManager::Services &services)
{
    if (!services.marks)
        return std::nullopt;
    return LinkOpener::Caution{*services.marks, services.alerts};
}

} // namespace

MenuBarManager::MenuBarManager(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_builder(services.links, services.widgetOrder, services.jobs),
      m_opener(services.links, services.workspace, services.clock, cautionOf(services))
{
}

void MenuBarManager::setupMenuBar()
{
    connectStatusItem();
    updateMenuletIcon();
    m_services.statusItem.show();
    registerObservers();
    m_services.jobs.setupGlobalShortcut();
    m_services.clock.after(repairDelay, this, [this] { checkAndRepairBookmarks(); });
    if (m_services.links.links().isEmpty())
        m_services.clock.after(firstSettingsDelay, this, [this] { m_services.windows.openSettings(); });
}

void MenuBarManager::connectStatusItem()
{
    StatusItem &item = m_services.statusItem;
    item.setTitle(QStringLiteral("Orvelle"));
    item.setToolTip(QStringLiteral("Orvelle"));
    item.setHostMenu(hostMenuEntries(m_builder.buildContextMenu()));
    connect(&item, &StatusItem::activated, this, &MenuBarManager::statusItemClicked);
    connect(&item, &StatusItem::contextMenuRequested, this, &MenuBarManager::statusItemRightClicked);
    connect(&item, &StatusItem::hostMenuChosen, this, [this](int id) {
        const QList<MenuEntry> entries = m_builder.buildContextMenu().entries;
        if (id >= 1 && id <= entries.size())
            perform(entries.at(id - 1).action);
    });
    connect(&item, &StatusItem::hostChanged, this, &MenuBarManager::hostChanged);
}

void MenuBarManager::registerObservers()
{
    Notifications &n = m_services.notifications;
    AppWindows &windows = m_services.windows;
    connect(&n, &Notifications::openQuickAdd, this, [&windows] { windows.openQuickAdd(std::nullopt); });
    connect(&n, &Notifications::openNoteEditor, this, [&windows](const QUuid &id) { windows.openNoteEditor(id); });
    connect(&n, &Notifications::openTimerCustom, this, &MenuBarManager::openTimerCustom);
    connect(&n, &Notifications::openAppSettings, this, [&windows] { windows.openSettings(); });
    connect(&n, &Notifications::menuletIconChanged, this, &MenuBarManager::updateMenuletIcon);
    // The menu is built anew at each opening, so a change of quick launch, of a
    // widget's figures or of the widgets' order needs nothing here; the rows of
    // an open menu follow their managers themselves.
    connect(&n, &Notifications::globalShortcutChanged, this, &MenuBarManager::globalShortcutChanged);
    connect(&n, &Notifications::shortcutRecordingChanged, this, [this](bool recording) {
        if (recording)
            m_services.jobs.removeGlobalShortcut();
        else
            globalShortcutChanged();
    });
    connect(&n, &Notifications::globalShortcutFired, this, &MenuBarManager::handleHotKeyFired);
    connect(&m_services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        if (keys.contains(menuletIconKey()))
            updateMenuletIcon();
    });
}

void MenuBarManager::globalShortcutChanged()
{
    m_services.jobs.removeGlobalShortcut();
    m_services.jobs.setupGlobalShortcut();
}

void MenuBarManager::updateMenuletIcon()
{
    const QString symbol = menuletSymbol(m_services.defaults.get<QString>(menuletIconKey()).value_or(QString()));
    m_services.statusItem.setPainter(
        [symbol, paint = m_services.paintSymbol](int side, const QColor &color) { return paint(symbol, side, color); });
}

void MenuBarManager::statusItemClicked(const QPoint &position)
{
    if (!closesOpenMenu())
        present(m_builder.buildMainMenu(), {position, true}, m_services.workspace.focusedWindow());
}

void MenuBarManager::statusItemRightClicked(const QPoint &position)
{
    if (!closesOpenMenu())
        present(m_builder.buildContextMenu(), {position, true}, m_services.workspace.focusedWindow());
}

/// True when the click meant to close a menu, which is then done.
bool MenuBarManager::closesOpenMenu()
{
    if (m_services.presenter.isOpen()) {
        m_services.presenter.close();
        return true;
    }
    return isWithin(sameClick, std::exchange(m_dismissedAt, std::nullopt));
}

bool MenuBarManager::isWithin(std::chrono::milliseconds span, const std::optional<Timestamp> &since) const
{
    if (!since)
        return false;
    const double passed = m_services.clock.now() - *since;
    return passed >= 0 && passed < std::chrono::duration<double>(span).count();
}

void MenuBarManager::handleHotKeyFired()
{
    const bool isOpen = m_isShowingPopupMenu || m_services.presenter.isOpen();
    if (!isOpen && !isWithin(samePress, m_closedAt))
        showMenuAtMouseLocation(m_services.workspace.focusedWindow());
}

void MenuBarManager::toggleMenuAtPointer()
{
    if (m_services.presenter.isOpen())
        m_services.presenter.close();
    else
        showMenuAtMouseLocation(m_services.workspace.focusedWindow());
}

void MenuBarManager::showMenuAtMouseLocation(WindowToken previousWindow)
{
    const bool onlyMenu = m_services.statusItem.host() == StatusItem::Host::None;
    const Menu menu = onlyMenu ? m_builder.buildMainMenu() : m_builder.buildLinksOnlyMenu();
    m_isShowingPopupMenu = true;
    present(menu, {m_services.presenter.pointerPosition(), false}, previousWindow);
}

void MenuBarManager::present(const Menu &menu, const MenuPlacement &placement, WindowToken previousWindow)
{
    m_liveWidgets = true;
    m_services.jobs.startLiveWidgets();
    m_services.presenter.present(menu, placement,
                                 [self = QPointer<MenuBarManager>(this), previousWindow](const MenuAction &chosen) {
                                     if (self)
                                         self->menuDidClose(chosen, previousWindow);
                                 });
}

void MenuBarManager::menuDidClose(const MenuAction &chosen, WindowToken previousWindow)
{
    // Told by the event loop, and by now another one may be open.
    if (m_services.presenter.isOpen())
        return perform(chosen);
    m_isShowingPopupMenu = false;
    m_closedAt = m_services.clock.now();
    if (std::exchange(m_liveWidgets, false))
        m_services.jobs.stopLiveWidgets();
    // Before the choice is carried out: what it opens is to have the focus.
    m_services.workspace.focusWindow(previousWindow);
    if (m_services.presenter.wasClosedByPress())
        m_dismissedAt = m_services.clock.now();
    perform(chosen);
}

void MenuBarManager::perform(const MenuAction &action)
{
    switch (action.kind) {
    case MenuAction::Kind::None:
        return;
    case MenuAction::Kind::OpenLink:
        if (const auto item = m_services.links.find(action.linkId))
            openLink(*item);
        return;
    case MenuAction::Kind::OpenSettings:
        return m_services.windows.openSettings();
    case MenuAction::Kind::Quit:
        return quitApp();
    case MenuAction::Kind::QuickAdd:
        return m_services.windows.openQuickAdd(std::nullopt);
    case MenuAction::Kind::QuickNote:
        return createAndOpenQuickNote();
    case MenuAction::Kind::OpenSyncSettings:
        return m_services.windows.openSyncSettings();
    }
}

bool MenuBarManager::openLink(const LinkItem &item)
{
    if (item.type != LinkType::Note)
        return m_opener.open(item);
    m_services.windows.openNoteEditor(item.id);
    return true;
}

void MenuBarManager::createAndOpenQuickNote()
{
    if (m_services.presenter.isOpen())
        m_services.presenter.close();
    const LinkItem note = newNote(m_services.defaults, m_services.clock.now());
    m_services.links.addLink(note);
    m_services.windows.openNoteEditor(note.id);
}

void MenuBarManager::openTimerCustom()
{
    if (!m_services.presenter.isOpen())
        return m_services.windows.openTimerCustom();
    m_services.presenter.close();
    // After the menu has given the focus back, so that the window gets it.
    QMetaObject::invokeMethod(
        this, [this] { m_services.windows.openTimerCustom(); }, Qt::QueuedConnection);
}

void MenuBarManager::quitApp()
{
    // A failed write only means that the user is asked; the store reports it.
    static_cast<void>(m_services.defaults.write(QStringLiteral("SkipQuitConfirmation"), true));
    m_services.terminate();
}

void MenuBarManager::checkAndRepairBookmarks()
{
    m_services.links.refreshStaleBookmarks([self = QPointer<MenuBarManager>(this)] {
        if (self)
            self->offerRepair();
    });
}

void MenuBarManager::offerRepair()
{
    qCInfo(lcMenuBar, "Some file links cannot be resolved; offering the repair");
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("repair.alertTitle"_text);
    alert.informativeText = text("repair.alertMessage"_text);
    alert.buttons = {text("repair.fix"_text), text("repair.later"_text)};
    m_services.alerts.show(alert, [self = QPointer<MenuBarManager>(this)](int button) {
        if (self && button == 0)
            self->m_services.links.repairBookmarks(self->m_services.folderChooser);
    });
}

void MenuBarManager::hostChanged(StatusItem::Host host)
{
    if (host != StatusItem::Host::None || m_waitingForTray || m_saidThereIsNoTray)
        return;
    m_waitingForTray = true;
    m_services.clock.after(trayPatience, this, [this] {
        m_waitingForTray = false;
        if (m_services.statusItem.host() == StatusItem::Host::None)
            tellThereIsNoTray();
    });
}

void MenuBarManager::tellThereIsNoTray()
{
    if (std::exchange(m_saidThereIsNoTray, true))
        return;
    qCWarning(lcMenuBar, "No tray found; the menu opens with: orvelle toggle");
    Alert alert;
    alert.message = text("tray.missingTitle"_text);
    alert.informativeText = text("tray.missingMessage"_text);
    alert.buttons = {text("sheet.ok"_text)};
    m_services.alerts.show(alert);
}

} // namespace orvelle
