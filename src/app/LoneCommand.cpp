#include "app/LoneCommand.h"

#include "app/CoreServices.h"
#include "base/Text.h"
#include "links/exchange/ExchangeDocument.h"
#include "menubar/LinkOpener.h"
#include "menubar/MenuBuilder.h"
#include "platform/PowerEvents.h"
#include "platform/freedesktop/GioWorkspace.h"

#include <QEventLoop>

namespace orvelle {

namespace {

/// A command is over before the machine can go to sleep.
class NoPowerEvents : public PowerEvents
{
public:
    void start() override {}
};

/// Tells of the widgets what is stored of them; nobody is there who would run
/// them.
class StoredWidgets : public InactiveJobs
{
public:
    explicit StoredWidgets(const CoreServices &core) : m_core(core) { core.exchangeSettings.gather(m_stored); }

    bool isWidgetEnabled(WidgetType type) const override
    {
        const QString disabled = QStringLiteral("disabled");
        switch (type) {
        case WidgetType::Clipboard:
            return m_stored.clipboardSettings->isEnabled;
        case WidgetType::QuickLaunch:
            return m_stored.quickLaunchEnabled.value_or(false);
        case WidgetType::Calendar:
            return m_stored.calendarSettings->isEnabled;
        case WidgetType::Weather:
            return m_stored.weatherSettings->locationMode != disabled;
        case WidgetType::SystemInfo:
            return m_stored.systemInfoSettings->displayMode != disabled;
        case WidgetType::Network:
            return m_stored.networkSettings->displayMode != disabled;
        case WidgetType::Timer:
            return m_core.defaults->get<bool>(m_core.debugMode.key(QStringLiteral("TimerEnabled"))).value_or(false);
        }
        Q_UNREACHABLE();
    }

private:
    const CoreServices &m_core;
    ExportData m_stored;
};

/// Nothing else goes on in this process.
CommandResult resultOf(const CommandCall &call, CommandContext &context)
{
    std::optional<CommandResult> result;
    QEventLoop loop;
    runCommand(call, context, [&](const CommandResult &answer) {
        result = answer;
        loop.quit();
    });
    if (!result)
        loop.exec();
    return result.value_or(CommandResult{CommandResult::Refused, {}, {}});
}

} // namespace

CommandResult runLoneCommand(const CommandCall &call, const QString &workingDirectory)
{
    SystemClock clock;
    NoPowerEvents powerEvents;
    const Folders folders = Folders::ofUser();
    makePrivate(folders);
    auto opened = SqliteUserDefaults::open(folders.config, clock);
    if (!opened)
        return CommandResult::refused(openErrorText(opened.error()));
    SqliteUserDefaults::Opened settings = std::move(opened).value();
    CoreServices core(folders, clock, std::move(settings.defaults), powerEvents);
    std::unique_ptr<SyncServices> sync;
    CommandContext context{core.links,
                           core.exchange,
                           *core.defaults,
                           core.snapshots,
                           core.debugMode,
                           core.volumes,
                           clock,
                           [&core] {
                               StoredWidgets widgets(core);
                               return MenuBuilder(core.links, core.widgetOrder, widgets).buildMainMenu();
                           },
                           [&core](const LinkItem &item) {
                               GioWorkspace workspace;
                               return LinkOpener(core.links, workspace, core.clock).open(item);
                           },
                           workingDirectory,
                           nullptr,
                           [&core, &sync]() -> SyncControl & {
                               if (!sync)
                                   sync = std::make_unique<SyncServices>(syncServicesOf(core));
                               return *sync;
                           },
                           [&core](const LinkItem &item) -> std::optional<QString> {
                               GioWorkspace workspace;
                               const LinkOpener opener(core.links, workspace, core.clock);
                               const auto program = opener.programToAskAbout(item, core.importMarks);
                               return program ? std::optional(askFirstText(*program)) : std::nullopt;
                           }};
    CommandResult result = resultOf(call, context);
    if (settings.damagedCopy)
        result.err += "orvelle: " + text("error.damagedMessage %@"_text, *settings.damagedCopy).toUtf8() + '\n';
    return result;
}

} // namespace orvelle
