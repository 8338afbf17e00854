#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The tree and the menu.
CommandResult runLinks(const CommandArguments &arguments, CommandContext &context);
CommandResult runMenu(const CommandArguments &arguments, CommandContext &context);
CommandResult runAdd(const CommandArguments &arguments, CommandContext &context);
CommandResult runOpen(const CommandArguments &arguments, CommandContext &context);
CommandResult runUndo(const CommandArguments &arguments, CommandContext &context);
CommandResult runSnapshots(const CommandArguments &arguments, CommandContext &context);
CommandResult runSnapshotsRestore(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
