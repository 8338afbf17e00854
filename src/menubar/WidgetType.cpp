#include "menubar/WidgetType.h"

namespace orvelle {

namespace {

struct Row {
    WidgetType type;
    QLatin1StringView raw;
};

constexpr Row table[] = {
    {WidgetType::Clipboard, QLatin1StringView("clipboard")},
    {WidgetType::QuickLaunch, QLatin1StringView("quickLaunch")},
    {WidgetType::Calendar, QLatin1StringView("calendar")},
    {WidgetType::Weather, QLatin1StringView("weather")},
    {WidgetType::SystemInfo, QLatin1StringView("systemInfo")},
    {WidgetType::Network, QLatin1StringView("network")},
    {WidgetType::Timer, QLatin1StringView("timer")},
};

} // namespace

const QList<WidgetType> &defaultWidgetOrder()
{
    static const QList<WidgetType> order = [] {
        QList<WidgetType> types;
        for (const Row &row : table)
            types += row.type;
        return types;
    }();
    return order;
}

QString rawValue(WidgetType type)
{
    for (const Row &row : table) {
        if (row.type == type)
            return row.raw;
    }
    Q_UNREACHABLE();
}

std::optional<WidgetType> widgetTypeFromRawValue(QStringView raw)
{
    for (const Row &row : table) {
        if (raw == row.raw)
            return row.type;
    }
    return std::nullopt;
}

} // namespace orvelle
