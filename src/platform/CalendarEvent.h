#pragma once

#include "base/Timestamp.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace orvelle {

/// One occurrence of an event as a calendar has it. Days of all-day events
/// begin at midnight of the present time zone, as do times without a zone.
struct CalendarEvent {
    QString title;
    Timestamp start;
    Timestamp end; ///< not before start; of an all-day event the midnight after its last day
    bool isAllDay = false;
    bool isCancelled = false;
    bool isDeclined = false; ///< by the user
    std::optional<QString> externalIdentifier;
    QString calendarColor;   ///< "#rrggbb" or a CSS name; empty when the calendar has none
    QStringList conferences; ///< addresses that the organiser gave as ways to join, best first
    QString url;
    QString location;
    QString description; ///< may be shortened
    friend bool operator==(const CalendarEvent &, const CalendarEvent &) = default;
};

} // namespace orvelle
