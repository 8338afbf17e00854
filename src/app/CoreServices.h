#pragma once

#include "app/Folders.h"
#include "app/InactiveJobs.h"
#include "app/SyncServices.h"
#include "base/Notifications.h"
#include "base/Result.h"
#include "links/LinkStore.h"
#include "links/PromptBookmarks.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ImportMarks.h"
#include "links/exchange/LinkExchange.h"
#include "links/favicons/FaviconSettings.h"
#include "links/favicons/FaviconStore.h"
#include "menubar/StoredExchangeSettings.h"
#include "menubar/WidgetOrderManager.h"
#include "platform/freedesktop/DistantFileThreads.h"
#include "platform/freedesktop/InodeFileBookmarks.h"
#include "platform/freedesktop/LibsecretStore.h"
#include "platform/freedesktop/MountVolumes.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/defaults/SqliteUserDefaults.h"
#include "platform/freedesktop/http/QtHttpClient.h"
#include "services/DebugModeManager.h"

namespace orvelle {

/// What the link store asks of the site icons and, where there is one, of the
/// synchronisation.
class StoreHooks : public LinkStoreHooks
{
public:
    explicit StoreHooks(FaviconStore &icons) : m_icons(icons) {}

    /// From here on; null for none. It outlives this, or is taken away again.
    void attach(CloudSync *sync) { m_sync = sync; }

    void hydrateFavicons(LinkList &links) override { m_icons.hydrateFaviconsFromDisk(links); }
    void cleanupOrphanFavicons(const LinkList &) override { m_icons.cleanupOrphanFavicons(); }
    void loadSyncState() override { ask(&CloudSync::loadSyncState); }
    void scheduleAutoSync() override { ask(&CloudSync::scheduleAutoSync); }
    void systemDidWake() override { ask(&CloudSync::handleSystemDidWake); }
    void syncableSettingsDidChange() override { ask(&CloudSync::syncableSettingsDidChange); }

private:
    void ask(void (CloudSync::*what)())
    {
        if (m_sync)
            (m_sync->*what)();
    }

    FaviconStore &m_icons;
    CloudSync *m_sync = nullptr;
};

/// Of what start-up asks for, what is no widget and no service of its own.
class CoreJobs : public InactiveJobs
{
public:
    explicit CoreJobs(FaviconStore &icons) : m_icons(icons) {}

    /// As StoreHooks::attach().
    void attach(CloudSync *sync) { m_sync = sync; }

    void fetchAllFavicons() override { m_icons.fetchAllFavicons(); }
    void checkSyncIfNeeded() override
    {
        if (m_sync)
            m_sync->checkSyncIfNeeded();
    }
    QString syncNeedsUser() const override { return m_sync ? syncNeedsUserTitle(m_sync->status()) : QString(); }

private:
    FaviconStore &m_icons;
    CloudSync *m_sync = nullptr;
};

/// The settings and the tree with what they stand on: what the running
/// application and a command on its own have in common. Needs no display and
/// no bus.
class CoreServices
{
public:
    /// What else is done while a volume does not answer: a command has nothing
    /// to do but wait.
    enum class Patience { WaitsForVolumes, GoesOn };

    /// `powerEvents` outlives this object.
    CoreServices(const Folders &folders, SystemClock &clock, std::unique_ptr<SqliteUserDefaults> defaults,
                 PowerEvents &powerEvents, Patience patience = Patience::WaitsForVolumes);

    Folders folders;
    SystemClock &clock;
    std::unique_ptr<SqliteUserDefaults> defaults;
    Notifications notifications;
    DebugModeManager debugMode;
    MountVolumes volumes;
    InodeFileBookmarks anyBookmarks;
    PromptBookmarks promptBookmarks;
    FileBookmarks &bookmarks; ///< one of the two
    std::optional<DistantFileThreads> distantFiles;
    FaviconSettings favicons;
    SnapshotStore snapshots;
    QtHttpClient http;
    FaviconStore siteIcons;
    StoreHooks hooks;
    CoreJobs jobs;
    LinkStore links;
    ImportMarks importMarks;
    WidgetOrderManager widgetOrder;
    StoredExchangeSettings exchangeSettings;
    LinkExchange exchange;
    LibsecretStore secrets;
};

/// What keeps these services' tree in step with other machines.
SyncServices::Services syncServicesOf(CoreServices &core);

/// Why the settings could not be opened, in one sentence for the user.
QString openErrorText(const DefaultsOpenError &error);
/// Why something could not be stored, in one sentence for the user.
QString writeErrorText(const DefaultsError &error);

} // namespace orvelle
