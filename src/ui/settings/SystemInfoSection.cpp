#include "ui/settings/SystemInfoSection.h"

#include "base/Notifications.h"
#include "widgets/systeminfo/SystemInfoManager.h"

namespace orvelle {

SystemInfoSection::SystemInfoSection(SystemInfoManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::SystemInfo, parent)
{
    using Mode = SystemInfoDisplayMode;
    addModeChoice(static_cast<int>(Mode::Disabled),
                  {{text("systemInfo.modeTerminal"_text), static_cast<int>(Mode::Terminal)},
                   {text("systemInfo.modeDiscreet"_text), static_cast<int>(Mode::Discreet)}},
                  {[&manager] { return static_cast<int>(manager.displayMode()); },
                   [&manager](int mode) { manager.setDisplayMode(static_cast<Mode>(mode)); }});
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    connect(&notifications, &Notifications::systemInfoChanged, this, &WidgetSection::refresh);
}

} // namespace orvelle
