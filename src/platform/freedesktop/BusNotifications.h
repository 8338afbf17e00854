#pragma once

#include "platform/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>

namespace orvelle {

/// Messages by org.freedesktop.Notifications of the Desktop Notifications
/// Specification, version 1.2.
class BusNotifications : public QObject, public DesktopNotifications
{
    Q_OBJECT

public:
    explicit BusNotifications(const QDBusConnection &sessionBus, QObject *parent = nullptr);

    void show(const QString &tag, const Message &message) override;
    void withdraw(const QString &tag) override;

private:
    struct Shown {
        uint id = 0; ///< 0 until the service has answered
        int inAnswer = 0;
        bool withdrawn = false;
    };

    void answered(const QString &tag, uint id);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    QHash<QString, Shown> m_shown;
};

} // namespace orvelle
