#pragma once

#include "base/Result.h"

#include <QString>

namespace orvelle {

/// The desktop's list of what it starts when the user logs in, as far as it is
/// about this application. The truth is the desktop's: nothing is remembered
/// here. Main thread.
class LaunchAtLogin
{
public:
    enum class Status {
        Enabled,  ///< it will be started
        Disabled, ///< it will not
    };
    /// Why a change was not made, in one sentence for the log.
    struct Error {
        QString description;
    };
    struct Done {
    };
    using Outcome = Result<Done, Error>;

    virtual ~LaunchAtLogin() = default;

    /// Read anew each time.
    virtual Status status() const = 0;
    /// Afterwards the status is Enabled, or an error tells why not.
    virtual Outcome registerApplication() = 0;
    /// Afterwards the status is Disabled, or an error tells why not.
    virtual Outcome unregisterApplication() = 0;
    /// Lets an existing entry start this very program again after it was moved
    /// or replaced by another version. Makes none, and switches none on.
    virtual Outcome followProgram() = 0;
};

} // namespace orvelle
