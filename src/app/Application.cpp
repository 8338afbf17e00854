#include "app/Application.h"

#include "app/Version.h"
#include "app/cli/CommandLine.h"
#include "base/Text.h"
#include "platform/WindowSystem.h"
#include "ui/common/Icons.h"

#include <QApplication>
#include <QLoggingCategory>

#include <algorithm>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcApplication, "Application", QtInfoMsg)

/// Lets the answer to the command that asked for the end leave first.
constexpr std::chrono::milliseconds answerDelay{20};

/// From the session manager's first word to its last, or to somebody's No.
constexpr std::chrono::minutes longestSessionEnd{1};

} // namespace

Application::Application(const Surroundings &surroundings, const Folders &folders, SqliteUserDefaults::Opened opened)
    : m_surroundings(surroundings),
      m_damagedCopy(opened.damagedCopy),
      m_notWritable(opened.notWritable),
      m_colorScheme(surroundings.sessionBus),
      m_theme(m_colorScheme),
      m_powerEvents(surroundings.sessionBus),
      m_core(folders, surroundings.clock, std::move(opened.defaults), m_powerEvents, CoreServices::Patience::GoesOn),
      m_workspace(surroundings.sessionBus),
      m_statusItem(surroundings.clock, m_colorScheme, surroundings.sessionBus),
      m_hotKeys(desktopHotKeys(surroundings.clock, QGuiApplication::desktopFileName(),
                               text("shortcut.portalDescription"_text))),
      m_shortcut({*m_core.defaults, m_core.notifications, *m_hotKeys}),
      m_widgets(widgetSurroundings()),
      m_services(
          {*m_core.defaults, m_core.clock, m_core.http, surroundings.alerts, m_workspace, &Windows::bringToFront}),
      m_sync(syncServicesOf(m_core)),
      m_weather({*m_core.defaults, m_core.debugMode, m_core.notifications, m_powerEvents, m_core.clock, m_core.http,
                 m_workspace, [this] { m_presenter.close(); }}),
      m_presenter(&childEntries),
      m_importer({m_core.links, m_core.exchange, m_core.exchangeSettings, *m_core.defaults, surroundings.alerts,
                  m_core.clock}),
      m_windows(windowServices()),
      m_menuBar(menuBarServices()),
      m_timerToolTip(m_widgets.timer, m_statusItem, m_core.clock, m_core.notifications),
      m_delegate({m_menuBar, m_widgets.jobs, *m_core.defaults, m_core.clock, surroundings.alerts, m_windows,
                  m_powerEvents, m_importer,
                  [this](const QString &path, const DistantFiles::Look &look) { m_core.links.look(path, this, look); },
                  [this] { return save(); }, &Windows::bringToFront}),
      m_storageAlerts(*m_core.defaults, m_core.links, m_core.clock, surroundings.alerts)
{
    m_core.hooks.attach(&m_sync.engine());
    m_core.jobs.attach(&m_sync.engine());
    m_services.addTo(m_widgets.jobs);
    m_weather.addTo(m_widgets.jobs, m_widgets.sections);
    m_presenter.setOverlayShell(&m_layerShell);
    m_presenter.setWidgetRowFactory(
        [this](WidgetType type, QWidget *parent) { return m_widgets.jobs.makeRow(type, parent); });
    offerTrayMenu();
}

void Application::offerTrayMenu()
{
    if (!isOnWayland() || m_layerShell.isAvailable())
        return;
    m_trayMenu.emplace(TrayMenu::Services{m_core.links, m_core.widgetOrder, m_widgets.jobs, m_core.notifications,
                                          m_core.clock,
                                          [this](const MenuAction &action) { m_menuBar.perform(action); }});
    m_trayMenu->giveTo(m_statusItem);
}

Application::~Application()
{
    m_core.jobs.attach(nullptr);
    m_core.hooks.attach(nullptr);
}

WidgetServices::Surroundings Application::widgetSurroundings()
{
    return {*m_core.defaults,
            m_core.debugMode,
            m_core.notifications,
            m_powerEvents,
            m_core.clock,
            m_surroundings.alerts,
            m_core.jobs,
            m_shortcut,
            m_surroundings.sessionBus,
            &Windows::bringToFront,
            [this] { m_presenter.close(); },
            m_workspace,
            m_folderChooser};
}

MenuBarManager::Services Application::menuBarServices()
{
    return {m_core.links,          *m_core.defaults,
            m_core.notifications,  m_core.clock,
            m_surroundings.alerts, m_folderChooser,
            m_workspace,           m_statusItem,
            m_presenter,           m_windows,
            m_widgets.jobs,        m_core.widgetOrder,
            symbolImage,           [this] { requestQuit(); },
            &m_core.importMarks};
}

Windows::Services Application::windowServices()
{
    return {{m_core.links, *m_core.defaults, m_core.notifications, m_core.clock, m_core.debugMode,
             [this](const QUrl &url) { return m_menuBar.openAddress(url); }},
            {m_core.links, m_core.volumes, m_core.clock, m_widgets.pasteboard()},
            [this](AppWindows &windows) { return settingsServices(windows); },
            [this](qint64 seconds) { m_widgets.timer.start(seconds); }};
}

SettingsServices Application::settingsServices(AppWindows &windows)
{
    return {m_core.links,
            *m_core.defaults,
            m_core.notifications,
            m_core.widgetOrder,
            m_core.debugMode,
            m_core.snapshots,
            m_core.favicons,
            m_importer,
            windows,
            m_surroundings.alerts,
            m_core.clock,
            m_core.volumes,
            [this](const LinkItem &item) { m_menuBar.openLink(item); },
            [this](const QString &path) { m_workspace.reveal(path); },
            [this](const QString &folder) { m_workspace.showFolder(folder); },
            {versionText(), buildText(), m_core.defaults->path(), m_core.folders.data, installedManual()},
            m_widgets.sections,
            &m_shortcut,
            &m_services.updates,
            &m_services.launchAtLogin,
            &m_sync,
            &m_folderChooser};
}

void Application::start()
{
    m_delegate.applicationDidFinishLaunching();
    m_services.launchAtLogin.followProgram();
    m_colorScheme.start();
    m_core.links.restoreRootAccess();
    m_core.importMarks.dropGone();
    m_core.defaults->startWatching();
    m_sync.open();
    m_powerEvents.start();
    // After the delegate, which notes that the system ends.
    connect(&m_powerEvents, &PowerEvents::willPowerOff, this, &Application::saveAndExit);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &Application::sessionMayEnd, Qt::DirectConnection);
    reportHowSettingsOpened();
    qCInfo(lcApplication, "Orvelle %s started with %lld top-level items", qPrintable(versionText()),
           static_cast<long long>(m_core.links.links().size()));
}

void Application::reportHowSettingsOpened()
{
    if (m_damagedCopy)
        m_storageAlerts.damagedSettingsMovedTo(*m_damagedCopy);
    if (m_notWritable)
        m_storageAlerts.writeFailed(*m_notWritable);
    // The tree was loaded before anybody could listen. A command of another
    // process may have met these bytes first and kept them; it told nobody here.
    if (const auto key = m_core.links.keptUnreadableAt())
        m_storageAlerts.linksSetAside(*key);
}

void Application::openSettings()
{
    m_windows.openSettings();
}

void Application::openQuickAdd(const QString &address)
{
    m_windows.openQuickAdd(address);
}

void Application::openFiles(const QStringList &paths)
{
    m_delegate.openFiles(paths);
}

void Application::toggleMenu()
{
    m_menuBar.toggleMenuAtPointer();
}

void Application::quitSoon()
{
    m_core.clock.after(answerDelay, this, [this] { m_menuBar.quitApp(); });
}

void Application::performAction(const QString &name)
{
    if (name == u"toggle")
        toggleMenu();
    else if (name == u"settings")
        openSettings();
    else if (name == u"quick-add")
        openQuickAdd(QString());
    else
        qCInfo(lcApplication, "An unknown action was asked for");
}

CommandContext Application::commandContext(const QString &workingDirectory)
{
    return {m_core.links,
            m_core.exchange,
            *m_core.defaults,
            m_core.snapshots,
            m_core.debugMode,
            m_core.volumes,
            m_core.clock,
            [this] { return m_menuBar.buildMainMenu(); },
            [this](const LinkItem &item) { return m_menuBar.openLink(item); },
            workingDirectory,
            this,
            [this]() -> SyncControl & { return m_sync; }};
}

void Application::runCommand(const QStringList &arguments, const QString &workingDirectory, const CommandAnswer &answer)
{
    const ParsedCommandLine parsed = parseCommandLine(arguments, workingDirectory);
    if (const auto *result = std::get_if<CommandResult>(&parsed))
        return answer(*result);
    if (const auto *call = std::get_if<CommandCall>(&parsed)) {
        CommandContext context = commandContext(workingDirectory);
        return orvelle::runCommand(*call, context, answer);
    }
    if (const auto *files = std::get_if<OpenFiles>(&parsed))
        openFiles(files->paths);
    else
        openSettings();
    answer(CommandResult::done());
}

/// Another program can still call the end off. Otherwise the session manager
/// asks for it in a moment.
void Application::sessionMayEnd()
{
    if (!save())
        qCCritical(lcApplication, "The last changes could not be saved before the session's end");
    m_sessionMayEnd = m_core.clock.singleShot(longestSessionEnd, [this] { m_sessionMayEnd.reset(); });
}

void Application::requestQuit()
{
    if (m_sessionMayEnd)
        return m_powerEvents.sessionEnds();
    m_delegate.applicationShouldTerminate([this](bool terminate) {
        if (terminate)
            saveAndExit();
    });
}

bool Application::endUnnoticed()
{
    // What a message says can be said again, and settings are stored as they are made.
    const auto isInUse = [](const QWidget *window) {
        const bool isSettings = window->objectName() == QStringLiteral("SettingsWindow");
        const bool mayGo = window->objectName() == QStringLiteral("Alert") || (isSettings && !window->isActiveWindow());
        return window->isVisible() && !mayGo;
    };
    if (m_widgets.timer.isRunning() || std::ranges::any_of(QApplication::topLevelWidgets(), isInUse) || !save())
        return false;
    qCInfo(lcApplication, "Starting again, on another session bus");
    saveAndExit();
    return true;
}

bool Application::save()
{
    m_windows.saveTyped();
    return !m_core.links.hasUnsavedChanges() || m_core.links.saveLinks();
}

void Application::saveAndExit()
{
    if (!save())
        qCCritical(lcApplication, "The last changes could not be saved at the end");
    m_powerEvents.releaseInhibitor();
    // Not quit(): that asks every window, and one of them could refuse.
    QCoreApplication::exit(0);
}

} // namespace orvelle
