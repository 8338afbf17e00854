#pragma once

#include "ui/menu/rows/WidgetRowView.h"
#include "widgets/calendar/CalendarEventInfo.h"

#include <functional>

namespace orvelle {

class CalendarManager;
class Notifications;

/// The next events, a line each. A line brings up the calendar application; a
/// button at its end joins the event's meeting. Without access the one line
/// leads to the settings.
class CalendarRowView : public WidgetRowView
{
    Q_OBJECT

public:
    /// Where a choice leads. The menu, and this row with it, is gone before.
    struct Doors {
        std::function<void()> closeMenu;
        std::function<void()> openCalendar;
        std::function<void()> openSettings;
        std::function<void(const QUrl &)> openAddress;
    };
    CalendarRowView(CalendarManager &manager, const Notifications &notifications, Doors doors, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Line;

    void refresh();
    void rebuild();
    void place();
    void go(const std::function<void()> &through);

    CalendarManager &m_manager;
    Doors m_doors;
    QList<Line *> m_lines;
    QList<CalendarEventInfo> m_events;
    QStringList m_times; ///< of the events, as shown
    QString m_iconColor;
    bool m_accessGranted = false;
    bool m_hasStripes = false; ///< one of the calendars has a colour
    bool m_built = false;
};

} // namespace orvelle
