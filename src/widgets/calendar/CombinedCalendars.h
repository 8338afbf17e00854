#pragma once

#include "platform/CalendarStore.h"

namespace orvelle {

/// Several stores as one. There is access when one of them gives it; it is
/// open as long as one has not said and none gives it. An occurrence that
/// several know, by its identifier and start, is listed once: a copy that takes
/// place and was not declined before others, and of those the first store's.
class CombinedCalendars : public CalendarStore
{
    Q_OBJECT

public:
    /// The stores outlive this.
    explicit CombinedCalendars(const QList<CalendarStore *> &stores, QObject *parent = nullptr);

    bool isAvailable() const override;
    Access access() const override;
    /// Asks all of them; granted when one of them grants it, else with the
    /// first error.
    void requestAccess(std::function<void(const AccessAnswer &)> done) override;
    void fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done) override;
    void setWatching(bool watching) override;

private:
    QList<CalendarStore *> m_stores;
};

} // namespace orvelle
