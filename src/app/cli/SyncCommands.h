#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The synchronisation. What takes time is answered when it is over, in the
// running application before who asked stops waiting for the answer.
CommandResult runSyncStatus(const CommandArguments &arguments, CommandContext &context);
void beginSyncNow(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
/// An existing document needs a word about what to do with it; without one
/// nothing is changed.
void beginSyncConfigure(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);
void beginSyncDisable(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);

} // namespace orvelle
