#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace orvelle {

/// The menu's widgets; declaration order is the default menu order.
enum class WidgetType { Clipboard, QuickLaunch, Calendar, Weather, SystemInfo, Network, Timer };

/// All seven, in default order.
const QList<WidgetType> &defaultWidgetOrder();

QString rawValue(WidgetType type);
std::optional<WidgetType> widgetTypeFromRawValue(QStringView raw);

} // namespace orvelle
