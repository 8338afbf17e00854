#include "app/cli/DefaultsCommands.h"

#include "app/CoreServices.h"
#include "app/cli/CommandLine.h"
#include "app/cli/DefaultsForms.h"

namespace orvelle {

namespace {

CommandResult noSuchKey()
{
    return CommandResult::refused(QStringLiteral("There is no such setting."));
}

/// Tells the parts of this very process that a setting is another one: to
/// them, a command is as foreign as another process.
CommandResult written(const UserDefaults::WriteResult &result, const QString &key, CommandContext &context)
{
    if (!result)
        return CommandResult::refused(writeErrorText(result.error()));
    emit context.defaults.changedExternally({key});
    return CommandResult::done();
}

} // namespace

CommandResult runDefaultsList(const CommandArguments &, CommandContext &context)
{
    QByteArray out;
    for (const QString &key : context.defaults.keys()) {
        if (const auto value = context.defaults.value(key))
            out += key.toUtf8() + ' ' + defaultsTypeName(*value).toUtf8() + '\n';
    }
    return CommandResult::done(out);
}

CommandResult runDefaultsRead(const CommandArguments &arguments, CommandContext &context)
{
    const auto value = context.defaults.value(arguments.positional.at(0));
    if (!value)
        return noSuchKey();
    return CommandResult::done(defaultsText(*value) + '\n');
}

CommandResult runDefaultsWrite(const CommandArguments &arguments, CommandContext &context)
{
    const QString &key = arguments.positional.at(0);
    if (key.isEmpty())
        return CommandResult::refused(QStringLiteral("A setting needs a name."));
    const auto value = parseDefaultsValue(arguments.positional.at(1), arguments.positional.at(2));
    if (!value) {
        return value.error().unknownType ? CommandResult::wrongUsage(value.error().sentence)
                                         : CommandResult::refused(value.error().sentence);
    }
    return written(context.defaults.write(key, *value), key, context);
}

CommandResult runDefaultsDelete(const CommandArguments &arguments, CommandContext &context)
{
    const QString &key = arguments.positional.at(0);
    if (!context.defaults.value(key))
        return noSuchKey();
    return written(context.defaults.remove(key), key, context);
}

} // namespace orvelle
