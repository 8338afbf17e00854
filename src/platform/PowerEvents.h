#pragma once

#include <QObject>

namespace orvelle {

/// The machine's and the session's comings and goings. Main thread.
class PowerEvents : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to listen; services that start later are joined by themselves.
    virtual void start() = 0;

signals:
    /// The system shuts down, the session ends, or the process was told to
    /// end (SIGTERM, SIGHUP, SIGINT). Emitted once; the application should
    /// save and quit without asking.
    void willPowerOff();
    void willSleep();
    void didWake();
    void screensDidSleep();
    void screensDidWake();
};

} // namespace orvelle
