#include "app/AppDelegate.h"

#include "base/Result.h"
#include "base/Text.h"
#include "links/exchange/ExchangeFile.h"
#include "links/exchange/LinkExchange.h"
#include "menubar/AppWindows.h"
#include "menubar/MenuBarManager.h"
#include "menubar/StartupJobs.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/PowerEvents.h"
#include "platform/UserDefaults.h"
#include "ui/common/ExchangeImporter.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcAppDelegate, "AppDelegate", QtInfoMsg)

constexpr WidgetType startOrder[] = {WidgetType::Weather, WidgetType::SystemInfo, WidgetType::Network,
                                     WidgetType::Clipboard, WidgetType::Calendar};

QString skipQuitConfirmationKey()
{
    return QStringLiteral("SkipQuitConfirmation");
}

/// The document's bytes, else why they cannot be had.
Result<QByteArray, QString> readDocument(const QString &path)
{
    const auto bytes = readExchangeFile(path);
    if (!bytes)
        return bytes.error().sentence;
    // Only what can be seen at once: whoever imports it reads it anyway.
    const QByteArrayView content = QByteArrayView(*bytes).trimmed();
    if (!content.startsWith('{') || !content.endsWith('}'))
        return importErrorText({ImportError::Kind::Undecodable, QStringLiteral("the root")});
    return *bytes;
}

} // namespace

AppDelegate::AppDelegate(const Services &services, QObject *parent) : QObject(parent), m_services(services) {}

void AppDelegate::applicationDidFinishLaunching()
{
    StartupJobs &jobs = m_services.jobs;
    Clock &clock = m_services.clock;
    m_services.menuBar.setupMenuBar();
    for (const WidgetType widget : startOrder) {
        if (jobs.isWidgetEnabled(widget))
            jobs.startMonitoring(widget);
    }
    clock.after(faviconDelay, this, [&jobs] { jobs.fetchAllFavicons(); });
    clock.after(updateDelay, this, [&jobs] { jobs.checkForUpdatesIfNeeded(); });
    jobs.recordLaunch();
    clock.after(tipDelay, this, [&jobs] { jobs.presentTipPromptIfNeeded(); });
    connect(&m_services.powerEvents, &PowerEvents::willPowerOff, this, [this] { m_isSystemShutdown = true; });
}

void AppDelegate::openFiles(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (QFileInfo(path).suffix().toLower() == u"ovexport")
            openDocument(path);
    }
}

void AppDelegate::openDocument(const QString &path)
{
    m_services.look(path, [self = QPointer<AppDelegate>(this), path](FileBookmarks &) -> DistantFiles::Delivery {
        return [self, name = QFileInfo(path).fileName(), data = readDocument(path)] {
            if (self && data)
                self->askHowToImport(name, *data);
            else if (self)
                self->reportUnreadable(data.error());
        };
    });
}

void AppDelegate::askHowToImport(const QString &fileName, const QByteArray &data)
{
    m_services.activateApp();
    Alert alert;
    alert.message = text("import.fileOpenTitle"_text);
    alert.informativeText = text("import.fileOpenMessage %@"_text, fileName);
    alert.buttons = {text("import.replaceAll"_text), text("import.merge"_text), text("import.sync"_text),
                     text("sheet.cancel"_text)};
    alert.defaultButton = 1; // adds, and replaces nothing
    ExchangeImporter &importer = m_services.importer;
    m_services.alerts.show(alert, [self = QPointer<AppDelegate>(this), &importer, data](int button) {
        if (!self)
            return;
        if (button == 0)
            importer.performFileImport(data, ExchangeImporter::Mode::ReplaceAll);
        else if (button == 1)
            importer.performFileImport(data, ExchangeImporter::Mode::Merge);
        else if (button == 2)
            importer.performFileSync(data);
    });
}

void AppDelegate::reportUnreadable(const QString &reason)
{
    qCInfo(lcAppDelegate, "A document handed over could not be read");
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("import.title"_text);
    alert.informativeText = text("error.import %@"_text, reason);
    alert.buttons = {text("sheet.ok"_text)};
    m_services.alerts.show(alert);
}

void AppDelegate::applicationShouldTerminate(const Decide &decide)
{
    UserDefaults &defaults = m_services.defaults;
    if (m_isSystemShutdown)
        return decide(true);
    if (defaults.get<bool>(skipQuitConfirmationKey()).value_or(false)) {
        // Consumed at once, so that it cannot answer a later question.
        static_cast<void>(defaults.remove(skipQuitConfirmationKey()));
        return saveBeforeQuit(decide);
    }
    if (!defaults.get<bool>(QStringLiteral("ConfirmBeforeQuit")).value_or(true))
        return saveBeforeQuit(decide);
    if (m_asking)
        return decide(false);
    confirmQuit(decide);
}

void AppDelegate::confirmQuit(const Decide &decide)
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("quit.confirmTitle"_text);
    alert.informativeText = text("quit.confirmMessage"_text);
    alert.buttons = {text("quit.confirm"_text), text("quit.closeWindow"_text)};
    ask(alert, [this, decide](int button) {
        if (button == 0)
            return saveBeforeQuit(decide);
        m_services.windows.closeSettings();
        decide(false);
    });
}

void AppDelegate::saveBeforeQuit(const Decide &decide)
{
    if (m_services.save())
        return decide(true);
    if (m_asking)
        return decide(false);
    Alert alert;
    alert.style = Alert::Style::Critical;
    alert.message = text("quit.unsavedTitle"_text);
    alert.informativeText = text("quit.unsavedMessage"_text);
    alert.buttons = {text("quit.unsavedStay"_text), text("quit.unsavedQuit"_text)};
    alert.escapeButton = 0;
    ask(alert, [decide](int button) { decide(button == 1); });
}

void AppDelegate::ask(const Alert &alert, const std::function<void(int)> &answered)
{
    m_asking = true;
    m_services.activateApp();
    m_services.alerts.show(alert, [self = QPointer<AppDelegate>(this), answered](int button) {
        if (!self)
            return;
        self->m_asking = false;
        answered(button);
    });
}

} // namespace orvelle
