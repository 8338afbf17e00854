#pragma once

#include "platform/Clock.h"

namespace orvelle {

/// The system's wall clock and the event loop's timers.
///
/// A timer never fires before its delay has passed on the monotonic clock.
/// Delays of a second and more may fire up to 5 %, at most 2 seconds, late, so
/// that the kernel can serve several of them in one wake-up; shorter ones are
/// precise. The monotonic clock stands still while the machine sleeps.
class SystemClock : public Clock
{
public:
    Timestamp now() const override;
    std::unique_ptr<Timer> singleShot(std::chrono::milliseconds delay, std::function<void()> fire) override;
    /// Ticks lie on a grid of `period` from the call; ticks that were missed
    /// (a blocked event loop) are dropped, not made up for.
    std::unique_ptr<Timer> repeating(std::chrono::milliseconds period, std::function<void()> fire) override;
    /// Within milliseconds of the date. Where the system has no such timers left
    /// it waits on the monotonic clock.
    std::unique_ptr<Timer> atDate(Timestamp date, std::function<void()> fire) override;
    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> fire) override;
};

} // namespace orvelle
