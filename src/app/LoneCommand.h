#pragma once

#include "app/cli/CommandLine.h"

namespace orvelle {

/// Carries out a command without a running application, straight on the
/// user's settings. Needs a QCoreApplication, no display and no bus.
CommandResult runLoneCommand(const CommandCall &call, const QString &workingDirectory);

} // namespace orvelle
