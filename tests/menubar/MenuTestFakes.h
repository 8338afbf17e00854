#pragma once

#include "base/Notifications.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "menubar/AppWindows.h"
#include "menubar/MenuBarManager.h"
#include "menubar/StartupJobs.h"
#include "menubar/WidgetOrderManager.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"

#include <QTemporaryDir>

namespace orvelle::test {

/// Everything that the shell asks of the world, in one list.
using Calls = QStringList;

class FakeJobs : public StartupJobs
{
public:
    explicit FakeJobs(Calls &calls) : m_calls(calls) {}

    QList<WidgetType> enabled;
    QList<WidgetType> menuBarOnly;
    QString syncTitle;

    bool isWidgetEnabled(WidgetType widget) const override { return enabled.contains(widget); }
    bool isMenuBarOnly(WidgetType widget) const override { return menuBarOnly.contains(widget); }
    void startMonitoring(WidgetType widget) override { m_calls += QStringLiteral("start ") + rawValue(widget); }
    void fetchAllFavicons() override { m_calls += QStringLiteral("favicons"); }
    void checkForUpdatesIfNeeded() override { m_calls += QStringLiteral("updates"); }
    void recordLaunch() override { m_calls += QStringLiteral("launch"); }
    void presentTipPromptIfNeeded() override { m_calls += QStringLiteral("tip"); }
    void checkSyncIfNeeded() override { m_calls += QStringLiteral("sync"); }
    void refreshWeatherIfNeeded() override { m_calls += QStringLiteral("weather"); }
    void checkClipboardNow() override { m_calls += QStringLiteral("clipboard"); }
    QString syncNeedsUser() const override { return syncTitle; }
    void startLiveWidgets() override { m_calls += QStringLiteral("live"); }
    void stopLiveWidgets() override { m_calls += QStringLiteral("still"); }
    void setupGlobalShortcut() override { m_calls += QStringLiteral("shortcut"); }
    void removeGlobalShortcut() override { m_calls += QStringLiteral("no shortcut"); }

private:
    Calls &m_calls;
};

class FakeWindows : public AppWindows
{
public:
    explicit FakeWindows(Calls &calls) : m_calls(calls) {}

    QUuid lastNote;

    void openSettings() override { m_calls += QStringLiteral("settings"); }
    void openSyncSettings() override { m_calls += QStringLiteral("sync settings"); }
    void openQuickAdd(const std::optional<QUuid> &) override { m_calls += QStringLiteral("quick add"); }
    void openNoteEditor(const QUuid &id) override
    {
        lastNote = id;
        m_calls += QStringLiteral("note");
    }
    void openTimerCustom() override { m_calls += QStringLiteral("timer"); }
    void closeSettings() override { m_calls += QStringLiteral("close settings"); }

private:
    Calls &m_calls;
};

/// A menu that the test opens, chooses from and dismisses.
class FakePresenter : public MenuPresenter
{
public:
    std::optional<Menu> menu;
    MenuPlacement placement;

    void present(const Menu &shown, const MenuPlacement &where, std::function<void(MenuAction)> closed) override
    {
        menu = shown;
        placement = where;
        m_closed = std::move(closed);
        m_closedByPress = false;
    }
    bool isOpen() const override { return menu.has_value(); }
    bool wasClosedByPress() const override { return m_closedByPress; }
    void close() override { userChooses({}); }
    QPoint pointerPosition() const override { return {300, 400}; }

    void userChooses(MenuAction action)
    {
        menu.reset();
        std::exchange(m_closed, {})(action);
    }

    /// The menu is gone, and whoever showed it is told by what is returned, as
    /// by the event loop.
    [[nodiscard]] std::function<void()> userChoosesSoon(const MenuAction &action)
    {
        menu.reset();
        return [closed = std::exchange(m_closed, {}), action] { closed(action); };
    }

    void userPressesBeside()
    {
        m_closedByPress = true;
        userChooses({});
    }

private:
    bool m_closedByPress = false;
    std::function<void(MenuAction)> m_closed;
};

/// The shell over fakes, its tree holding `links`.
struct Shell {
    explicit Shell(const LinkList &links = {})
    {
        for (const LinkItem &item : links)
            store.addLink(item);
        calls.clear();
    }

    Calls calls;
    QTemporaryDir folder;
    FakeUserDefaults defaults;
    FakeClock clock;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakeFileBookmarks bookmarks;
    FakeVolumes volumes;
    FakeDistantFiles distantFiles{bookmarks};
    FakePowerEvents power;
    FakeLinkStoreHooks hooks;
    SnapshotStore snapshots{folder.path(), clock};
    LinkStore store{
        {defaults, debugMode, notifications, clock, bookmarks, volumes, power, snapshots, hooks, &distantFiles}};
    WidgetOrderManager widgetOrder{defaults, debugMode, notifications};
    FakeAlerts alerts;
    FakeFolderChooser folderChooser;
    FakeWorkspace workspace;
    FakeStatusItem statusItem;
    FakePresenter presenter;
    FakeJobs jobs{calls};
    FakeWindows windows{calls};
    MenuBarManager manager{{store, defaults, notifications, clock, alerts, folderChooser, workspace, statusItem,
                            presenter, windows, jobs, widgetOrder,
                            [this](const QString &symbol, int, const QColor &) {
                                calls += QStringLiteral("paint ") + symbol;
                                return QImage();
                            },
                            [this] { calls += QStringLiteral("terminate"); }}};
};

inline LinkItem item(const char *name, LinkType type, const char *path = "")
{
    return LinkItem::make(QString::fromUtf8(name), QString::fromUtf8(path), type, Timestamp{1000});
}

inline LinkItem group(const char *name, const LinkList &children)
{
    LinkItem made = item(name, LinkType::Group);
    made.children = children;
    return made;
}

} // namespace orvelle::test
