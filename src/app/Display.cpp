#include "app/Display.h"

#include <QtGlobal>

#include <xcb/xcb.h>

#include <memory>

namespace orvelle {

bool displayReachable()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && !platform.startsWith("xcb"))
        return true;
    if (platform.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return true;
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return false;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                  &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

} // namespace orvelle
