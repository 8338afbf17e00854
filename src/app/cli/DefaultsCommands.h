#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

struct CommandArguments;

// The settings, one by one. Values are given and printed in the same forms.
CommandResult runDefaultsList(const CommandArguments &arguments, CommandContext &context);
CommandResult runDefaultsRead(const CommandArguments &arguments, CommandContext &context);
CommandResult runDefaultsWrite(const CommandArguments &arguments, CommandContext &context);
CommandResult runDefaultsDelete(const CommandArguments &arguments, CommandContext &context);

} // namespace orvelle
