#pragma once

#include "platform/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>

#include <optional>

namespace orvelle {

/// Messages by org.freedesktop.Notifications of the Desktop Notifications
/// Specification, version 1.2. Never blocks. A service that is started again
/// knows nothing of the messages before.
class BusNotifications : public QObject, public DesktopNotifications
{
    Q_OBJECT

public:
    explicit BusNotifications(const QDBusConnection &sessionBus, QObject *parent = nullptr);

    void show(const QString &tag, const Message &message) override;
    void withdraw(const QString &tag) override;

private:
    struct Shown {
        uint id = 0;                 ///< 0 until the service has answered
        bool isAsked = false;        ///< and has not answered yet, so that nothing can be replaced
        bool withdrawn = false;      ///< meanwhile
        std::optional<Message> next; ///< to be shown after the answer
    };

    void send(const QString &tag, const Message &message);
    void answered(const QString &tag, uint id);
    void serviceEnded();

    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    QHash<QString, Shown> m_shown;
    int m_services = 0; ///< that have ended; their answers no longer count
};

} // namespace orvelle
