#pragma once

#include "app/Folders.h"
#include "app/InactiveJobs.h"
#include "base/Notifications.h"
#include "base/Result.h"
#include "links/FaviconSettings.h"
#include "links/FaviconStore.h"
#include "links/LinkExchange.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "menubar/StoredExchangeSettings.h"
#include "menubar/WidgetOrderManager.h"
#include "platform/freedesktop/InodeFileBookmarks.h"
#include "platform/freedesktop/MountVolumes.h"
#include "platform/freedesktop/QtHttpClient.h"
#include "platform/freedesktop/SqliteUserDefaults.h"
#include "platform/freedesktop/SystemClock.h"
#include "services/DebugModeManager.h"

namespace orvelle {

/// What the link store would ask of icons and sync, in a version without them.
class InactiveLinkStoreHooks : public LinkStoreHooks
{
public:
    void hydrateFavicons(LinkList &) override {}
    void cleanupOrphanFavicons(const LinkList &) override {}
    void loadSyncState() override {}
    void scheduleAutoSync() override {}
    void systemDidWake() override {}
};

/// The store's needs of site icons; those of sync are still nobody's.
class SiteIconHooks : public InactiveLinkStoreHooks
{
public:
    explicit SiteIconHooks(FaviconStore &icons) : m_icons(icons) {}
    void hydrateFavicons(LinkList &links) override { m_icons.hydrateFaviconsFromDisk(links); }
    void cleanupOrphanFavicons(const LinkList &) override { m_icons.cleanupOrphanFavicons(); }

private:
    FaviconStore &m_icons;
};

/// Of what start-up asks for, what this version does.
class CoreJobs : public InactiveJobs
{
public:
    explicit CoreJobs(FaviconStore &icons) : m_icons(icons) {}
    void fetchAllFavicons() override { m_icons.fetchAllFavicons(); }

private:
    FaviconStore &m_icons;
};

/// The settings and the tree with what they stand on: what the running
/// application and a command on its own have in common. Needs no display and
/// no bus.
class CoreServices
{
public:
    /// `powerEvents` outlives this object.
    CoreServices(const Folders &folders, SystemClock &clock, std::unique_ptr<SqliteUserDefaults> defaults,
                 PowerEvents &powerEvents);

    Folders folders;
    SystemClock &clock;
    std::unique_ptr<SqliteUserDefaults> defaults;
    Notifications notifications;
    DebugModeManager debugMode;
    InodeFileBookmarks bookmarks;
    MountVolumes volumes;
    FaviconSettings favicons;
    SnapshotStore snapshots;
    QtHttpClient http;
    FaviconStore siteIcons;
    SiteIconHooks hooks;
    CoreJobs jobs;
    LinkStore links;
    WidgetOrderManager widgetOrder;
    StoredExchangeSettings exchangeSettings;
    LinkExchange exchange;
};

/// Why the settings could not be opened, in one sentence for the user.
QString openErrorText(const DefaultsOpenError &error);
/// Why something could not be stored, in one sentence for the user.
QString writeErrorText(const DefaultsError &error);

} // namespace orvelle
