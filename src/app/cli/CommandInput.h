#pragma once

#include "app/cli/CommandLine.h"

namespace orvelle {

// What comes from outside of the command line's own words.

/// Absent when the bytes are not UTF-8.
std::optional<QString> decodedText(QByteArrayView bytes);

/// Where the command reads input and its last value, or that of its option
/// "password", is a lone dash, puts standard input in its place, without the line end that closes it: plain
/// UTF-8 text of at most 48 MiB. Why not, if it cannot. Waits for the input's
/// end. A password that stands on the command line itself is refused, as every
/// user of the machine can read it there.
std::optional<CommandResult> readInput(CommandCall &call);

/// A call whose values were read, as arguments for the running application.
/// Nothing in the positional values is an option.
QStringList argumentsOf(const CommandCall &call);

} // namespace orvelle
