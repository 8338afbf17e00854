#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// Changes of items that are there. Items are named by stable or run id.
CommandResult runMove(const CommandArguments &arguments, CommandContext &context);
CommandResult runIndent(const CommandArguments &arguments, CommandContext &context);
CommandResult runOutdent(const CommandArguments &arguments, CommandContext &context);
CommandResult runSort(const CommandArguments &arguments, CommandContext &context);
CommandResult runRemove(const CommandArguments &arguments, CommandContext &context);
/// An empty icon or colour takes the item's own away.
CommandResult runUpdate(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
