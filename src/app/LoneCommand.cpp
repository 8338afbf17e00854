#include "app/LoneCommand.h"

#include "app/CoreServices.h"
#include "base/Text.h"
#include "menubar/LinkOpener.h"
#include "menubar/MenuBuilder.h"
#include "platform/PowerEvents.h"
#include "platform/freedesktop/GioWorkspace.h"

namespace orvelle {

namespace {

/// A command is over before the machine can go to sleep.
class NoPowerEvents : public PowerEvents
{
public:
    void start() override {}
};

} // namespace

CommandResult runLoneCommand(const CommandCall &call, const QString &workingDirectory)
{
    SystemClock clock;
    NoPowerEvents powerEvents;
    const Folders folders = Folders::ofUser();
    auto opened = SqliteUserDefaults::open(folders.config, clock);
    if (!opened)
        return CommandResult::refused(openErrorText(opened.error()));
    SqliteUserDefaults::Opened settings = std::move(opened).value();
    CoreServices core(folders, clock, std::move(settings.defaults), powerEvents);
    const MenuBuilder builder(core.links, core.widgetOrder, core.jobs);
    CommandContext context{core.links,
                           core.exchange,
                           *core.defaults,
                           core.snapshots,
                           core.debugMode,
                           core.volumes,
                           clock,
                           [&builder] { return builder.buildMainMenu(); },
                           [&core](const LinkItem &item) {
                               GioWorkspace workspace;
                               return LinkOpener(core.links, workspace, core.clock).open(item);
                           },
                           workingDirectory,
                           nullptr};
    CommandResult result = call.command->run(call.arguments, context);
    if (settings.damagedCopy)
        result.err += "orvelle: " + text("error.damagedMessage %@"_text, *settings.damagedCopy).toUtf8() + '\n';
    return result;
}

} // namespace orvelle
