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

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

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
CommandResult addForeign(const ForeignLinks &foreign, const LinkList &items, bool json, CommandContext &context)
{
    const auto append = [&items](LinkList &tree) {
        tree += items;
        return true;
    };
    if (!items.isEmpty() && !context.links.edit(LinkStore::Step::Destructive, u"import"_s, append))
        return CommandResult::refused(u"The change could not be saved."_s);
    return storedOrRefused(context,
                           printed({{"added", "Items added", countAll(items)},
                                    {"links", "Links", foreign.links},
                                    {"foldedFolders", "Folders merged into the one above", foreign.foldedFolders},
                                    {"leftOut", "Addresses left out", foreign.leftOut},
                                    {"unreadable", "Unreadable", foreign.unreadable},
                                    {"otherFiles", "Other files", foreign.otherFiles}},
                                   json));
}

using Read = std::function<Result<ForeignLinks, ForeignError>(const QString &path)>;

void beginForeign(const CommandArguments &arguments, const CommandContext &context, const CommandAnswer &answer,
                  QString (QFileInfo::*title)() const, const Read &read)
{
    const QString path = absolutePath(arguments.positional.at(0), context);
    const bool json = arguments.has(u"json"_s);
    const Timestamp now = context.clock.now();
    beginFileWork(path, context, answer, [=](FileBookmarks &bookmarks) -> AfterFiles {
        const auto foreign = read(path);
        if (!foreign)
            return
                [error = foreign.error()](CommandContext &) { return CommandResult::refused(foreignErrorText(error)); };
        LinkList items = arranged(*foreign, (QFileInfo(path).*title)(), now);
        settleOnDisk(items, bookmarks);
        return [foreign = *foreign, items, json](CommandContext &inside) {
            return addForeign(foreign, items, json, inside);
        };
    });
}

} // namespace

void beginImportBookmarks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const Timestamp now = context.clock.now();
    beginForeign(arguments, context, answer, &QFileInfo::completeBaseName,
                 [now](const QString &path) -> Result<ForeignLinks, ForeignError> {
                     const auto bytes = readPlainFile(path, maxForeignBytes);
                     if (!bytes)
                         return bytes.error();
                     return readBookmarksHtml(*bytes, now);
                 });
}

void beginImportLinks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    beginForeign(arguments, context, answer, &QFileInfo::fileName,
                 [now = context.clock.now()](const QString &path) { return readLinkFolder(path, now); });
}

void beginExportBookmarks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const QString &name = arguments.positional.at(0);
    const bool prints = name == u"-";
    const QString path = absolutePath(name, context);
    const WrittenBookmarks written =
        writeBookmarksHtml(context.links.links(), prints ? u"Orvelle"_s : QFileInfo(path).completeBaseName());
    CommandResult result = CommandResult::done(prints ? written.html : QByteArray());
    if (written.notesLeftOut > 0)
        result.err =
            u"orvelle: Notes left out, which a bookmark file cannot hold: %1.\n"_s.arg(written.notesLeftOut).toUtf8();
    if (prints)
        return answer(result);
    beginFileWork(path, context, answer, [path, html = written.html, result](FileBookmarks &) {
        return [error = writePrivateFile(path, html), result](CommandContext &) {
            return error ? CommandResult::refused(u"The bookmarks could not be written: "_s + error->sentence) : result;
        };
    });
}

} // namespace orvelle
