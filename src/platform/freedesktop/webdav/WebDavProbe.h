#pragma once

#include "platform/freedesktop/webdav/WebDavCopies.h"
#include "platform/freedesktop/webdav/WebDavSession.h"

namespace orvelle {

/// By what a server lets us replace a file without overwriting a change.
struct WebDavAbilities {
    bool conditions = false; ///< refuses a write whose condition fails, and gives tags
    bool locks = false;      ///< offers them; without conditions: and they keep others out

    bool areEnough() const { return conditions || locks; }
};

/// Tries a server out on a file of its own, which it removes again; makes the
/// folder when it is missing, as what is not there cannot be tried. Throws
/// what keeps it from finding out. On a worker thread.
WebDavAbilities probeWebDav(WebDavSession &session, const WebDavCopies &copies);

} // namespace orvelle
