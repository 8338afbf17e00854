#pragma once

#include "links/LinkItem.h"
#include "menubar/Menu.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace orvelle {

class Clock;
class DebugModeManager;
class LinkExchange;
class LinkStore;
class SnapshotStore;
class SyncControl;
class UserDefaults;
class Volumes;

/// What a command can ask of the running application.
class AppControl
{
public:
    virtual ~AppControl() = default;

    virtual void toggleMenu() = 0;
    virtual void openSettings() = 0;
    /// With an address filled in unless it is empty.
    virtual void openQuickAdd(const QString &address) = 0;
    virtual void openFiles(const QStringList &paths) = 0;
    /// Ends the application after the answer to the command has left.
    virtual void quitSoon() = 0;
    /// This run's own log lines, oldest first.
    virtual QStringList recentLog() const = 0;
};

/// What commands work on, inside the running application or on their own.
struct CommandContext {
    LinkStore &links;
    LinkExchange &exchange;
    UserDefaults &defaults;
    SnapshotStore &snapshots;
    DebugModeManager &debugMode;
    Volumes &volumes;
    Clock &clock;
    std::function<Menu()> buildMenu;
    /// Opens an item as the menu does; false when it leads nowhere.
    std::function<bool(const LinkItem &)> open;
    QString workingDirectory;  ///< the caller's, absolute
    AppControl *app = nullptr; ///< null without a running application
    /// Set up when first asked for.
    std::function<SyncControl &()> sync = {};
    /// Why an item is not opened by a command that cannot ask; absent when it
    /// may. Only without a running application.
    std::function<std::optional<QString>(const LinkItem &)> refusalToOpen = {};
};

} // namespace orvelle
