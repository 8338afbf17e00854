#pragma once

#include "platform/Clock.h"

namespace orvelle {

/// Reads figures at regular intervals on one thread beside the main one. What
/// falls due together is read in one go and handed over in one go, so that
/// several widgets cost as few wake-ups as one.
class BackgroundSampler
{
public:
    /// Hands a result over, on the main thread. May be empty.
    using Deliver = std::function<void()>;
    /// Runs on the sampler's thread, one job at a time. `seconds` come from a
    /// clock that never jumps and count from anywhere. A job owns what it works
    /// on: it may still run once while its timer is being destroyed.
    using Job = std::function<Deliver(double seconds)>;
    enum class First { AtOnce, Later };

    virtual ~BackgroundSampler() = default;

    /// Runs `job` every `period`, first at once or after about one period (half
    /// a period to one and a half, so that equal periods coincide). Destroying
    /// the timer ends it; a result on its way is dropped. Main thread.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::milliseconds period, First first, Job job) = 0;
};

} // namespace orvelle
