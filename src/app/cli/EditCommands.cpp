#include "app/cli/EditCommands.h"

#include "app/cli/CommandLine.h"
#include "app/cli/CommandTools.h"
#include "base/Result.h"
#include "links/LinkColors.h"
#include "links/LinkDetection.h"
#include "links/LinkEditing.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

using Change = std::function<void(LinkItem &)>;
/// A change, or what to answer instead.
using CheckedChange = Result<Change, CommandResult>;

CommandResult answer(const std::optional<EditRefusal> &refusal, const CommandContext &context,
                     const QString &nothingToDo = logText(EditRefusal::NothingToDo))
{
    if (!refusal)
        return storedOrRefused(context, {});
    return CommandResult::refused(*refusal == EditRefusal::NothingToDo ? nothingToDo : logText(*refusal));
}

bool isKnownIcon(const QString &symbol)
{
    const std::span<const IconChoice> tables[] = {groupIcons(), networkIcons(), noteIcons()};
    return std::any_of(std::begin(tables), std::end(tables), [&symbol](std::span<const IconChoice> table) {
        return std::any_of(table.begin(), table.end(),
                           [&symbol](const IconChoice &choice) { return symbol == QLatin1StringView(choice.symbol); });
    });
}

CheckedChange nameChange(const QString &name, const LinkItem &, const CommandContext &)
{
    if (name.isEmpty())
        return CommandResult::refused(u"A name cannot be empty."_s);
    return Change([name](LinkItem &item) { item.name = name; });
}

CheckedChange pathChange(const QString &given, const LinkItem &item, const CommandContext &context)
{
    if (item.isGroup() || item.type == LinkType::Note)
        return CommandResult::refused(u"Groups and notes lead nowhere."_s);
    const auto link =
        linkFromText(expandedAddress(given, context.workingDirectory), item.name, context.volumes, context.clock.now());
    if (!link)
        return noSuchAddress();
    std::optional<QByteArray> bookmark;
    if (link->type != LinkType::Url) {
        if (auto made = context.links.fileBookmarks().create(link->path))
            bookmark = std::move(made).value();
    }
    return Change([path = link->path, type = link->type, bookmark](LinkItem &changed) {
        if (changed.path != path)
            changed.faviconData.reset();
        changed.path = path;
        changed.type = type;
        changed.bookmarkData = bookmark;
    });
}

CheckedChange iconChange(const QString &symbol, const LinkItem &, const CommandContext &)
{
    if (!symbol.isEmpty() && !isKnownIcon(symbol))
        return CommandResult::refused(u"There is no icon of this name."_s);
    return Change(
        [symbol](LinkItem &item) { item.customIconName = symbol.isEmpty() ? std::nullopt : std::optional(symbol); });
}

CheckedChange colorChange(const QString &key, const LinkItem &, const CommandContext &)
{
    if (!key.isEmpty() && !nsColor(key))
        return CommandResult::refused(u"There is no colour of this name."_s);
    return Change([key](LinkItem &item) { item.customIconColor = key.isEmpty() ? std::nullopt : std::optional(key); });
}

/// Each option of `update` and what it does.
constexpr struct {
    QLatin1StringView option;
    CheckedChange (*change)(const QString &, const LinkItem &, const CommandContext &);
} updates[] = {
    {"name"_L1, nameChange},
    {"path"_L1, pathChange},
    {"icon"_L1, iconChange},
    {"color"_L1, colorChange},
};

/// Absent when it is no number from 0 up.
std::optional<qsizetype> parsePlace(const QString &text)
{
    bool isNumber = false;
    const qlonglong place = text.toLongLong(&isNumber);
    return isNumber && place >= 0 ? std::optional<qsizetype>(place) : std::nullopt;
}

} // namespace

CommandResult runMove(const CommandArguments &arguments, CommandContext &context)
{
    if (!arguments.has(u"to"_s))
        return CommandResult::wrongUsage(u"move needs --to, and the id of a group or \"root\" after it."_s);
    std::optional<qsizetype> at;
    if (arguments.has(u"at"_s)) {
        at = parsePlace(arguments.options.value(u"at"_s));
        if (!at)
            return CommandResult::wrongUsage(u"--at takes a number from 0 up."_s);
    }
    const auto item = context.links.findByText(arguments.positional.at(0));
    if (!item)
        return noSuchItem();
    const QString target = arguments.options.value(u"to"_s);
    if (target == "root"_L1)
        return answer(context.links.moveLink(item->id, std::nullopt, at), context);
    const auto group = context.links.findByText(target);
    if (!group || !group->isGroup())
        return noSuchGroup();
    return answer(context.links.moveLink(item->id, group->id, at), context);
}

CommandResult runIndent(const CommandArguments &arguments, CommandContext &context)
{
    const auto item = context.links.findByText(arguments.positional.at(0));
    return item ? answer(context.links.indentLink(item->id), context, u"There is no group right above this item."_s)
                : noSuchItem();
}

CommandResult runOutdent(const CommandArguments &arguments, CommandContext &context)
{
    const auto item = context.links.findByText(arguments.positional.at(0));
    return item ? answer(context.links.outdentLink(item->id), context, u"This item is not in a group."_s)
                : noSuchItem();
}

CommandResult runSort(const CommandArguments &arguments, CommandContext &context)
{
    const auto item = context.links.findByText(arguments.positional.at(0));
    return item ? answer(context.links.sortGroupAlphabetically(item->id), context,
                         u"This group holds nothing to sort."_s)
                : noSuchItem();
}

CommandResult runRemove(const CommandArguments &arguments, CommandContext &context)
{
    const auto item = context.links.findByText(arguments.positional.at(0));
    return item ? answer(context.links.removeLinks({item->id}), context) : noSuchItem();
}

CommandResult runUpdate(const CommandArguments &arguments, CommandContext &context)
{
    if (arguments.options.isEmpty())
        return CommandResult::wrongUsage(u"update needs at least one of --name, --path, --icon and --color."_s);
    const auto item = context.links.findByText(arguments.positional.at(0));
    if (!item)
        return noSuchItem();
    QList<Change> changes;
    for (const auto &update : updates) {
        if (!arguments.has(update.option))
            continue;
        CheckedChange change = update.change(arguments.options.value(update.option), *item, context);
        if (!change)
            return change.error();
        changes += std::move(change).value();
    }
    return answer(context.links.updateLinks({item->id},
                                            [changes](LinkItem &changed) {
                                                for (const Change &change : changes)
                                                    change(changed);
                                            }),
                  context);
}

} // namespace orvelle
