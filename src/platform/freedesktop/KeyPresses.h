#pragma once

#include "base/Timestamp.h"

#include <optional>
#include <utility>

namespace orvelle {

/// Tells presses of a hot key from the repetitions of one that is held down.
/// Not every desktop tells the release.
class KeyPresses
{
public:
    /// True for a new one.
    bool pressed(Timestamp now)
    {
        // A desktop that repeats does it faster than this.
        constexpr double repeatSeconds = 0.7;
        const auto before = std::exchange(m_last, now);
        return !before || now - *before >= repeatSeconds;
    }
    void released() { m_last.reset(); }

private:
    std::optional<Timestamp> m_last; ///< and not released, as far as is known
};

} // namespace orvelle
