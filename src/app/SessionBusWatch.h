#pragma once

#include <QDBusConnection>
#include <QObject>

#include <memory>

namespace orvelle {

class Clock;
class Timer;

/// Tells when the session's bus has ended and another one answers at its
/// address. The connections to the former are dead for good: each of our own
/// libraries' and the toolkit's keeps its one for as long as the process runs.
/// Main thread.
class SessionBusWatch : public QObject
{
    Q_OBJECT

public:
    /// `clock` outlives this. Does nothing without a bus.
    SessionBusWatch(const QDBusConnection &bus, Clock &clock, QObject *parent = nullptr);
    ~SessionBusWatch() override;

signals:
    /// Again and again, while there is another bus.
    void busIsAnother();

private slots:
    void busEnded();

private:
    Clock &m_clock;
    std::unique_ptr<Timer> m_looks;
};

} // namespace orvelle
