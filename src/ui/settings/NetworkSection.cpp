#include "ui/settings/NetworkSection.h"

#include "base/Notifications.h"
#include "widgets/network/NetworkManager.h"

namespace orvelle {

NetworkSection::NetworkSection(NetworkManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::Network, parent)
{
    using Mode = NetworkDisplayMode;
    addModeChoice(static_cast<int>(Mode::Disabled),
                  {{text("network.modeGraph"_text), static_cast<int>(Mode::Graph)},
                   {text("network.modeDiscreet"_text), static_cast<int>(Mode::Discreet)}},
                  {[&manager] { return static_cast<int>(manager.displayMode()); },
                   [&manager](int mode) { manager.setDisplayMode(static_cast<Mode>(mode)); }});
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    connect(&notifications, &Notifications::networkChanged, this, &WidgetSection::refresh);
}

} // namespace orvelle
