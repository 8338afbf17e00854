#pragma once

#include "base/PatientThreads.h"
#include "platform/Sounds.h"

namespace orvelle {

/// Sounds of the desktop's sound theme by libcanberra, else the X server's
/// bell. Talking to the sound server may take its time and is done beside the
/// main thread.
class CanberraSounds : public Sounds
{
public:
    /// `bell` rings when no sound could be played; called on another thread,
    /// where a sound server hangs also after this is gone.
    explicit CanberraSounds(std::function<void()> bell = ringXBell);

    void playAlarm() override;

    /// Waits until every sound so far has been handed to the sound server.
    void waitUntilHandedOver() { m_player.waitForAll(); }

    static void ringXBell();

private:
    std::function<void()> m_bell;
    PatientThreads m_player{1};
};

} // namespace orvelle
