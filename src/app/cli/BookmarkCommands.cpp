#include "app/cli/BookmarkCommands.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "base/JsonWriter.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/exchange/BookmarksHtml.h"
#include "links/exchange/ExchangeFile.h"
#include "links/exchange/LinkFiles.h"
#include "platform/Clock.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

QString filePath(const CommandArguments &arguments, const CommandContext &context)
{
    return QDir::cleanPath(QDir(context.workingDirectory).absoluteFilePath(arguments.positional.at(0)));
}

struct Figure {
    const char *key;
    const char *label;
    qint64 value;
};

QByteArray printed(const QList<Figure> &figures, bool json)
{
    JsonWriter writer;
    QByteArray lines;
    writer.beginObject();
    for (const Figure &figure : figures) {
        writer.key(figure.key);
        writer.number(figure.value);
        lines += QByteArray(figure.label) + ": " + QByteArray::number(figure.value) + '\n';
    }
    writer.endObject();
    return json ? writer.take() + '\n' : lines;
}

/// Adds what was read to the end of the top level, as one step.
CommandResult addForeign(const Result<ForeignLinks, ForeignError> &foreign, const QString &title, bool json,
                         CommandContext &context)
{
    if (!foreign)
        return CommandResult::refused(foreignErrorText(foreign.error()));
    LinkList items = arranged(*foreign, title, context.clock.now());
    settleOnDisk(items, context.links.fileBookmarks());
    const auto append = [items](LinkList &tree) {
        tree += items;
        return true;
    };
    if (!items.isEmpty() && !context.links.edit(LinkStore::Step::Destructive, u"import"_s, append))
        return CommandResult::refused(u"The change could not be saved."_s);
    return storedOrRefused(context,
                           printed({{"added", "Items added", countAll(items)},
                                    {"links", "Links", foreign->links},
                                    {"foldedFolders", "Folders merged into the one above", foreign->foldedFolders},
                                    {"leftOut", "Addresses left out", foreign->leftOut},
                                    {"unreadable", "Unreadable", foreign->unreadable},
                                    {"otherFiles", "Other files", foreign->otherFiles}},
                                   json));
}

} // namespace

CommandResult runImportBookmarks(const CommandArguments &arguments, CommandContext &context)
{
    const QString path = filePath(arguments, context);
    const auto bytes = readPlainFile(path, maxForeignBytes);
    if (!bytes)
        return CommandResult::refused(foreignErrorText(bytes.error()));
    return addForeign(readBookmarksHtml(*bytes, context.clock.now()), QFileInfo(path).completeBaseName(),
                      arguments.has(u"json"_s), context);
}

CommandResult runImportLinks(const CommandArguments &arguments, CommandContext &context)
{
    const QString path = filePath(arguments, context);
    return addForeign(readLinkFolder(path, context.clock.now()), QFileInfo(path).fileName(), arguments.has(u"json"_s),
                      context);
}

CommandResult runExportBookmarks(const CommandArguments &arguments, CommandContext &context)
{
    const bool prints = arguments.positional.at(0) == u"-";
    const QString path = filePath(arguments, context);
    const WrittenBookmarks written =
        writeBookmarksHtml(context.links.links(), prints ? u"Orvelle"_s : QFileInfo(path).completeBaseName());
    const auto error = prints ? std::nullopt : writePrivateFile(path, written.html);
    if (error)
        return CommandResult::refused(u"The bookmarks could not be written: "_s + error->sentence);
    CommandResult result = CommandResult::done(prints ? written.html : QByteArray());
    if (written.notesLeftOut > 0)
        result.err =
            u"orvelle: Notes left out, which a bookmark file cannot hold: %1.\n"_s.arg(written.notesLeftOut).toUtf8();
    return result;
}

} // namespace orvelle
