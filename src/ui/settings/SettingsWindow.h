#pragma once

#include "links/LinkItem.h"
#include "ui/settings/WidgetSection.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

namespace orvelle {

class Alerts;
class AppWindows;
class Clock;
class DebugModeManager;
class ExchangeDialogs;
class FaviconSettings;
class FolderChooser;
class GlobalShortcut;
class LaunchAtLoginManager;
class LinkStore;
class Notifications;
class SnapshotStore;
class SyncControl;
class UpdateManager;
class UserDefaults;
class Volumes;
class WidgetOrderManager;

/// What the About tab tells of this installation.
struct AboutInfo {
    QString version;
    QString build;
    QString settingsPath; ///< the settings database
    QString dataFolder;   ///< snapshots and what was set aside
    QString manual = {};  ///< the installed manual's page; empty where there is none
};

/// Everything the settings window works on. All of it outlives the window.
struct SettingsServices {
    LinkStore &links;
    UserDefaults &defaults;
    Notifications &notifications;
    WidgetOrderManager &widgetOrder;
    DebugModeManager &debugMode;
    SnapshotStore &snapshots;
    FaviconSettings &favicons;
    ExchangeDialogs &exchange;
    AppWindows &windows; ///< quick add and note editors
    Alerts &alerts;
    Clock &clock;
    const Volumes &volumes;
    /// Opens an item exactly as the menu does.
    std::function<void(const LinkItem &)> openLink;
    /// Shows a file or folder in the file manager, selected.
    std::function<void(const QString &path)> reveal;
    /// Opens a file-manager window on a folder.
    std::function<void(const QString &folder)> showFolder;
    AboutInfo about;
    /// The sections of the widgets that run.
    WidgetSectionTable widgetSections = {};
    /// Null where there is none to be set.
    GlobalShortcut *shortcut = nullptr;
    /// Null where nothing looks for updates.
    UpdateManager *updates = nullptr;
    /// Null where nothing can be started at login.
    LaunchAtLoginManager *launchAtLogin = nullptr;
    /// Null where nothing is kept in step.
    SyncControl *sync = nullptr;
    /// For the shared folder; null where there is none to ask.
    FolderChooser *folderChooser = nullptr;
};

/// The settings: General, Widgets, Sync and About. Its objectName is
/// "SettingsWindow". Closing hides nothing elsewhere; make one with new, show
/// it, and it deletes itself when closed (WA_DeleteOnClose). The first close() stays
/// without effect while something is typed that cannot be stored. Remembers its size
/// and its tab. On the first launch ever it shows the welcome content by
/// itself. Documents dropped on it go to ExchangeDialogs::openDropped().
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsWindow(const SettingsServices &services, QWidget *parent = nullptr);
    ~SettingsWindow() override;

    static QString identifier() { return QStringLiteral("SettingsWindow"); }

    /// Says in the line at the bottom what happened or why something was
    /// refused, also to screen readers. Goes after some seconds. Plain text.
    void showStatus(const QString &text);
    /// The same for a widget somewhere inside the window; a widget that is in
    /// no settings window says nothing.
    static void showStatus(const QWidget *inside, const QString &text);
    /// Stores what is being typed about an item, as leaving its field does.
    void commitTyped();
    /// "general", "widgets", "sync" or "about".
    void showTab(const QString &name);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};

} // namespace orvelle
