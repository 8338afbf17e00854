#pragma once

#include <QGuiApplication>

namespace orvelle {

/// Whether our windows are shown by a Wayland compositor: it alone places them
/// and gives them the focus, and draws no frame unless it offers to. Needs the
/// application object.
inline bool isOnWayland()
{
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

} // namespace orvelle
