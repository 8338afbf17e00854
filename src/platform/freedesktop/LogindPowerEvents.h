#pragma once

#include "platform/PowerEvents.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QFileSystemWatcher>

#include <memory>

namespace orvelle {

class TerminationSignals;

/// Power and session events from logind on the system bus, the screen saver on
/// the session bus, and the process's termination signals. A system without
/// bus or logind is a stated condition, logged once; both are joined when they
/// appear, also again.
class LogindPowerEvents : public PowerEvents
{
    Q_OBJECT

public:
    /// One instance at a time may be started: signal handlers belong to the
    /// process.
    explicit LogindPowerEvents(const QDBusConnection &sessionBus = QDBusConnection::sessionBus(),
                               QObject *parent = nullptr);
    /// Lets go of the shutdown inhibitor and restores the signal handlers.
    ~LogindPowerEvents() override;

    void start() override;

    /// Whether logind waits for this process (at most its InhibitDelayMaxSec)
    /// before it ends the session.
    bool delaysShutdown() const { return m_inhibitor.isValid(); }
    /// Everything is saved; the shutdown may go on.
    void releaseInhibitor();

public slots:
    /// The session manager ends the session.
    void sessionEnds();

private slots:
    void systemBusLost();
    void prepareForShutdown(bool begins);
    void prepareForSleep(bool begins);
    void sessionPropertiesChanged(const QString &interface, const QVariantMap &changed);
    void screenSaverChanged(bool active);

private:
    void joinSystemBus();
    void watchForSystemBus();
    void joinAgain();
    void logindAppeared();
    void logindVanished();
    void takeInhibitor();
    void findSession();
    void listenToScreenSavers();
    void powerOff(const char *reason);
    void setScreensAsleep(bool asleep);

    QDBusConnection m_sessionBus;
    QDBusConnection m_systemBus;
    std::unique_ptr<QDBusServiceWatcher> m_logind;
    std::unique_ptr<QFileSystemWatcher> m_busSocket;
    std::unique_ptr<TerminationSignals> m_signals;
    QDBusUnixFileDescriptor m_inhibitor;
    QString m_connectionName;
    QString m_sessionPath;
    bool m_absenceLogged = false;
    bool m_started = false;
    bool m_poweringOff = false;
    bool m_screensAsleep = false;
};

} // namespace orvelle
