#include "app/cli/ExchangeCommands.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "base/JsonWriter.h"
#include "links/LinkStore.h"
#include "links/exchange/ExchangeAnalysis.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeFile.h"
#include "links/exchange/LinkExchange.h"
#include "platform/Clock.h"
#include "sync/SyncEdit.h"

#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

std::optional<ImportMode> importMode(const QString &name)
{
    constexpr std::pair<QLatin1StringView, ImportMode> modes[] = {
        {"replace"_L1, ImportMode::Replace}, {"merge"_L1, ImportMode::Merge}, {"sync"_L1, ImportMode::Sync}};
    for (const auto &[known, mode] : modes) {
        if (name == known)
            return mode;
    }
    return std::nullopt;
}

/// What the caller should know beside the figures.
QByteArray remarks(const PreparedImport &prepared)
{
    QString lines;
    if (prepared.hasVersionMismatch)
        lines += u"orvelle: The document is of a newer version; what this one does not know was left out.\n"_s;
    if (prepared.droppedCount > 0)
        lines += u"orvelle: Items left out as incomplete or too deeply nested: %1.\n"_s.arg(prepared.droppedCount);
    return lines.toUtf8();
}

QByteArray resultText(const ImportResult &result)
{
    QString lines = u"Imported: %1\nSkipped: %2\n"_s.arg(result.importedCount).arg(result.skippedCount);
    if (result.quickLaunchImported)
        lines += u"Quick launch: imported\n"_s;
    return lines.toUtf8();
}

QByteArray resultJson(const ImportResult &result)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("importedCount");
    writer.number(result.importedCount);
    writer.key("skippedCount");
    writer.number(result.skippedCount);
    writer.key("quickLaunchImported");
    writer.boolean(result.quickLaunchImported);
    writer.key("hasVersionMismatch");
    writer.boolean(result.hasVersionMismatch);
    writer.endObject();
    return writer.take() + '\n';
}

QByteArray figuresJson(std::initializer_list<std::pair<const char *, qint64>> figures)
{
    JsonWriter writer;
    writer.beginObject();
    for (const auto &[key, figure] : figures) {
        writer.key(key);
        writer.number(figure);
    }
    writer.endObject();
    return writer.take() + '\n';
}

QByteArray analysisText(const ExchangeAnalysis &analysis)
{
    return u"New: %1\nChanged: %2\nEqual: %3\nOnly here: %4\n"_s.arg(analysis.added)
        .arg(analysis.changed)
        .arg(analysis.equal)
        .arg(analysis.onlyHere)
        .toUtf8();
}

QByteArray analysisJson(const ExchangeAnalysis &analysis)
{
    return figuresJson({{"new", analysis.added},
                        {"changed", analysis.changed},
                        {"equal", analysis.equal},
                        {"onlyHere", analysis.onlyHere}});
}

QByteArray appliedText(const SyncResult &result)
{
    return u"Updated: %1\nAdded: %2\nRemoved: %3\nDuplicates resolved: %4\n"_s.arg(result.updatedCount)
        .arg(result.addedCount)
        .arg(result.removedCount)
        .arg(result.duplicatesResolved)
        .toUtf8();
}

QByteArray appliedJson(const SyncResult &result)
{
    return figuresJson({{"updatedCount", result.updatedCount},
                        {"addedCount", result.addedCount},
                        {"removedCount", result.removedCount},
                        {"duplicatesResolved", result.duplicatesResolved}});
}

CommandResult analyse(const PreparedImport &prepared, bool json, const CommandContext &context)
{
    const ExchangeAnalysis analysis = analyseExchange(context.links.links(), prepared.items);
    CommandResult result = CommandResult::done(json ? analysisJson(analysis) : analysisText(analysis));
    result.err = remarks(prepared) + "orvelle: Nothing was changed; add --apply to synchronise.\n";
    return result;
}

CommandResult synchronise(const PreparedImport &prepared, bool json, const CommandContext &context)
{
    const SyncAnalysis analysis =
        analyzeSyncChanges(context.links.links(), prepared.items, prepared.document->exportDate);
    const auto applied = applySync(context.links, prepared.items, analysis, context.clock.now());
    if (!applied || context.links.hasUnsavedChanges())
        return CommandResult::refused(u"The change could not be saved."_s);
    CommandResult result = CommandResult::done(json ? appliedJson(*applied) : appliedText(*applied));
    result.err = remarks(prepared);
    return result;
}

CommandResult importResult(const PreparedImport &prepared, ImportMode mode, bool json, CommandContext &context)
{
    const auto imported = context.exchange.importPrepared(prepared, mode);
    if (!imported)
        return CommandResult::refused(importErrorText(imported.error()));
    CommandResult result = storedOrRefused(context, json ? resultJson(*imported) : resultText(*imported));
    if (result.exitCode == CommandResult::Done)
        result.err = remarks(prepared);
    return result;
}

/// What an import says and does with a document that was read.
struct Import {
    ImportMode mode;
    bool apply;
    bool json;

    CommandResult operator()(const PreparedImport &prepared, CommandContext &context) const
    {
        if (mode != ImportMode::Sync)
            return importResult(prepared, mode, json, context);
        return apply ? synchronise(prepared, json, context) : analyse(prepared, json, context);
    }
};

CommandResult unreadable(const FileError &error)
{
    return CommandResult::refused(u"The document could not be read: "_s + error.sentence);
}

CommandResult verified(const QString &path)
{
    const auto document = readExchangeFile(path);
    if (!document)
        return unreadable(document.error());
    const auto report = verifyExchange(*document);
    if (!report)
        return CommandResult::refused(importErrorText(report.error()));
    if (!report->stated)
        return CommandResult::refused(
            u"The document has no checksum; that of its links is %1."_s.arg(report->computed));
    if (!report->matches())
        return CommandResult::refused(
            u"The checksum does not match: the document says %1, but its links give %2."_s.arg(report->stated->left(64),
                                                                                               report->computed));
    return CommandResult::done(report->computed.toLatin1() + '\n');
}

} // namespace

void beginExport(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const QByteArray document = context.exchange.exportJSON().bytes;
    const QString &name = arguments.positional.at(0);
    if (name == u"-")
        return answer(CommandResult::done(document + '\n'));
    const QString path = absolutePath(name, context);
    beginFileWork(path, context, answer, [path, document](FileBookmarks &) {
        return [error = writePrivateFile(path, document)](CommandContext &) {
            return error ? CommandResult::refused(u"The document could not be written: "_s + error->sentence)
                         : CommandResult::done();
        };
    });
}

void beginImport(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const auto mode = importMode(arguments.options.value(u"mode"_s));
    if (!mode)
        return answer(CommandResult::wrongUsage(u"import needs --mode replace, --mode merge or --mode sync"_s));
    const Import import{*mode, arguments.has(u"apply"_s), arguments.has(u"json"_s)};
    if (import.apply && *mode != ImportMode::Sync)
        return answer(CommandResult::wrongUsage(u"--apply belongs to --mode sync; the others always do it"_s));
    const QString path = absolutePath(arguments.positional.at(0), context);
    beginFileWork(path, context, answer,
                  [path, import, home = context.links.homeDirectory(),
                   now = context.clock.now()](FileBookmarks &bookmarks) -> AfterFiles {
                      const auto document = readExchangeFile(path);
                      if (!document)
                          return [error = document.error()](CommandContext &) { return unreadable(error); };
                      auto prepared = prepareImport(*document, bookmarks, home, now);
                      return [prepared = std::move(prepared), import](CommandContext &inside) {
                          return prepared ? import(*prepared, inside)
                                          : CommandResult::refused(importErrorText(prepared.error()));
                      };
                  });
}

void beginVerify(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const QString path = absolutePath(arguments.positional.at(0), context);
    beginFileWork(path, context, answer,
                  [path](FileBookmarks &) { return [result = verified(path)](CommandContext &) { return result; }; });
}

} // namespace orvelle
