#include "app/cli/CommandLine.h"

#include "app/Version.h"
#include "app/cli/Completion.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace orvelle {

namespace {

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

QStringList words(const char *list)
{
    return latin(list).split(u' ', Qt::SkipEmptyParts);
}

/// An argument as it may stand in a message.
QString quoted(const QString &argument)
{
    constexpr qsizetype longest = 60;
    const QString dots = argument.size() > longest ? QStringLiteral("…") : QString();
    return u'"' + argument.left(longest) + dots + u'"';
}

QString usageLine(const Command &command)
{
    const QString usage = latin(command.usage);
    return QStringLiteral("orvelle ") + latin(command.name) + (usage.isEmpty() ? QString() : u' ' + usage);
}

CommandResult wrongUse(const Command &command, const QString &what)
{
    return CommandResult::wrongUsage(what + QStringLiteral(". Usage: ") + usageLine(command));
}

CommandResult commandHelp(const Command &command)
{
    const QString help =
        QStringLiteral("Usage: %1\n\n%2\n").arg(usageLine(command), QString::fromUtf8(command.summary));
    return CommandResult::done(help.toUtf8());
}

/// Takes options out of what follows a command's name.
std::variant<CommandCall, CommandResult> parseCall(const Command &command, const QStringList &rest)
{
    const QStringList flags = words(command.flags);
    const QStringList valued = words(command.valued);
    CommandCall call{&command, {}};
    bool optionsEnded = false;
    for (qsizetype i = 0; i < rest.size(); ++i) {
        const QString &argument = rest.at(i);
        // A lone dash and negative numbers are values.
        const bool isShort = argument.size() == 2 && argument.at(0) == u'-' && valued.contains(argument.mid(1));
        const bool isOption = !optionsEnded && (isShort || argument.startsWith(u"--"));
        if (!isOption) {
            call.arguments.positional += argument;
            continue;
        }
        if (argument == u"--") {
            optionsEnded = true;
            continue;
        }
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = isShort ? argument.mid(1) : argument.mid(2, equals < 0 ? -1 : equals - 2);
        if (name == u"help")
            return commandHelp(command);
        if (flags.contains(name) && equals < 0) {
            call.arguments.options.insert(name, {});
        } else if (valued.contains(name)) {
            if (equals < 0 && i + 1 >= rest.size())
                return wrongUse(command, QStringLiteral("%1 needs a value").arg(argument));
            call.arguments.options.insert(name, equals < 0 ? rest.at(++i) : argument.mid(equals + 1));
        } else {
            return wrongUse(command, QStringLiteral("unknown option %1").arg(quoted(argument)));
        }
    }
    const qsizetype count = call.arguments.positional.size();
    if (count < command.minPositional)
        return wrongUse(command, QStringLiteral("too few arguments"));
    if (count > command.maxPositional)
        return wrongUse(command, QStringLiteral("too many arguments"));
    return call;
}

/// The command that the first words name, the longest name winning, and how
/// many words that took.
std::pair<const Command *, qsizetype> findCommand(const QStringList &arguments)
{
    std::pair<const Command *, qsizetype> best{nullptr, 0};
    for (const Command &command : commands()) {
        const QStringList name = words(command.name);
        if (name.size() > best.second && arguments.mid(0, name.size()) == name)
            best = {&command, name.size()};
    }
    return best;
}

/// The usage of all commands that begin with this word ("defaults").
CommandResult incompleteCommand(const QString &firstWord)
{
    QStringList usages;
    for (const Command &command : commands()) {
        if (latin(command.name).startsWith(firstWord + u' '))
            usages += usageLine(command);
    }
    return CommandResult::wrongUsage(
        QStringLiteral("%1 is not complete. Usage: %2").arg(quoted(firstWord), usages.join(QStringLiteral(" | "))));
}

bool beginsCommand(const QString &firstWord)
{
    return std::any_of(commands().begin(), commands().end(),
                       [&](const Command &command) { return latin(command.name).startsWith(firstWord + u' '); });
}

/// An exchange document's absolute path; empty when the argument is none.
QString documentPath(const QString &argument, const QString &workingDirectory)
{
    const QUrl url(argument, QUrl::StrictMode);
    const QString path = url.isLocalFile() ? url.toLocalFile() : argument;
    if (QFileInfo(path).suffix().toLower() != u"ovexport")
        return {};
    return QDir::cleanPath(QDir(workingDirectory).absoluteFilePath(path));
}

/// Started with the session, by an autostart entry or by a session manager that
/// restarts what ran.
bool isLoginStart(const QStringList &arguments)
{
    return arguments == QStringList{QStringLiteral("--login")} ||
           (arguments.size() == 2 && arguments.first() == QStringLiteral("-session"));
}

} // namespace

void runCommand(const CommandCall &call, CommandContext &context, const CommandAnswer &answer)
{
    if (call.command->begin)
        call.command->begin(call.arguments, context, answer);
    else
        answer(call.command->run(call.arguments, context));
}

QString helpText()
{
    QString help = QStringLiteral("Usage: orvelle [COMMAND [ARGUMENT...]]\n"
                                  "       orvelle FILE.ovexport...\n\n"
                                  "Without a command: start Orvelle, or open its settings when it runs.\n\n"
                                  "Commands:\n");
    for (const Command &command : commands()) {
        const QString usage = latin(command.name) + u' ' + latin(command.usage);
        help += QStringLiteral("  %1  %2\n").arg(usage.trimmed(), -44).arg(QString::fromUtf8(command.summary));
    }
    help += QStringLiteral("\nOptions:\n"
                           "  --help                                        Show this help, or a command's.\n"
                           "  --version                                     Show the version.\n"
                           "  --login                                       Start; if it runs, do nothing.\n"
                           "  --completion bash|zsh|fish                    Print a completion script.\n\n"
                           "Exit status: 0 done; 1 refused or invalid; 2 wrong usage.\n");
    return help;
}

ParsedCommandLine parseCommandLine(const QStringList &arguments, const QString &workingDirectory)
{
    if (arguments.isEmpty() || isLoginStart(arguments))
        return PlainStart{!arguments.isEmpty()};
    const QString &first = arguments.first();
    if (first == u"--help" || first == u"-h" || first == u"help")
        return CommandResult::done(helpText().toUtf8());
    if (first == u"--version" || first == u"-v")
        return CommandResult::done(QByteArrayLiteral("orvelle ") + versionText().toUtf8() + '\n');

    if (first == u"--completion") {
        const auto script = completionScript(arguments.value(1));
        return script && arguments.size() == 2
                   ? CommandResult::done(*script)
                   : CommandResult::wrongUsage(QStringLiteral("--completion needs bash, zsh or fish"));
    }

    if (const auto [command, wordCount] = findCommand(arguments); command) {
        const auto call = parseCall(*command, arguments.mid(wordCount));
        if (std::holds_alternative<CommandResult>(call))
            return std::get<CommandResult>(call);
        return std::get<CommandCall>(call);
    }
    if (beginsCommand(first))
        return incompleteCommand(first);

    OpenFiles files;
    for (const QString &argument : arguments) {
        const QString path = argument.startsWith(u'-') ? QString() : documentPath(argument, workingDirectory);
        if (path.isEmpty())
            return CommandResult::wrongUsage(QStringLiteral("%1 is no command and no .ovexport document; see "
                                                            "orvelle --help")
                                                 .arg(quoted(argument)));
        files.paths += path;
    }
    return files;
}

} // namespace orvelle
