#include "app/cli/CommandInput.h"

#include "base/Result.h"

#include <QFile>
#include <QStringDecoder>

#include <cstdio>

namespace orvelle {

namespace {

// The bus carries no list of texts above 64 MiB.
constexpr qint64 maxInput = 48 << 20;
constexpr qint64 pieceSize = 1 << 20;

} // namespace

std::optional<QString> decodedText(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

namespace {

Result<QString, CommandResult> standardInput()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return CommandResult::refused(QStringLiteral("Standard input could not be read."));
    QByteArray bytes;
    // A pipe gives what is in it, not all that will come.
    for (QByteArray more = input.read(pieceSize); !more.isEmpty() && bytes.size() <= maxInput;
         more = input.read(pieceSize))
        bytes += more;
    if (input.error() != QFileDevice::NoError)
        return CommandResult::refused(QStringLiteral("Standard input could not be read."));
    if (bytes.size() > maxInput)
        return CommandResult::refused(QStringLiteral("A value can be 48 MiB long at most."));
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    const auto text = decodedText(bytes);
    if (!text || text->contains(QChar::Null))
        return CommandResult::refused(QStringLiteral("Standard input is not plain UTF-8 text."));
    return *text;
}

} // namespace

std::optional<CommandResult> readInput(CommandCall &call)
{
    if (!call.command->readsInput)
        return std::nullopt;
    const QString password = QStringLiteral("password");
    QStringList &values = call.arguments.positional;
    QHash<QString, QString> &options = call.arguments.options;
    if (options.contains(password) && options.value(password) != u"-")
        return CommandResult::wrongUsage(
            QStringLiteral("A password is never given on the command line; use --password - and standard input"));
    const bool inOption = options.contains(password);
    if (!inOption && (values.isEmpty() || values.constLast() != u"-"))
        return std::nullopt;
    const auto text = standardInput();
    if (!text)
        return text.error();
    (inOption ? options[password] : values.last()) = *text;
    return std::nullopt;
}

QStringList argumentsOf(const CommandCall &call)
{
    QStringList arguments = QString::fromLatin1(call.command->name).split(u' ');
    const QStringList flags = QString::fromLatin1(call.command->flags).split(u' ');
    for (auto option = call.arguments.options.cbegin(); option != call.arguments.options.cend(); ++option)
        arguments += flags.contains(option.key()) ? QStringLiteral("--") + option.key()
                                                  : QStringLiteral("--%1=%2").arg(option.key(), option.value());
    return arguments + QStringList(QStringLiteral("--")) + call.arguments.positional;
}

} // namespace orvelle
