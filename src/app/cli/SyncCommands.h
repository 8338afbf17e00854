#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The synchronisation. What takes time is waited for, in the running
// application for less time than who asked waits for the answer.
CommandResult runSyncStatus(const CommandArguments &arguments, CommandContext &context);
CommandResult runSyncNow(const CommandArguments &arguments, CommandContext &context);
/// An existing document needs a word about what to do with it; without one
/// nothing is changed.
CommandResult runSyncConfigure(const CommandArguments &arguments, CommandContext &context);
CommandResult runSyncDisable(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
