#pragma once

namespace orvelle {

/// Whether a window could be shown: asked before the toolkit is, which would
/// abort the program where there is no display.
bool displayReachable();

} // namespace orvelle
