#pragma once

#include <QObject>

#include <memory>

namespace orvelle {

class Clock;
class Notifications;
class StatusItem;
class Timer;
class TimerManager;

/// Says under the tray icon how long the countdown still takes. Hosts read a
/// tool tip anew each time it changes, so it is told in whole minutes, and in
/// seconds only at the end. Main thread.
class TimerToolTip : public QObject
{
    Q_OBJECT

public:
    TimerToolTip(const TimerManager &timer, StatusItem &statusItem, Clock &clock, const Notifications &notifications,
                 QObject *parent = nullptr);
    ~TimerToolTip() override;

private:
    void update();

    const TimerManager &m_timer;
    StatusItem &m_statusItem;
    Clock &m_clock;
    std::unique_ptr<Timer> m_next;
    bool m_shown = false;
};

} // namespace orvelle
