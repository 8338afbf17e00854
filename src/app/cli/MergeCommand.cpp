#include "app/cli/MergeCommand.h"

#include "app/cli/CommandLine.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeFile.h"
#include "sync/LinkMerge.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

QString absolute(const QString &name, const CommandContext &context)
{
    return QDir::cleanPath(QDir(context.workingDirectory).absoluteFilePath(name));
}

Result<ExportData, CommandResult> readDocument(const QString &name, const CommandContext &context)
{
    const auto bytes = readExchangeFile(absolute(name, context));
    if (!bytes)
        return CommandResult::refused(u"%1 could not be read: "_s.arg(name) + bytes.error().sentence);
    auto document = decodeExchange(*bytes);
    if (!document)
        return CommandResult::refused(u"%1: "_s.arg(name) + importErrorText(document.error()));
    return std::move(document).value();
}

} // namespace

CommandResult runMerge(const CommandArguments &arguments, CommandContext &context)
{
    if (!arguments.has(u"o"_s))
        return CommandResult::wrongUsage(u"merge needs -o OUT"_s);
    auto local = readDocument(arguments.positional.at(0), context);
    if (!local)
        return local.error();
    const auto remote = readDocument(arguments.positional.at(1), context);
    if (!remote)
        return remote.error();

    QString removed;
    ExportData merged = *local;
    merged.links = autoMergeLinks(local->links, remote->links, remote->exportDate,
                                  prefersRemoteOrder(local->links, remote->exportDate),
                                  [&removed](const QString &line) { removed += printable(line) + u'\n'; });
    merged.exportDate = std::max(local->exportDate, remote->exportDate);
    merged.checksum = linksChecksum(merged.links);
    const QByteArray bytes = encodeExchange(merged);
    // Two trees can be within the limits and their sum beyond them.
    if (const auto check = decodeExchange(bytes); !check)
        return CommandResult::refused(u"The merged document could not be read again: "_s +
                                      importErrorText(check.error()));

    const QString out = arguments.options.value(u"o"_s);
    CommandResult result = CommandResult::done(out == u"-" ? bytes + '\n' : QByteArray());
    result.err = removed.toUtf8();
    if (out != u"-") {
        if (const auto error = writePrivateFile(absolute(out, context), bytes))
            return CommandResult::refused(u"The document could not be written: "_s + error->sentence);
    }
    return result;
}

} // namespace orvelle
