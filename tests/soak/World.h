#pragma once

#include "menubar/MenuTestFakes.h"
#include "services/TipManager.h"
#include "services/UpdateManager.h"
#include "support/SyncMachine.h"
#include "widgets/EveryWidget.h"

namespace orvelle::test {

/// What the menu asks of the widgets and services, as the application answers.
class SoakJobs : public FakeJobs
{
public:
    SoakJobs(Calls &calls, EveryWidget &widgets, SyncMachine &machine, UpdateManager &updates)
        : FakeJobs(calls), m_widgets(widgets), m_machine(machine), m_updates(updates)
    {
        enabled = {WidgetType::Weather, WidgetType::Calendar, WidgetType::Clipboard,
                   WidgetType::Timer,   WidgetType::Network,  WidgetType::SystemInfo};
    }
    void checkForUpdatesIfNeeded() override { m_updates.checkForUpdatesIfNeeded(); }
    void checkSyncIfNeeded() override { m_machine.sync().checkSyncIfNeeded(); }
    void refreshWeatherIfNeeded() override { m_widgets.weather.refreshIfNeeded(); }
    void checkClipboardNow() override { m_widgets.clipboard.checkNow(); }
    void startLiveWidgets() override
    {
        m_widgets.calendar.refreshIfNeeded();
        m_widgets.system.startLiveRefresh();
        m_widgets.network.startLiveRefresh();
    }
    void stopLiveWidgets() override
    {
        m_widgets.system.stopLiveRefresh();
        m_widgets.network.stopLiveRefresh();
    }

private:
    EveryWidget &m_widgets;
    SyncMachine &m_machine;
    UpdateManager &m_updates;
};

/// A user's two machines for a long time: this one with the whole application
/// but for what draws, and another one that is on for a minute an hour.
class SoakWorld
{
public:
    SoakWorld()
    {
        place.keepsHistory = false;
        std::ignore = mine.defaults.write(QStringLiteral("UpdateServiceHost"), QStringLiteral("updates.example"));
        http.answers(QStringLiteral("*"), 200, R"({"version":"1.0","build":"1","url":"https://orvelle.example/"})");
        manager.setupMenuBar();
        for (int i = 0; i < linkCount; ++i)
            addLink(mine);
        mine.sync().startSyncFileMonitoring();
        other.stop();
        widgets.pass(5min); // until there is a shared document
    }

    /// A minute of a day, from midnight on.
    void liveThrough(int minute)
    {
        const int hour = minute / 60;
        if (minute % 60 == 0)
            setOnline(hour != 10 && hour != 11);
        if (hour >= 8 && minute % 3 == 0)
            edit(mine);
        if (isOtherOn(minute))
            beginOther();
        openMenu();
        widgets.liveThrough(minute);
        if (minute == 14 * 60 + 3)
            mine.power.systemWakes();
        if (minute == 9 * 60)
            checkDaily();
        if (isOtherOn(minute))
            other.stop();
        http.deliverAll();
        forget();
    }

    /// The minutes in which the other machine runs. What it logs cannot be told
    /// from what this one does.
    static bool isOtherOn(int minute) { return minute >= 8 * 60 && minute % 60 == 7; }
    /// Until both have the same.
    void settle()
    {
        beginOther(false);
        for (int i = 0; i < 10; ++i)
            widgets.pass(60s);
    }

    /// So many that what goes within an hour is no suspicious change.
    static constexpr int linkCount = 300;

    EveryWidget widgets;
    FakeClock &clock = widgets.world.clock;
    FakeCloudPlace place{clock, FakeCloudPlace::Kind::SyncedFolder};
    SyncMachine mine{clock, place, QStringLiteral("mine")};
    SyncMachine other{clock, place, QStringLiteral("other")};
    int openings = 0;
    int edits = 0;

private:
    void setOnline(bool online)
    {
        for (SyncMachine *each : {&mine, &other})
            each->container.setOnline(online);
    }
    void addLink(SyncMachine &machine)
    {
        const QString name = QStringLiteral("link %1").arg(++edits);
        machine.links().addLink(
            LinkItem::make(name, QStringLiteral("https://e.example/") + name, LinkType::Url, machine.now()));
    }
    /// The tree stays as large as it is.
    void edit(SyncMachine &machine)
    {
        addLink(machine);
        LinkStore &links = machine.links();
        while (links.links().size() > linkCount)
            links.removeLink(links.links().constFirst().id);
        LinkItem changed = links.links().at(edits % links.links().size());
        changed.name += u'x';
        links.updateLink(changed);
        if (edits % 10 == 0)
            std::ignore = links.undo();
    }
    void openMenu()
    {
        ++openings;
        manager.toggleMenuAtPointer();
        clock.advance(std::chrono::milliseconds(500));
        manager.toggleMenuAtPointer();
        clock.advance(std::chrono::milliseconds(500));
    }
    void beginOther(bool isToEdit = true)
    {
        other.start();
        other.sync().startSyncFileMonitoring();
        widgets.pass(30s);
        if (isToEdit)
            edit(other);
    }
    void checkDaily()
    {
        updates.checkForUpdatesIfNeeded();
        tips.recordLaunch();
        tips.presentTipPromptIfNeeded();
    }
    /// What fakes note down for tests that look at it.
    void forget()
    {
        widgets.forgetWhatWasAsked();
        widgets.geocoder.asked.clear();
        http.requests.clear();
        calls.clear();
        for (FakeAlerts *each : {&alerts, &widgets.world.alerts}) {
            while (each->unanswered() > 0)
                each->userChooses(0);
            each->shown.clear();
        }
        workspace.opened.clear();
        workspace.focusRequests.clear();
        for (SyncMachine *each : {&mine, &other}) {
            each->container.downloads.clear();
            each->container.archived.clear();
            each->bookmarks.accessed.clear();
            each->bookmarks.stopped.clear();
        }
    }

    Calls calls;
    FakeHttp http;
    FakeAlerts alerts;
    FakeWorkspace workspace;
    FakeFolderChooser folderChooser;
    FakeStatusItem statusItem;
    FakePresenter presenter;
    FakeWindows windows{calls};
    UpdateManager updates{{mine.defaults, clock, http, alerts, workspace, [] {}}, {u"1.0"_s, u"1"_s, {}}};
    TipManager tips{{mine.defaults, clock, alerts, workspace, [] {}}, QStringLiteral("https://tips.example/")};
    WidgetOrderManager widgetOrder{mine.defaults, mine.debugMode(), mine.notifications()};
    SoakJobs jobs{calls, widgets, mine, updates};
    MenuBarManager manager{{mine.links(), mine.defaults, mine.notifications(), clock, alerts, folderChooser, workspace,
                            statusItem, presenter, windows, jobs, widgetOrder,
                            [](const QString &, int, const QColor &) { return QImage(); }, [] {}}};
};

} // namespace orvelle::test
