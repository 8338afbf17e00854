#pragma once

#include "platform/HostMenuSource.h"
#include "ui/menu/MenuPanel.h"

namespace orvelle {

/// A widget's row as text for a host that draws menus itself: what a screen
/// reader says of the row, and below it what its buttons do. The row that is
/// drawn elsewhere is made for a moment, asked, and pressed when the host says
/// so; it is never shown. Absent for a widget without a row.
std::optional<HostMenuItem> hostWidgetItem(WidgetType widget, const WidgetRowFactory &makeRow);

/// The symbol that stands for the widget.
QString hostWidgetSymbol(WidgetType widget);

} // namespace orvelle
