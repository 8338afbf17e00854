#pragma once

#include "ui/settings/WidgetSection.h"

namespace orvelle {

class ClipboardManager;
class Notifications;

/// The settings of the clipboard's history.
class ClipboardSection : public WidgetSection
{
    Q_OBJECT

public:
    ClipboardSection(ClipboardManager &manager, const Notifications &notifications, QWidget *parent);

private:
    void addColors(ClipboardManager &manager);
};

} // namespace orvelle
