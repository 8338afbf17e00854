#pragma once

class QWidget;

namespace orvelle {

/// Leaves the wheel to whatever scrolls `page` while the pointer is over a
/// choice or a number there that has not the focus: else scrolling past one
/// would change it. For what is on the page when this is called.
void leaveWheelToPage(QWidget *page);

} // namespace orvelle
