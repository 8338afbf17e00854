#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// Links of other programs. What was not taken over as it stood is counted.
CommandResult runImportBookmarks(const CommandArguments &arguments, CommandContext &context);
CommandResult runExportBookmarks(const CommandArguments &arguments, CommandContext &context);
CommandResult runImportLinks(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
