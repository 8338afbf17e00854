#include "app/cli/MergeCommand.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeFile.h"
#include "sync/LinkMerge.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// A file, and what the user calls it.
struct NamedFile {
    QString name;
    QString path;
};

Result<ExportData, CommandResult> readDocument(const NamedFile &file)
{
    const auto bytes = readExchangeFile(file.path);
    if (!bytes)
        return CommandResult::refused(u"%1 could not be read: "_s.arg(file.name) + bytes.error().sentence);
    auto document = decodeExchange(*bytes);
    if (!document)
        return CommandResult::refused(u"%1: "_s.arg(file.name) + importErrorText(document.error()));
    return std::move(document).value();
}

CommandResult mergeFiles(const NamedFile &localFile, const NamedFile &remoteFile, const NamedFile &out)
{
    const auto local = readDocument(localFile);
    if (!local)
        return local.error();
    const auto remote = readDocument(remoteFile);
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

    const bool prints = out.name == u"-";
    if (const auto error = prints ? std::nullopt : writePrivateFile(out.path, bytes))
        return CommandResult::refused(u"The document could not be written: "_s + error->sentence);
    CommandResult result = CommandResult::done(prints ? bytes + '\n' : QByteArray());
    result.err = removed.toUtf8();
    return result;
}

} // namespace

void beginMerge(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    if (!arguments.has(u"o"_s))
        return answer(CommandResult::wrongUsage(u"merge needs -o OUT"_s));
    const auto named = [&context](const QString &name) { return NamedFile{name, absolutePath(name, context)}; };
    const NamedFile local = named(arguments.positional.at(0));
    const NamedFile remote = named(arguments.positional.at(1));
    const NamedFile out = named(arguments.options.value(u"o"_s));
    beginFileWork(local.path, context, answer, [local, remote, out](FileBookmarks &) {
        return [result = mergeFiles(local, remote, out)](CommandContext &) { return result; };
    });
}

} // namespace orvelle
