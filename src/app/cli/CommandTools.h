#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

#include <functional>

namespace orvelle {

class FileBookmarks;

// What several commands need.

/// A path given relative to the caller's folder as an absolute one; anything
/// else as it is.
QString expandedAddress(const QString &text, const QString &workingDirectory);

/// Done with this output, unless the tree could not be written.
CommandResult storedOrRefused(const CommandContext &context, const QByteArray &out);

/// A file that was named relative to the caller's folder. Asks no disk.
QString absolutePath(const QString &name, const CommandContext &context);

/// What a command does with files, holding everything that it needs, and then
/// on the main thread, whose result is the command's.
using AfterFiles = std::function<CommandResult(CommandContext &)>;
using FileWork = std::function<AfterFiles(FileBookmarks &)>;

/// Does that where a dead disk under `path` holds up nobody else. When the
/// caller would stop waiting it is told so, and the second half is left out.
void beginFileWork(const QString &path, const CommandContext &context, const CommandAnswer &answer,
                   const FileWork &work);

CommandResult noSuchItem();
CommandResult noSuchGroup();
CommandResult noSuchAddress();

} // namespace orvelle
