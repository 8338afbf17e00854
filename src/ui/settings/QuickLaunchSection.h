#pragma once

#include "ui/settings/WidgetSection.h"

class QPushButton;

namespace orvelle {

class Applications;
class Notifications;
class QuickLaunchManager;
class QuickLaunchSlotList;

/// The settings of the quick-launch widget: its style and what is in its slots.
class QuickLaunchSection : public WidgetSection
{
    Q_OBJECT

public:
    QuickLaunchSection(QuickLaunchManager &manager, const Applications &applications,
                       const Notifications &notifications, QWidget *parent);

private:
    QWidget *makeButtons();
    void choose();
    void take(int slot, const QString &desktopFile);
    void removeSelected();
    void refreshButtons();

    QuickLaunchManager &m_manager;
    const Applications &m_applications;
    QuickLaunchSlotList *m_slots;
    QPushButton *m_choose = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_up = nullptr;
    QPushButton *m_down = nullptr;
};

} // namespace orvelle
