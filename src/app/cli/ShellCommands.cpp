#include "app/cli/ShellCommands.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "platform/freedesktop/log/JournalLog.h"

namespace orvelle {

namespace {

constexpr int logLines = 500;

CommandResult notRunning()
{
    return CommandResult::refused(QStringLiteral("Orvelle is not running."));
}

} // namespace

CommandResult runToggle(const CommandArguments &, CommandContext &context)
{
    if (!context.app)
        return notRunning();
    context.app->toggleMenu();
    return CommandResult::done();
}

CommandResult runSettings(const CommandArguments &, CommandContext &context)
{
    if (!context.app)
        return notRunning();
    context.app->openSettings();
    return CommandResult::done();
}

CommandResult runQuickAdd(const CommandArguments &arguments, CommandContext &context)
{
    if (!context.app)
        return notRunning();
    const QString address = arguments.positional.value(0);
    context.app->openQuickAdd(address.isEmpty() ? address : expandedAddress(address, context.workingDirectory));
    return CommandResult::done();
}

CommandResult runQuit(const CommandArguments &, CommandContext &context)
{
    if (!context.app)
        return notRunning();
    context.app->quitSoon();
    return CommandResult::done();
}

CommandResult runLog(const CommandArguments &, CommandContext &context)
{
    const auto journal = recentLogLines(logLines);
    QStringList lines = journal ? *journal : QStringList();
    // Without a journal, the running application still knows its own.
    if (lines.isEmpty() && context.app)
        lines = context.app->recentLog();
    if (lines.isEmpty() && !journal) {
        const bool none = journal.error().kind == LogReadError::Kind::NoJournal;
        return CommandResult::refused(
            none ? QStringLiteral("There is no journal here to read the log from.")
                 : QStringLiteral("The journal may not be read: %1.").arg(journal.error().detail));
    }
    QByteArray out;
    for (const QString &line : lines)
        out += printable(line).toUtf8() + '\n';
    return CommandResult::done(out);
}

} // namespace orvelle
