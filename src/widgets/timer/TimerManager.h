#pragma once

#include "base/Timestamp.h"
#include "widgets/timer/TimerTexts.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace orvelle {

class Alerts;
class Clock;
class DebugModeManager;
class DesktopNotifications;
class Notifications;
class Sounds;
class Timer;
class UserDefaults;

/// The timer widget: its settings and the one countdown that may be running.
/// A countdown ends at a date, whatever the machine does meanwhile, and is not
/// stored. Main thread.
class TimerManager : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Clock &clock;
        Alerts &alerts;
        Sounds &sounds;
        DesktopNotifications &desktopNotifications;
        /// Brings the application to the front.
        std::function<void()> activateApp;
    };
    explicit TimerManager(Services services, QObject *parent = nullptr);
    ~TimerManager() override;

    static QList<qint64> defaultPresets() { return {300, 600, 1500}; }

    bool isEnabled() const { return m_isEnabled; }
    /// Turning the widget off cancels the countdown, which nothing would show.
    void setEnabled(bool enabled);
    bool menuBarOnly() const { return m_menuBarOnly; }
    void setMenuBarOnly(bool only);
    /// Three durations in seconds, each above 0.
    const QList<qint64> &presets() const { return m_presets; }
    /// Does nothing unless there are three, each above 0.
    void setPresets(const QList<qint64> &presets);

    /// Begins a countdown in place of any other. Nothing happens for a
    /// duration of 0 or less.
    void start(qint64 seconds);
    void cancel();

    /// When the running countdown ends; absent when there is none.
    const std::optional<Timestamp> &endDate() const { return m_endDate; }
    bool isRunning() const;
    qint64 activeDuration() const { return m_activeDuration; }
    /// Whole seconds, rounded up; 0 when nothing runs.
    qint64 remainingSeconds() const;
    /// The share of the countdown that is over, 0 to 1.
    double progress() const;

private:
    void load();
    void stop();
    void timeIsUp();
    void announce();
    void changed();

    Services m_services;
    bool m_isEnabled = false;
    bool m_menuBarOnly = true;
    QList<qint64> m_presets;
    std::optional<Timestamp> m_endDate;
    qint64 m_activeDuration = 0;
    std::unique_ptr<Timer> m_fireTimer;
};

} // namespace orvelle
