#include "app/CoreServices.h"

#include "app/Version.h"
#include "base/Text.h"

namespace orvelle {

CoreServices::CoreServices(const Folders &userFolders, SystemClock &systemClock,
                           std::unique_ptr<SqliteUserDefaults> openedDefaults, PowerEvents &powerEvents,
                           Patience patience)
    : folders(userFolders),
      clock(systemClock),
      defaults(std::move(openedDefaults)),
      debugMode(*defaults, notifications),
      promptBookmarks(anyBookmarks, volumes),
      bookmarks(patience == Patience::GoesOn ? static_cast<FileBookmarks &>(promptBookmarks) : anyBookmarks),
      distantFiles(patience == Patience::GoesOn ? std::make_optional<DistantFileThreads>() : std::nullopt),
      favicons(*defaults, debugMode, notifications),
      snapshots(folders.snapshots, clock),
      http(clock, "Orvelle/" + versionText().toLatin1()),
      siteIcons({favicons, http, clock, folders.data + QStringLiteral("/Favicons")}),
      hooks(siteIcons),
      jobs(siteIcons),
      links({*defaults, debugMode, notifications, clock, bookmarks, volumes, powerEvents, snapshots, hooks,
             distantFiles ? &*distantFiles : nullptr}),
      importMarks(links, *defaults, debugMode),
      widgetOrder(*defaults, debugMode, notifications),
      exchangeSettings({*defaults, debugMode, notifications, widgetOrder},
                       {versionText(), buildText(), QSysInfo::machineHostName()}),
      exchange(links, exchangeSettings, bookmarks, clock)
{
    siteIcons.attach(links);
}

SyncServices::Services syncServicesOf(CoreServices &core)
{
    return {{core.links, core.exchange, core.exchangeSettings, core.bookmarks, *core.defaults, core.debugMode,
             core.notifications, core.clock, core.snapshots, core.secrets},
            core.http,
            core.volumes,
            core.folders.cache + QStringLiteral("/webdav"),
            QSysInfo::machineHostName()};
}

QString openErrorText(const DefaultsOpenError &error)
{
    switch (error.kind) {
    case DefaultsOpenError::Kind::NewerSchema:
        return text("error.openNewer %@"_text, error.path);
    case DefaultsOpenError::Kind::Inaccessible:
        return text("error.openInaccessible %@"_text, error.path) + u' ' + error.detail;
    case DefaultsOpenError::Kind::Damaged:
        return text("error.openDamaged %@"_text, error.path) + u' ' + error.detail;
    case DefaultsOpenError::Kind::Busy:
        return text("error.openBusy %@"_text, error.path);
    case DefaultsOpenError::Kind::Other:
        return text("error.openOther %@"_text, error.path) + u' ' + error.detail;
    }
    Q_UNREACHABLE();
}

QString writeErrorText(const DefaultsError &error)
{
    switch (error.kind) {
    case DefaultsError::Kind::ReadOnly:
        return text("error.saveReadOnly"_text);
    case DefaultsError::Kind::DiskFull:
        return text("error.saveDiskFull"_text);
    case DefaultsError::Kind::Busy:
    case DefaultsError::Kind::Conflict:
        return text("error.saveBusy"_text);
    case DefaultsError::Kind::Other:
        return text("error.saveOther %@"_text, error.detail);
    }
    Q_UNREACHABLE();
}

} // namespace orvelle
