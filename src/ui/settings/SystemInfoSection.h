#pragma once

#include "ui/settings/WidgetSection.h"

namespace orvelle {

class Notifications;
class SystemInfoManager;

/// The settings of the system widget.
class SystemInfoSection : public WidgetSection
{
    Q_OBJECT

public:
    SystemInfoSection(SystemInfoManager &manager, const Notifications &notifications, QWidget *parent);
};

} // namespace orvelle
