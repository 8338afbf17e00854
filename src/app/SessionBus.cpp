#include "app/SessionBus.h"

#include "app/BusAdaptors.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>

namespace orvelle {

namespace {

/// Long enough for an application that is just starting on a busy machine.
constexpr int answerTimeout = 30'000;
constexpr int goneTimeout = 5'000;

QString applicationInterface()
{
    return QStringLiteral("org.freedesktop.Application");
}

QString commandInterface()
{
    return QStringLiteral("org.orvelle.Orvelle1");
}

} // namespace

bool prepareSessionBus()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return qgetenv("DBUS_SESSION_BUS_ADDRESS") != "disabled:";
    if (!runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus")))
        return true;
    // Otherwise the bus library would start a bus of its own for a display.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    return false;
}

QString busName()
{
    return QStringLiteral("org.orvelle.Orvelle");
}

QString busObjectPath()
{
    return QStringLiteral("/org/orvelle/Orvelle");
}

bool RunningInstance::exists() const
{
    return m_bus.isConnected() && m_bus.interface()->isServiceRegistered(busName());
}

QDBusMessage RunningInstance::call(const QString &interface, const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(busName(), busObjectPath(), interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return m_bus.call(message, QDBus::Block, answerTimeout);
}

std::optional<CommandResult> RunningInstance::run(const QStringList &arguments, const QString &workingDirectory,
                                                  bool onlyOnce) const
{
    const QDBusMessage reply = call(commandInterface(), QStringLiteral("RunCommand"), {arguments, workingDirectory});
    if (onlyOnce && reply.errorName() == QDBusError::errorString(QDBusError::NoReply)) {
        return CommandResult::refused(
            QStringLiteral("Orvelle ended or hung before it answered; the command may have been carried out."));
    }
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 3)
        return std::nullopt;
    const QVariantList answer = reply.arguments();
    return CommandResult{answer.at(0).toInt(), answer.at(1).toByteArray(), answer.at(2).toByteArray()};
}

bool RunningInstance::activate() const
{
    return call(applicationInterface(), QStringLiteral("Activate"), {QVariantMap()}).type() ==
           QDBusMessage::ReplyMessage;
}

bool RunningInstance::open(const QStringList &paths) const
{
    QStringList uris;
    for (const QString &path : paths)
        uris += QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    return call(applicationInterface(), QStringLiteral("Open"), {uris, QVariantMap()}).type() ==
           QDBusMessage::ReplyMessage;
}

bool RunningInstance::waitUntilGone() const
{
    QEventLoop loop;
    QDBusServiceWatcher watcher(busName(), m_bus, QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &loop, &QEventLoop::quit);
    if (!exists())
        return true;
    QTimer::singleShot(goneTimeout, &loop, &QEventLoop::quit);
    loop.exec();
    return !exists();
}

BusService::BusService(const QDBusConnection &bus, BusRequests requests, QObject *parent)
    : QObject(parent), m_bus(bus), m_requests(std::move(requests))
{
    new ApplicationAdaptor(this, m_requests);
    new CommandAdaptor(this, m_bus, m_requests);
}

BusService::~BusService()
{
    if (!m_bus.isConnected())
        return;
    m_bus.interface()->unregisterService(busName());
    m_bus.unregisterObject(busObjectPath());
}

bool BusService::acquireName()
{
    // The object first: whoever sees the name may call at once.
    m_bus.registerObject(busObjectPath(), this, QDBusConnection::ExportAdaptors);
    const auto reply = m_bus.interface()->registerService(busName(), QDBusConnectionInterface::DontQueueService,
                                                          QDBusConnectionInterface::DontAllowReplacement);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

} // namespace orvelle
