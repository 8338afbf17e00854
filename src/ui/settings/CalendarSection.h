#pragma once

#include "ui/settings/WidgetSection.h"

namespace orvelle {

class CalendarManager;
class FolderChooser;
class Notifications;

/// The settings of the calendar widget.
class CalendarSection : public WidgetSection
{
    Q_OBJECT

public:
    /// The folders of calendar files; see SettingAccess.
    using Folders = SettingAccess<QStringList>;

    CalendarSection(CalendarManager &manager, const Notifications &notifications, const Folders &folders,
                    FolderChooser &chooser, QWidget *parent);

private:
    QWidget *makeColor(CalendarManager &manager);
    QWidget *makeCount(CalendarManager &manager);
    QWidget *makeFolders(const Folders &folders, FolderChooser &chooser);
};

} // namespace orvelle
