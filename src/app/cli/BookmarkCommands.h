#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// Links of other programs. What was not taken over as it stood is counted.
void beginImportBookmarks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
void beginExportBookmarks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
void beginImportLinks(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);

} // namespace orvelle
