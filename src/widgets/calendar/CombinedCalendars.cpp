#include "widgets/calendar/CombinedCalendars.h"

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <memory>

namespace orvelle {

namespace {

bool takesPlace(const CalendarEvent &event)
{
    return !event.isCancelled && !event.isDeclined;
}

QList<CalendarEvent> merged(const QList<QList<CalendarEvent>> &lists)
{
    QList<CalendarEvent> all;
    QHash<std::pair<QString, double>, qsizetype> places;
    for (const QList<CalendarEvent> &list : lists) {
        for (const CalendarEvent &each : list) {
            const auto key = std::pair(each.externalIdentifier.value_or(QString()), each.start.seconds);
            const auto known = key.first.isEmpty() ? places.cend() : places.constFind(key);
            if (known == places.cend()) {
                places.insert(key, all.size());
                all += each;
            } else if (!takesPlace(all.at(*known)) && takesPlace(each)) {
                all[*known] = each;
            }
        }
    }
    return all;
}

} // namespace

CombinedCalendars::CombinedCalendars(const QList<CalendarStore *> &stores, QObject *parent)
    : CalendarStore(parent), m_stores(stores)
{
    for (const CalendarStore *each : stores) {
        connect(each, &CalendarStore::changed, this, &CalendarStore::changed);
        connect(each, &CalendarStore::availabilityChanged, this, &CalendarStore::availabilityChanged);
    }
}

bool CombinedCalendars::isAvailable() const
{
    return std::ranges::any_of(m_stores, &CalendarStore::isAvailable);
}

CalendarStore::Access CombinedCalendars::access() const
{
    for (const Access wanted : {Access::Granted, Access::NotDetermined}) {
        if (std::ranges::any_of(m_stores, [wanted](const CalendarStore *each) { return each->access() == wanted; }))
            return wanted;
    }
    return Access::Denied;
}

void CombinedCalendars::requestAccess(std::function<void(const AccessAnswer &)> done)
{
    struct Asked {
        qsizetype waitedFor;
        AccessAnswer answer;
    };
    const auto asked = std::make_shared<Asked>(Asked{m_stores.size(), {}});
    for (CalendarStore *each : m_stores) {
        each->requestAccess([asked, done, self = QPointer(this)](const AccessAnswer &answer) {
            asked->answer.granted = asked->answer.granted || answer.granted;
            if (asked->answer.error.isEmpty())
                asked->answer.error = answer.error;
            if (--asked->waitedFor > 0 || !self)
                return;
            if (asked->answer.granted)
                asked->answer.error.clear();
            done(asked->answer);
        });
    }
}

void CombinedCalendars::fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done)
{
    struct Asked {
        qsizetype waitedFor;
        QList<QList<CalendarEvent>> lists; ///< by the number of the store
    };
    const auto asked = std::make_shared<Asked>(Asked{m_stores.size(), {}});
    asked->lists.resize(m_stores.size());
    for (qsizetype i = 0; i < m_stores.size(); ++i) {
        m_stores.at(i)->fetch(from, to, [asked, done, i, self = QPointer(this)](const QList<CalendarEvent> &events) {
            asked->lists[i] = events;
            if (--asked->waitedFor == 0 && self)
                done(merged(asked->lists));
        });
    }
}

void CombinedCalendars::setWatching(bool watching)
{
    for (CalendarStore *each : m_stores)
        each->setWatching(watching);
}

} // namespace orvelle
