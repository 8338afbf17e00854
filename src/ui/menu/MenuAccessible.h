#pragma once

namespace orvelle {

/// Tells assistive technology about menus: the panel is a popup menu whose
/// rows, and the buttons of a bottom row, are its items. Call once, before the
/// first menu is made; calling again does nothing.
void installMenuAccessibility();

} // namespace orvelle
