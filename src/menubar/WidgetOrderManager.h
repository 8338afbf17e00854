#pragma once

#include "menubar/WidgetType.h"

#include <QObject>

namespace orvelle {

class DebugModeManager;
class Notifications;
class UserDefaults;

/// The order that raw values stand for: texts that name no widget are left out,
/// widgets that are missing come last, in default order.
QList<WidgetType> widgetOrderFromTexts(const QStringList &rawValues);

/// The user's order of the widgets. Every change is saved and announced
/// (syncableSettingsChanged, then widgetOrderChanged). Main thread only.
class WidgetOrderManager : public QObject
{
    Q_OBJECT

public:
    WidgetOrderManager(UserDefaults &defaults, DebugModeManager &debugMode, Notifications &notifications,
                       QObject *parent = nullptr);

    const QList<WidgetType> &order() const { return m_order; }
    void setOrder(const QList<WidgetType> &order);

    bool canMoveUp(WidgetType widget) const;
    bool canMoveDown(WidgetType widget) const;
    void moveUp(WidgetType widget);
    void moveDown(WidgetType widget);

    /// Puts `from` directly before `to`, in either direction: in [A, B, C, D]
    /// moving A to C gives [B, A, C, D]. The last place is reached with
    /// moveDown().
    void move(WidgetType from, WidgetType to);

signals:
    void orderChanged();

private:
    QString orderKey() const;
    void load();

    UserDefaults &m_defaults;
    DebugModeManager &m_debugMode;
    Notifications &m_notifications;
    QList<WidgetType> m_order;
};

} // namespace orvelle
