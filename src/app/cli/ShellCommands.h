#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The running application and its log.
CommandResult runToggle(const CommandArguments &arguments, CommandContext &context);
CommandResult runSettings(const CommandArguments &arguments, CommandContext &context);
CommandResult runQuickAdd(const CommandArguments &arguments, CommandContext &context);
CommandResult runQuit(const CommandArguments &arguments, CommandContext &context);
CommandResult runLog(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
