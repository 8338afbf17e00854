#include "app/cli/CommandTools.h"

#include "links/LinkDetection.h"
#include "links/LinkStore.h"

#include <QDir>
#include <QFileInfo>

namespace orvelle {

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
