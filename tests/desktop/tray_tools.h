#pragma once

#include "platform/StatusItem.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>

#include <functional>

namespace orvelle::test {

/// Runs the event loop until `done` holds. False after `milliseconds`.
bool waitFor(const std::function<bool()> &done, int milliseconds = 10'000);
/// Lets everything happen that is on its way: for what must not happen.
void settle();

/// A further connection to the session bus, so that a test can be another program.
class BusClient
{
public:
    BusClient();
    ~BusClient();
    const QDBusConnection &bus() const { return m_bus; }
    /// Calls and runs the event loop until the answer or error is there.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;

private:
    QString m_name;
    QDBusConnection m_bus;
};

/// An object whose methods a test fills in; calls to others are refused.
class StubObject : public QDBusVirtualObject
{
public:
    using Method = std::function<QDBusMessage(const QDBusMessage &)>;
    QHash<QString, Method> methods;
    QStringList calls; ///< names, in order

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override;
};

/// A square frame of the colour that is asked for, free at the corners.
QImage paintFrame(int side, const QColor &color);

/// Real input to the X server.
void pointer(const QStringList &xdotoolArguments);
void clickAt(const QPoint &position, int button = 1);
/// The screen as it is shown now.
QImage screenshot();

} // namespace orvelle::test
