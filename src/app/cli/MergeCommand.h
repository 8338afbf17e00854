#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

/// Merges the links of two documents as a synchronisation does, REMOTE being
/// the other machine's. The result is LOCAL with the merged links and the
/// later of the two dates; the user's own tree has no part in it. What was
/// removed is told on standard error.
void beginMerge(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer);

} // namespace orvelle
