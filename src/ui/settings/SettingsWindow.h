#pragma once

#include "links/LinkItem.h"

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
class LinkStore;
class Notifications;
class SnapshotStore;
class UserDefaults;
class Volumes;
class WidgetOrderManager;

/// What the About tab tells of this installation.
struct AboutInfo {
    QString version;
    QString build;
    QString settingsPath; ///< the settings database
    QString dataFolder;   ///< snapshots and what was set aside
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
};

/// The settings: General, Widgets and About. Its objectName is
/// "SettingsWindow". Closing hides nothing elsewhere; make one with new, show
/// it, and it deletes itself when closed (WA_DeleteOnClose). On the first
/// launch ever it shows the welcome content by itself.
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsWindow(const SettingsServices &services, QWidget *parent = nullptr);
    ~SettingsWindow() override;

    static QString identifier() { return QStringLiteral("SettingsWindow"); }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};

} // namespace orvelle
