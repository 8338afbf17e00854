#pragma once

#include <QString>

namespace orvelle {

/// Whether the session is one of the desktop of this name, as it stands in
/// XDG_CURRENT_DESKTOP ("KDE", "GNOME").
/// Source: Desktop Entry Specification, "OnlyShowIn".
inline bool isCurrentDesktop(QStringView name)
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(name);
}

} // namespace orvelle
