#pragma once

namespace orvelle {

/// From here on a crash of this process leaves no core file, in which
/// passwords, copied texts and notes could be found later. The process stays
/// open to the user's debugger and to the desktop's portals until then, and
/// programs that it starts are as they would be. Once, from main().
///
/// A thread that overflows its stack is killed by the kernel before anything
/// can be done; only the main thread has a second stack for this.
void leaveNoCoreFile();

} // namespace orvelle
