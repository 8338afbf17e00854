#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The tree and the settings as a document. File names are taken from the
// caller's folder.
CommandResult runExport(const CommandArguments &arguments, CommandContext &context);
CommandResult runImport(const CommandArguments &arguments, CommandContext &context);
CommandResult runVerify(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
