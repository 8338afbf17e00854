#include "platform/freedesktop/LogindPowerEvents.h"

#include "platform/freedesktop/TerminationSignals.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcPowerEvents, "PowerEvents", QtInfoMsg)

namespace {

QString logindService()
{
    return u"org.freedesktop.login1"_s;
}
QString managerPath()
{
    return u"/org/freedesktop/login1"_s;
}
QString managerInterface()
{
    return u"org.freedesktop.login1.Manager"_s;
}
QString sessionInterface()
{
    return u"org.freedesktop.login1.Session"_s;
}

QDBusMessage managerCall(const QString &method)
{
    auto call = QDBusMessage::createMethodCall(logindService(), managerPath(), managerInterface(), method);
    call.setAutoStartService(false);
    return call;
}

/// The socket of the system bus, by the D-Bus specification's default or the
/// environment; empty when the address is none of a file.
QString systemBusSocket()
{
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    if (address.isEmpty())
        return u"/run/dbus/system_bus_socket"_s;
    const QString prefix = u"unix:path="_s;
    return address.startsWith(prefix) ? address.mid(prefix.size()).section(u',', 0, 0) : QString();
}

/// The nearest folder above that exists: a change in it may bring the next.
QString existingFolderAbove(const QString &path)
{
    QString folder = QFileInfo(path).absolutePath();
    while (!QFileInfo(folder).isDir() && folder != QFileInfo(folder).absolutePath())
        folder = QFileInfo(folder).absolutePath();
    return folder;
}

} // namespace

LogindPowerEvents::LogindPowerEvents(const QDBusConnection &sessionBus, QObject *parent)
    : PowerEvents(parent), m_sessionBus(sessionBus), m_systemBus(QString())
{
}

LogindPowerEvents::~LogindPowerEvents()
{
    m_logind.reset();
    if (m_started)
        QDBusConnection::disconnectFromBus(m_connectionName);
}

void LogindPowerEvents::start()
{
    if (m_started)
        return;
    m_started = true;
    // A connection of our own, because the shared one is never tried again
    // after it failed.
    m_connectionName = u"orvelle-power-%1"_s.arg(quintptr(this));
    m_signals = std::make_unique<TerminationSignals>();
    connect(m_signals.get(), &TerminationSignals::received, this, [this] { powerOff("termination signal"); });
    listenToScreenSavers();
    joinSystemBus();
}

void LogindPowerEvents::joinSystemBus()
{
    m_systemBus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, m_connectionName);
    if (!m_systemBus.isConnected()) {
        QDBusConnection::disconnectFromBus(m_connectionName);
        watchForSystemBus();
        return;
    }
    m_busSocket.reset();
    m_logind =
        std::make_unique<QDBusServiceWatcher>(logindService(), m_systemBus, QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_logind.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                if (newOwner.isEmpty())
                    logindVanished();
                else
                    logindAppeared();
            });
    m_systemBus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                        SLOT(systemBusLost()));
    m_systemBus.connect(logindService(), managerPath(), managerInterface(), u"PrepareForShutdown"_s, this,
                        SLOT(prepareForShutdown(bool)));
    m_systemBus.connect(logindService(), managerPath(), managerInterface(), u"PrepareForSleep"_s, this,
                        SLOT(prepareForSleep(bool)));
    logindAppeared();
}

void LogindPowerEvents::systemBusLost()
{
    qCInfo(lcPowerEvents, "the system bus is gone");
    m_logind.reset();
    logindVanished();
    m_sessionPath.clear();
    QDBusConnection::disconnectFromBus(m_connectionName);
    joinSystemBus(); // it may be there again
}

void LogindPowerEvents::watchForSystemBus()
{
    const QString socket = systemBusSocket();
    if (!m_busSocket) {
        qCInfo(lcPowerEvents, "no system bus: shutdown and sleep are not announced");
        m_busSocket = std::make_unique<QFileSystemWatcher>();
        // From the event loop: joining destroys this watcher.
        connect(m_busSocket.get(), &QFileSystemWatcher::directoryChanged, this, &LogindPowerEvents::joinAgain,
                Qt::QueuedConnection);
    }
    if (socket.isEmpty())
        return;
    const QString folder = existingFolderAbove(socket);
    if (m_busSocket->directories().contains(folder) || !m_busSocket->addPath(folder))
        return;
    // It may have come just before it was watched for.
    QMetaObject::invokeMethod(this, &LogindPowerEvents::joinAgain, Qt::QueuedConnection);
}

void LogindPowerEvents::joinAgain()
{
    if (m_busSocket)
        joinSystemBus();
}

void LogindPowerEvents::logindAppeared()
{
    takeInhibitor();
    findSession();
}

void LogindPowerEvents::logindVanished()
{
    m_inhibitor = QDBusUnixFileDescriptor();
}

void LogindPowerEvents::takeInhibitor()
{
    if (m_poweringOff)
        return;
    const auto call = managerCall(u"Inhibit"_s)
                      << u"shutdown"_s << u"Orvelle"_s << u"Saving links and notes"_s << u"delay"_s;
    auto *pending = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *pending;
        if (reply.isValid()) {
            m_absenceLogged = false;
            m_inhibitor = reply.value();
        } else if (!std::exchange(m_absenceLogged, true)) {
            qCInfo(lcPowerEvents, "logind does not delay the shutdown: %ls", qUtf16Printable(reply.error().name()));
        }
    });
}

void LogindPowerEvents::findSession()
{
    const QString id = qEnvironmentVariable("XDG_SESSION_ID");
    const auto call = id.isEmpty() ? managerCall(u"GetSessionByPID"_s) << uint(QCoreApplication::applicationPid())
                                   : managerCall(u"GetSession"_s) << id;
    auto *pending = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *pending;
        if (!reply.isValid() || reply.value().path() == m_sessionPath)
            return; // outside of any session nothing can be locked
        m_sessionPath = reply.value().path();
        m_systemBus.connect(logindService(), m_sessionPath, u"org.freedesktop.DBus.Properties"_s,
                            u"PropertiesChanged"_s, this, SLOT(sessionPropertiesChanged(QString, QVariantMap)));
    });
}

void LogindPowerEvents::listenToScreenSavers()
{
    if (!m_sessionBus.isConnected())
        return;
    // From whichever path: desktops do not agree on it.
    for (const QString &interface : {u"org.freedesktop.ScreenSaver"_s, u"org.gnome.ScreenSaver"_s})
        m_sessionBus.connect({}, {}, interface, u"ActiveChanged"_s, this, SLOT(screenSaverChanged(bool)));
}

void LogindPowerEvents::releaseInhibitor()
{
    m_inhibitor = QDBusUnixFileDescriptor();
}

void LogindPowerEvents::sessionEnds()
{
    powerOff("end of the session");
}

void LogindPowerEvents::prepareForShutdown(bool begins)
{
    if (begins)
        powerOff("shutdown");
}

void LogindPowerEvents::prepareForSleep(bool begins)
{
    if (begins)
        emit willSleep();
    else
        emit didWake();
}

void LogindPowerEvents::sessionPropertiesChanged(const QString &interface, const QVariantMap &changed)
{
    // Lock and Unlock are requests to lockers. Of those that lock, only some tell
    // of the end, and these tell of both here.
    const auto hint = changed.constFind(u"LockedHint"_s);
    if (interface == sessionInterface() && hint != changed.constEnd())
        setScreensAsleep(hint->toBool());
}

void LogindPowerEvents::screenSaverChanged(bool active)
{
    setScreensAsleep(active);
}

void LogindPowerEvents::powerOff(const char *reason)
{
    if (std::exchange(m_poweringOff, true))
        return;
    qCInfo(lcPowerEvents, "the application is to end: %s", reason);
    emit willPowerOff();
}

void LogindPowerEvents::setScreensAsleep(bool asleep)
{
    if (std::exchange(m_screensAsleep, asleep) == asleep)
        return;
    if (asleep)
        emit screensDidSleep();
    else
        emit screensDidWake();
}

} // namespace orvelle
