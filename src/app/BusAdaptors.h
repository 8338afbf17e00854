#pragma once

#include "app/SessionBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

namespace orvelle {

// What other programs of the session can ask for: these methods and no others,
// with arguments of these types. Nothing of it trusts the caller; what is known
// of the platform data is left alone, as nothing here needs it.

/// A call hands over at most so many documents, each of which asks the user.
constexpr qsizetype maxOpenedDocuments = 16;
/// More words than a command line of the system has.
constexpr qsizetype maxCommandArguments = 4096;
/// What an array on the bus can hold; the library would end the program for more.
constexpr qsizetype maxCommandOutput = 64 << 20;

/// org.freedesktop.Application, Desktop Entry Specification 1.5, "D-Bus
/// Activation". Of the platform data the "activation-token" is taken.
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
    /// Files of this machine only; others, and those beyond
    /// maxOpenedDocuments, are left out.
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
    CommandAdaptor(QObject *object, const QDBusConnection &bus, const BusRequests &requests)
        : QDBusAbstractAdaptor(object), m_bus(bus), m_requests(requests)
    {
    }

public slots:
    /// The working directory is absolute, or empty for one that is gone. Output
    /// as bytes, because a stored text may hold what a D-Bus string may
    /// not (NUL); above maxCommandOutput an error is the answer, and the caller
    /// carries out the command itself. The reply is sent when the command is
    /// over, and other calls are answered meanwhile.
    int RunCommand(const QStringList &arguments, const QString &workingDirectory, const QDBusMessage &call,
                   QByteArray &output, QByteArray &errorOutput);

private:
    QDBusConnection m_bus;
    const BusRequests &m_requests;
};

} // namespace orvelle
