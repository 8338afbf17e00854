#include "app/cli/LinkCommands.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "links/LinkCodec.h"
#include "links/LinkDetection.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "menubar/MenuJson.h"
#include "platform/Clock.h"
#include "services/DebugModeManager.h"

namespace orvelle {

namespace {

void appendOutline(QString &out, const LinkList &links, int depth)
{
    for (const LinkItem &item : links) {
        out += item.stableId + QStringLiteral("  ") + QString(depth * 2, u' ') + printable(item.name);
        if (item.isGroup())
            out += u'/';
        else if (item.type != LinkType::Note)
            out += QStringLiteral("  ") + printable(item.path);
        out += u'\n';
        if (item.children)
            appendOutline(out, *item.children, depth + 1);
    }
}

} // namespace

CommandResult runLinks(const CommandArguments &arguments, CommandContext &context)
{
    const LinkList &links = context.links.links();
    if (arguments.has(QStringLiteral("json")))
        return CommandResult::done(encodeLinks(links) + '\n');
    QString out;
    appendOutline(out, links, 0);
    return CommandResult::done(out.toUtf8());
}

CommandResult runMenu(const CommandArguments &arguments, CommandContext &context)
{
    const Menu menu = context.buildMenu();
    return CommandResult::done(arguments.has(QStringLiteral("json")) ? menuJson(menu) : menuOutline(menu).toUtf8());
}

CommandResult runAdd(const CommandArguments &arguments, CommandContext &context)
{
    const QString address = expandedAddress(arguments.positional.at(0), context.workingDirectory);
    const auto item =
        linkFromText(address, arguments.options.value(QStringLiteral("name")), context.volumes, context.clock.now());
    if (!item)
        return noSuchAddress();
    if (arguments.has(QStringLiteral("group"))) {
        const auto group = context.links.findByText(arguments.options.value(QStringLiteral("group")));
        if (!group || !group->isGroup())
            return noSuchGroup();
        if (!context.links.addLinkToGroup(*item, group->id))
            return CommandResult::refused(QStringLiteral("The group cannot take this item."));
    } else {
        context.links.addLink(*item);
    }
    return storedOrRefused(context, item->stableId.toUtf8() + '\n');
}

CommandResult runOpen(const CommandArguments &arguments, CommandContext &context)
{
    const auto item = context.links.findByText(arguments.positional.at(0));
    if (!item)
        return noSuchItem();
    if (item->isGroup())
        return CommandResult::refused(QStringLiteral("A group cannot be opened."));
    if (item->type == LinkType::Note && !context.app)
        return CommandResult::refused(QStringLiteral("Orvelle must be running to open a note."));
    if (const auto why = context.refusalToOpen ? context.refusalToOpen(*item) : std::nullopt)
        return CommandResult::refused(*why);
    if (!context.open(*item))
        return CommandResult::refused(QStringLiteral("This link leads nowhere, or nothing can open it."));
    return CommandResult::done();
}

CommandResult runUndo(const CommandArguments &, CommandContext &context)
{
    const auto name = context.links.undoLastDestructiveStep();
    if (!name)
        return CommandResult::refused(QStringLiteral("There is nothing to undo."));
    return storedOrRefused(context, name->toUtf8() + '\n');
}

CommandResult runSnapshots(const CommandArguments &, CommandContext &context)
{
    QString out;
    for (const SnapshotInfo &snapshot : context.snapshots.list(context.debugMode.isDebugMode())) {
        out += QStringLiteral("%1  %2  %3  %4\n")
                   .arg(snapshot.name, snapshot.takenAt.toDateTime().toLocalTime().toString(Qt::ISODate),
                        printable(snapshot.reason), QString::number(snapshot.itemCount));
    }
    return CommandResult::done(out.toUtf8());
}

CommandResult runSnapshotsRestore(const CommandArguments &arguments, CommandContext &context)
{
    const QString &name = arguments.positional.at(0);
    const auto known = context.snapshots.list(context.debugMode.isDebugMode());
    const bool exists =
        std::any_of(known.begin(), known.end(), [&](const SnapshotInfo &snapshot) { return snapshot.name == name; });
    if (!exists)
        return CommandResult::refused(QStringLiteral("There is no snapshot of this name."));
    if (!context.links.restoreSnapshot(name))
        return CommandResult::refused(QStringLiteral("The snapshot cannot be read."));
    return storedOrRefused(context, {});
}

} // namespace orvelle
