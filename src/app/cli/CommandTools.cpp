#include "app/cli/CommandTools.h"

#include "links/LinkDetection.h"
#include "links/LinkStore.h"
#include "platform/Clock.h"

#include <QDir>
#include <QFileInfo>

#include <memory>
#include <utility>

namespace orvelle {

namespace {

/// Before the caller's own patience ends.
constexpr std::chrono::seconds filePatience{25};

} // namespace

QString expandedAddress(const QString &text, const QString &workingDirectory)
{
    if (isValidLink(text))
        return text;
    const QFileInfo file(QDir(workingDirectory), text);
    return file.exists() ? QDir::cleanPath(file.absoluteFilePath()) : text;
}

CommandResult storedOrRefused(const CommandContext &context, const QByteArray &out)
{
    if (context.links.hasUnsavedChanges())
        return CommandResult::refused(QStringLiteral("The change could not be saved."));
    return CommandResult::done(out);
}

QString absolutePath(const QString &name, const CommandContext &context)
{
    return QDir::cleanPath(QDir(context.workingDirectory).absoluteFilePath(name));
}

void beginFileWork(const QString &path, const CommandContext &context, const CommandAnswer &answer,
                   const FileWork &work)
{
    const auto waiting = std::make_shared<CommandAnswer>(answer);
    const auto look = [inside = CommandContext(context), waiting, work](FileBookmarks &bookmarks) {
        return [inside, waiting, after = work(bookmarks)]() mutable {
            if (const CommandAnswer still = std::exchange(*waiting, nullptr))
                still(after(inside));
        };
    };
    context.links.lookAside(path, &context.links, look);
    if (!*waiting)
        return;
    context.clock.after(filePatience, &context.links, [waiting] {
        if (const CommandAnswer still = std::exchange(*waiting, nullptr))
            still(CommandResult::refused(QStringLiteral("The disk does not answer; the links are unchanged.")));
    });
}

CommandResult noSuchItem()
{
    return CommandResult::refused(QStringLiteral("There is no item with this id."));
}

CommandResult noSuchGroup()
{
    return CommandResult::refused(QStringLiteral("There is no group with this id."));
}

CommandResult noSuchAddress()
{
    return CommandResult::refused(QStringLiteral("This is no address, file or folder that Orvelle can keep."));
}

} // namespace orvelle
