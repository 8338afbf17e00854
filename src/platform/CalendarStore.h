#pragma once

#include "base/Timestamp.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
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

/// The user's calendars, wherever the desktop keeps them. Main thread; answers
/// come from the event loop, never from inside the call.
class CalendarStore : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    enum class Access { NotDetermined, Denied, Granted };
    struct AccessAnswer {
        bool granted = false;
        QString error; ///< in the system's words; empty when there was none
    };

    /// Whether there is anything to read calendars from.
    virtual bool isAvailable() const = 0;
    virtual Access access() const = 0;
    virtual void requestAccess(std::function<void(const AccessAnswer &)> done) = 0;

    /// The events of all calendars that overlap [from, to), in no order, with
    /// cancelled and declined ones. An event without length counts when it
    /// starts in there. Not called when the store is destroyed before. What
    /// cannot be read is left out and logged.
    virtual void fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done) = 0;

    /// Whether changes are watched for; a store that nobody watches costs
    /// nothing. Off at first.
    virtual void setWatching(bool watching) = 0;

signals:
    /// Events may have changed. May come in bursts.
    void changed();
    /// isAvailable() or access() has changed.
    void availabilityChanged();
};

} // namespace orvelle
