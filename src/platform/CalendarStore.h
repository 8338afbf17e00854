#pragma once

#include "platform/CalendarEvent.h"

#include <QList>
#include <QObject>

#include <functional>

namespace orvelle {

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
    /// isAvailable() or access() has changed, or calendars came (back): what is
    /// there is worth fetching at once.
    void availabilityChanged();
};

} // namespace orvelle
