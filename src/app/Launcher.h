#pragma once

namespace orvelle {

/// The whole program: reads the command line, asks the running application or
/// becomes it, or carries out a command on its own. Gives the exit code.
int launch(int argc, char **argv);

} // namespace orvelle
