#pragma once

#include "menubar/GlobalShortcut.h"
#include "menubar/StartupJobs.h"

#include <QHash>

#include <functional>

class QWidget;

namespace orvelle {

/// What start-up and the menu ask of the widgets, in a table by widget, of
/// the services and of the global shortcut; all else goes on to who did it
/// before. Main thread.
class WidgetJobs : public StartupJobs
{
public:
    /// What one widget can do. Without `start`, `startLive` or `stopLive` there
    /// is nothing to be done.
    struct Widget {
        std::function<bool()> isEnabled;
        std::function<bool()> isMenuBarOnly;
        std::function<void()> start;
        std::function<void()> startLive;
        std::function<void()> stopLive;
        /// The row in the menu, as a child of `parent`.
        std::function<QWidget *(QWidget *parent)> makeRow;
        /// Before the menu opens; without it there is nothing to catch up with.
        std::function<void()> catchUp = {};
    };

    /// What start-up asks of the services; nothing where one is empty.
    struct Services {
        std::function<void()> checkForUpdatesIfNeeded;
        std::function<void()> recordLaunch;
        std::function<void()> presentTipPromptIfNeeded;
    };

    WidgetJobs(StartupJobs &others, GlobalShortcut &shortcut) : m_others(others), m_shortcut(shortcut) {}

    void add(WidgetType type, const Widget &widget) { m_widgets.insert(type, widget); }
    void setServices(Services services) { m_services = std::move(services); }
    /// Null for a widget that is not in the table.
    QWidget *makeRow(WidgetType type, QWidget *parent) const;

    bool isWidgetEnabled(WidgetType type) const override;
    bool isMenuBarOnly(WidgetType type) const override;
    void startMonitoring(WidgetType type) override;
    void startLiveWidgets() override;
    void stopLiveWidgets() override;

    void fetchAllFavicons() override { m_others.fetchAllFavicons(); }
    void checkForUpdatesIfNeeded() override { run(m_services.checkForUpdatesIfNeeded); }
    void recordLaunch() override { run(m_services.recordLaunch); }
    void presentTipPromptIfNeeded() override { run(m_services.presentTipPromptIfNeeded); }
    void checkSyncIfNeeded() override { m_others.checkSyncIfNeeded(); }
    QString syncNeedsUser() const override { return m_others.syncNeedsUser(); }
    void refreshWeatherIfNeeded() override;
    void checkClipboardNow() override;
    void setupGlobalShortcut() override { m_shortcut.setup(); }
    void removeGlobalShortcut() override { m_shortcut.remove(); }

private:
    static void run(const std::function<void()> &job)
    {
        if (job)
            job();
    }

    StartupJobs &m_others;
    GlobalShortcut &m_shortcut;
    QHash<WidgetType, Widget> m_widgets;
    Services m_services;
};

} // namespace orvelle
