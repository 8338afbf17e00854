#pragma once

#include "ui/settings/WidgetSection.h"

namespace orvelle {

class Notifications;
class TimerManager;

/// The settings of the timer widget: its three durations, and a countdown of
/// any length.
class TimerSection : public WidgetSection
{
    Q_OBJECT

public:
    TimerSection(TimerManager &manager, const Notifications &notifications, QWidget *parent);

private:
    QWidget *makePresets();
    QWidget *makeCustom();

    TimerManager &m_manager;
};

} // namespace orvelle
