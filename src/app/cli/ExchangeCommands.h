#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The tree and the settings as a document. File names are taken from the
// caller's folder.
void beginExport(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
void beginImport(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
void beginVerify(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);

} // namespace orvelle
