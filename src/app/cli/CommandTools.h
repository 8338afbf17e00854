#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

namespace orvelle {

// What several commands need.

/// A path given relative to the caller's folder as an absolute one; anything
/// else as it is.
QString expandedAddress(const QString &text, const QString &workingDirectory);

/// Done with this output, unless the tree could not be written.
CommandResult storedOrRefused(const CommandContext &context, const QByteArray &out);

CommandResult noSuchItem();
CommandResult noSuchGroup();
CommandResult noSuchAddress();

} // namespace orvelle
