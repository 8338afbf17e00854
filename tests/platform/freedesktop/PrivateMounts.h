#pragma once

#include <sched.h>
#include <sys/mount.h>

namespace orvelle::test {

/// Gives this process a mount table of its own, so that what a test mounts is
/// seen by nobody else and is gone with it. False where that is not permitted.
inline bool havePrivateMounts()
{
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace orvelle::test
