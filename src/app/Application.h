#pragma once

#include "app/AppDelegate.h"
#include "app/CoreServices.h"
#include "app/StorageAlerts.h"
#include "app/TrayMenu.h"
#include "app/UserServices.h"
#include "app/WeatherServices.h"
#include "app/WidgetServices.h"
#include "app/Windows.h"
#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"
#include "menubar/GlobalShortcut.h"
#include "menubar/MenuBarManager.h"
#include "menubar/TimerToolTip.h"
#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/DesktopHotKeys.h"
#include "platform/freedesktop/GioWorkspace.h"
#include "platform/freedesktop/LogindPowerEvents.h"
#include "platform/freedesktop/log/JournalLog.h"
#include "platform/freedesktop/tray/FreedesktopStatusItem.h"
#include "platform/freedesktop/wayland/LayerShell.h"
#include "ui/common/MessageAlerts.h"
#include "ui/common/QtFolderChooser.h"
#include "ui/common/Theme.h"
#include "ui/exchange/ExchangeController.h"
#include "ui/menu/MenuPopup.h"

namespace orvelle {

/// The running application: every long-lived object, once, in the order in
/// which they need each other. Main thread.
class Application : public QObject, private AppControl
{
    Q_OBJECT

public:
    /// What outlives the application, and how its settings were opened.
    struct Surroundings {
        SystemClock &clock;
        const JournalLog &log;
        MessageAlerts &alerts;
        QDBusConnection sessionBus;
    };
    Application(const Surroundings &surroundings, const Folders &folders, SqliteUserDefaults::Opened opened);
    ~Application() override;

    void start();

    void openSettings() override;
    void openQuickAdd(const QString &address) override;
    void openFiles(const QStringList &paths) override;
    /// A command from another process.
    void runCommand(const QStringList &arguments, const QString &workingDirectory, const CommandAnswer &answer);
    /// One of the actions of the desktop entry.
    void performAction(const QString &name);
    /// Somebody wants the application to end; it may ask the user first.
    void requestQuit();
    /// Ends, to be started again at once, if the user does not notice: not
    /// while a countdown runs, or a window is open in which something may be half done.
    bool endUnnoticed();

private:
    void toggleMenu() override;
    void quitSoon() override;
    QStringList recentLog() const override { return m_surroundings.log.recentLines(); }

    WidgetServices::Surroundings widgetSurroundings();
    MenuBarManager::Services menuBarServices();
    Windows::Services windowServices();
    SettingsServices settingsServices(AppWindows &windows);
    CommandContext commandContext(const QString &workingDirectory);
    void offerTrayMenu();
    void reportHowSettingsOpened();
    /// Stores what is typed and not stored yet. False when that failed.
    bool save();
    void saveAndExit();
    void sessionMayEnd();

    Surroundings m_surroundings;
    std::optional<QString> m_damagedCopy;
    std::optional<DefaultsError> m_notWritable;
    DesktopColorScheme m_colorScheme;
    Theme m_theme;
    LogindPowerEvents m_powerEvents;
    CoreServices m_core;
    QtFolderChooser m_folderChooser;
    GioWorkspace m_workspace;
    FreedesktopStatusItem m_statusItem;
    std::unique_ptr<HotKeyService> m_hotKeys;
    GlobalShortcut m_shortcut;
    WidgetServices m_widgets;
    UserServices m_services;
    SyncServices m_sync;
    WeatherServices m_weather;
    LayerShell m_layerShell;
    MenuPopup m_presenter;
    ExchangeController m_importer;
    Windows m_windows;
    MenuBarManager m_menuBar;
    std::optional<TrayMenu> m_trayMenu; ///< where no program can place a menu
    TimerToolTip m_timerToolTip;
    AppDelegate m_delegate;
    StorageAlerts m_storageAlerts;
    std::unique_ptr<Timer> m_sessionMayEnd; ///< runs while the session manager asks its programs
};

} // namespace orvelle
