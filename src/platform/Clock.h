#pragma once

#include "base/Timestamp.h"

#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

/// A running timer. Destroying it cancels it.
class Timer
{
public:
    virtual ~Timer() = default;
};

/// The one source of the current time and of timers. Main thread only;
/// callbacks run on the main thread from the event loop, never from inside
/// the call that made the timer.
class Clock
{
public:
    virtual ~Clock() = default;

    virtual Timestamp now() const = 0;

    /// Runs `fire` once after `delay`, unless the timer is destroyed before.
    [[nodiscard]] virtual std::unique_ptr<Timer> singleShot(std::chrono::milliseconds delay,
                                                            std::function<void()> fire) = 0;

    /// Runs `fire` every `period`, first after one period.
    [[nodiscard]] virtual std::unique_ptr<Timer> repeating(std::chrono::milliseconds period,
                                                           std::function<void()> fire) = 0;

    /// Runs `fire` once when the wall clock shows `date` or later: on time after
    /// the machine has slept, and at once when the clock was set past it.
    [[nodiscard]] virtual std::unique_ptr<Timer> atDate(Timestamp date, std::function<void()> fire) = 0;

    /// Runs `fire` once after `delay` if `context` still lives then.
    virtual void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> fire) = 0;
};

} // namespace orvelle
