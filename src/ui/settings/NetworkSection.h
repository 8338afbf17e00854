#pragma once

#include "ui/settings/WidgetSection.h"

namespace orvelle {

class Notifications;
class NetworkManager;

/// The settings of the network widget.
class NetworkSection : public WidgetSection
{
    Q_OBJECT

public:
    NetworkSection(NetworkManager &manager, const Notifications &notifications, QWidget *parent);
};

} // namespace orvelle
