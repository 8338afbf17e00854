#pragma once

#include "app/SessionBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

namespace orvelle {

/// org.freedesktop.Application, Desktop Entry Specification 1.5, "D-Bus
/// Activation".
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject *object, const BusRequests &requests)
        : QDBusAbstractAdaptor(object), m_requests(requests)
    {
    }

public slots:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameter, const QVariantMap &platformData);

private:
    const BusRequests &m_requests;
};

/// org.orvelle.Orvelle1: the command line of another process.
class CommandAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.orvelle.Orvelle1")

public:
    CommandAdaptor(QObject *object, const BusRequests &requests) : QDBusAbstractAdaptor(object), m_requests(requests) {}

public slots:
    /// Output as bytes, because a stored text may hold what a D-Bus string may
    /// not (NUL).
    int RunCommand(const QStringList &arguments, const QString &workingDirectory, QByteArray &output,
                   QByteArray &errorOutput);

private:
    const BusRequests &m_requests;
};

} // namespace orvelle
