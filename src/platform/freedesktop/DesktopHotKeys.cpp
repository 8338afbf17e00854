#include "platform/freedesktop/DesktopHotKeys.h"

#include "platform/freedesktop/CurrentDesktop.h"
#include "platform/freedesktop/kde/KdeHotKeys.h"
#include "platform/freedesktop/portal/PortalHotKeys.h"
#include "platform/freedesktop/wayland/WaylandKeymap.h"
#include "platform/freedesktop/x11/XcbHotKeys.h"

namespace orvelle {

using namespace Qt::StringLiterals;

std::unique_ptr<HotKeyService> desktopHotKeys(Clock &clock, const QString &appId, const QString &description)
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return std::make_unique<XcbHotKeys>(clock);
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"orvelle-shortcuts"_s);
    if (isCurrentDesktop(u"KDE"))
        return std::make_unique<KdeHotKeys>(
            KdeHotKeys::Surroundings{bus, clock, appId, u"Orvelle"_s, description, &waylandKeymap});
    return std::make_unique<PortalHotKeys>(PortalHotKeys::Surroundings{bus, clock, appId, description, &waylandKeymap});
}

} // namespace orvelle
