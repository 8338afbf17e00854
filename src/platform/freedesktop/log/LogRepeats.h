#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace orvelle {

/// Decides which lines of a log are worth writing: the same one is repeated
/// at most once within a minute, whatever goes on. Not for several threads at
/// once.
class LogRepeats
{
public:
    static constexpr double span = 60; ///< seconds

    /// Absent for a line that is to be kept back; else how often it was kept
    /// back since it was last written. `now` counts seconds from anywhere and
    /// never goes back.
    std::optional<int> admit(const QString &line, double now);

private:
    struct Written {
        double last;
        double before; ///< the time before the last
        int keptBack = 0;
    };
    static constexpr qsizetype mostKnown = 512; ///< then those of old are forgotten

    QHash<QString, Written> m_written;
};

} // namespace orvelle
