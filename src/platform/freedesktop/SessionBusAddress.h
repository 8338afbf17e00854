#pragma once

#include <QFileInfo>
#include <QString>
#include <QtGlobal>

namespace orvelle {

/// Whether there is an address of a session bus, given or by the convention of
/// systemd. Without one the libraries of GLib start a bus of their own on X11,
/// and wait for it. Any thread.
inline bool hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

} // namespace orvelle
