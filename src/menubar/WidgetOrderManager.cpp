#include "menubar/WidgetOrderManager.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

namespace orvelle {

// A widget named twice stays so.
QList<WidgetType> widgetOrderFromTexts(const QStringList &rawValues)
{
    QList<WidgetType> order;
    for (const QString &raw : rawValues) {
        if (const auto type = widgetTypeFromRawValue(raw))
            order += *type;
    }
    for (const WidgetType type : defaultWidgetOrder()) {
        if (!order.contains(type))
            order += type;
    }
    return order;
}

WidgetOrderManager::WidgetOrderManager(UserDefaults &defaults, DebugModeManager &debugMode,
                                       Notifications &notifications, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_debugMode(debugMode), m_notifications(notifications)
{
    load();
    connect(&notifications, &Notifications::debugModeChanged, this, &WidgetOrderManager::load);
    connect(&defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        if (keys.contains(orderKey()))
            load();
    });
}

QString WidgetOrderManager::orderKey() const
{
    return m_debugMode.key(QStringLiteral("WidgetOrder"));
}

void WidgetOrderManager::load()
{
    const auto stored = m_defaults.get<QStringList>(orderKey());
    const QList<WidgetType> order = stored ? widgetOrderFromTexts(*stored) : defaultWidgetOrder();
    if (order == m_order)
        return;
    m_order = order;
    emit orderChanged();
}

void WidgetOrderManager::setOrder(const QList<WidgetType> &order)
{
    if (order == m_order)
        return;
    m_order = order;
    QStringList raw;
    for (const WidgetType type : order)
        raw += rawValue(type);
    // A failed write is reported by the store itself; the order holds for this run.
    static_cast<void>(m_defaults.write(orderKey(), raw));
    emit orderChanged();
    emit m_notifications.syncableSettingsChanged();
    emit m_notifications.widgetOrderChanged();
}

bool WidgetOrderManager::canMoveUp(WidgetType widget) const
{
    return m_order.indexOf(widget) > 0;
}

bool WidgetOrderManager::canMoveDown(WidgetType widget) const
{
    const qsizetype index = m_order.indexOf(widget);
    return index >= 0 && index < m_order.size() - 1;
}

void WidgetOrderManager::moveUp(WidgetType widget)
{
    if (!canMoveUp(widget))
        return;
    QList<WidgetType> order = m_order;
    const qsizetype index = order.indexOf(widget);
    order.swapItemsAt(index, index - 1);
    setOrder(order);
}

void WidgetOrderManager::moveDown(WidgetType widget)
{
    if (!canMoveDown(widget))
        return;
    QList<WidgetType> order = m_order;
    const qsizetype index = order.indexOf(widget);
    order.swapItemsAt(index, index + 1);
    setOrder(order);
}

void WidgetOrderManager::move(WidgetType from, WidgetType to)
{
    if (from == to || !m_order.contains(from) || !m_order.contains(to))
        return;
    QList<WidgetType> order = m_order;
    order.removeAt(order.indexOf(from));
    order.insert(order.indexOf(to), from);
    setOrder(order);
}

} // namespace orvelle
