#pragma once

#include "menubar/LinkOpener.h"
#include "menubar/Menu.h"
#include "menubar/MenuBuilder.h"
#include "platform/StatusItem.h"
#include "platform/Workspace.h"

#include <QImage>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <optional>

namespace orvelle {

class Alerts;
class AppWindows;
class Clock;
class FolderChooser;
class ImportMarks;
class LinkStore;
class Notifications;
class StartupJobs;
class UserDefaults;
class WidgetOrderManager;

/// The status item and what happens around it: opens the menus, carries out
/// what is chosen in them, listens to the application-wide announcements.
/// Main thread; lives until exit.
class MenuBarManager : public QObject
{
    Q_OBJECT

public:
    /// Draws a symbol as a square of `side` pixels in `color`.
    using SymbolPainter = std::function<QImage(const QString &symbol, int side, const QColor &color)>;

    struct Services {
        LinkStore &links;
        UserDefaults &defaults;
        Notifications &notifications;
        Clock &clock;
        Alerts &alerts;
        FolderChooser &folderChooser;
        Workspace &workspace;
        StatusItem &statusItem;
        MenuPresenter &presenter;
        AppWindows &windows;
        StartupJobs &jobs;
        WidgetOrderManager &widgetOrder;
        SymbolPainter paintSymbol;
        /// Asks the application to end.
        std::function<void()> terminate;
        /// Which links others made; without it none is asked about.
        ImportMarks *marks = nullptr;
    };

    static constexpr std::chrono::milliseconds repairDelay{1000};
    static constexpr std::chrono::milliseconds firstSettingsDelay{500};
    /// A tray that starts with the session may come this much later than we.
    static constexpr std::chrono::milliseconds trayPatience{5000};
    /// Closing the menu by a click on the icon reaches us twice: the popup
    /// closes on the press, the tray reports the click on the release.
    static constexpr std::chrono::milliseconds sameClick{300};
    /// A press of the global shortcut this soon after the menu closed is one
    /// that meant to close it, or the key still held down.
    static constexpr std::chrono::milliseconds samePress{200};

    explicit MenuBarManager(const Services &services, QObject *parent = nullptr);

    void setupMenuBar();

    /// The menu at the icon; closes a menu that is open.
    void statusItemClicked(const QPoint &position);
    void statusItemRightClicked(const QPoint &position);
    /// The menu at the pointer, or closes a menu that is open. Without the
    /// bottom row where a tray offers it; with it where this is the only menu.
    void toggleMenuAtPointer();

    Menu buildMainMenu() const { return m_builder.buildMainMenu(); }
    void perform(const MenuAction &action);
    /// As chosen in the menu. False when it leads nowhere.
    bool openLink(const LinkItem &item);
    /// As LinkOpener::openAddress().
    bool openAddress(const QUrl &url) { return m_opener.openAddress(url); }
    void createAndOpenQuickNote();
    void quitApp();
    void checkAndRepairBookmarks();
    void offerRepair();
    bool isShowingPopupMenu() const { return m_isShowingPopupMenu; }

private:
    void connectStatusItem();
    void registerObservers();
    void updateMenuletIcon();
    void showMenuAtMouseLocation(WindowToken previousWindow);
    void present(const Menu &menu, const MenuPlacement &placement, WindowToken previousWindow);
    void menuDidClose(const MenuAction &chosen, WindowToken previousWindow);
    bool closesOpenMenu();
    void hostChanged(StatusItem::Host host);
    void tellThereIsNoTray();
    void openTimerCustom();
    void globalShortcutChanged();
    void handleHotKeyFired();
    bool isWithin(std::chrono::milliseconds span, const std::optional<Timestamp> &since) const;

    Services m_services;
    MenuBuilder m_builder;
    LinkOpener m_opener;
    std::optional<Timestamp> m_dismissedAt; ///< when a press beside it closed a menu
    std::optional<Timestamp> m_closedAt;    ///< when the last menu closed
    bool m_isShowingPopupMenu = false;
    bool m_liveWidgets = false;
    bool m_waitingForTray = false;
    bool m_saidThereIsNoTray = false;
};

} // namespace orvelle
