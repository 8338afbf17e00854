#pragma once

namespace orvelle {

/// The desktop's sounds. Main thread; returns at once.
class Sounds
{
public:
    virtual ~Sounds() = default;

    /// The sound for a countdown that has ended, else the bell.
    virtual void playAlarm() = 0;
};

} // namespace orvelle
