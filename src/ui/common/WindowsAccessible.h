#pragma once

namespace orvelle {

/// Lets assistive technology find the open popups, know our windows for windows
/// and click boxes: the toolkit lists no popups, calls a window that is of none
/// of its own classes a mere container, and checks a box behind the back of
/// whoever waits for clicks. Call once, before the first window is made;
/// calling again does nothing.
void installWindowAccessibility();

} // namespace orvelle
