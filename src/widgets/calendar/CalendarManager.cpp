#include "widgets/calendar/CalendarManager.h"

#include "base/Notifications.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendar, "CalendarManager", QtInfoMsg)

namespace Key {
constexpr char enabled[] = "CalendarEnabled";
constexpr char menuBarOnly[] = "CalendarMenuBarOnly";
constexpr char iconColor[] = "CalendarIconColor";
constexpr char maxEvents[] = "CalendarMaxEvents";
constexpr char displayScope[] = "CalendarDisplayScope";
constexpr char hideDeclined[] = "CalendarHideDeclined";
constexpr char todayOnly[] = "CalendarTodayOnly"; // of versions without scopes
} // namespace Key

constexpr std::array allKeys{Key::enabled,      Key::menuBarOnly,  Key::iconColor, Key::maxEvents,
                             Key::displayScope, Key::hideDeclined, Key::todayOnly};

} // namespace

CalendarManager::CalendarManager(const Services &services, QObject *parent) : QObject(parent), m_services(services)
{
    migrate();
    m_settings = stored();
    m_accessGranted = m_services.store.access() == CalendarStore::Access::Granted;
    observeSettings();
    connect(&m_services.store, &CalendarStore::changed, this, [this] {
        if (m_monitoring)
            fetchSoon();
    });
    connect(&m_services.store, &CalendarStore::availabilityChanged, this, [this] {
        readAccess();
        if (m_monitoring)
            fetchNextEvent();
    });
}

CalendarManager::~CalendarManager() = default;

void CalendarManager::observeSettings()
{
    const Notifications &notifications = m_services.notifications;
    connect(&notifications, &Notifications::debugModeChanged, this, [this] {
        migrate();
        reload();
        if (m_monitoring)
            fetchNextEvent();
        changed(false);
    });
    // An import writes the settings and announces them in our name.
    connect(&notifications, &Notifications::calendarChanged, this, [this] {
        if (!m_posting)
            reload();
    });
    connect(&m_services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const auto isOwn = [&](const char *key) {
            return keys.contains(m_services.debugMode.key(QString::fromLatin1(key)));
        };
        if (!std::ranges::any_of(allKeys, isOwn))
            return;
        const Settings before = m_settings;
        reload();
        if (m_settings != before)
            changed(false);
    });
}

CalendarManager::Settings CalendarManager::stored() const
{
    const UserDefaults &defaults = m_services.defaults;
    const auto key = [this](const char *base) { return m_services.debugMode.key(QString::fromLatin1(base)); };
    const qint64 scope = defaults.get<qint64>(key(Key::displayScope)).value_or(0);
    return {defaults.get<bool>(key(Key::enabled)).value_or(false),
            defaults.get<bool>(key(Key::menuBarOnly)).value_or(false),
            defaults.get<QString>(key(Key::iconColor)).value_or(u"red"_s),
            std::max<qint64>(1, defaults.get<qint64>(key(Key::maxEvents)).value_or(1)),
            scope >= 0 && scope <= 2 ? static_cast<CalendarScope>(scope) : CalendarScope::Today,
            defaults.get<bool>(key(Key::hideDeclined)).value_or(false)};
}

void CalendarManager::migrate()
{
    UserDefaults &defaults = m_services.defaults;
    const QString scopeKey = m_services.debugMode.key(QString::fromLatin1(Key::displayScope));
    const QString legacyKey = m_services.debugMode.key(QString::fromLatin1(Key::todayOnly));
    const auto todayOnly = defaults.get<bool>(legacyKey);
    if (!todayOnly || defaults.value(scopeKey))
        return;
    // The old value stays until the new one is safe.
    if (defaults.write(scopeKey, qint64(*todayOnly ? 0 : 1)))
        static_cast<void>(defaults.remove(legacyKey));
}

void CalendarManager::reload()
{
    const Settings before = std::exchange(m_settings, stored());
    if (before != m_settings)
        follow(before);
}

/// What has to be done beside announcing the change.
void CalendarManager::follow(const Settings &before)
{
    if (before.isEnabled != m_settings.isEnabled) {
        if (!m_settings.isEnabled)
            return stopMonitoring();
        startMonitoring();
        if (!m_accessGranted)
            requestAccess();
        return;
    }
    const bool listChanges = before.maxEvents != m_settings.maxEvents ||
                             before.displayScope != m_settings.displayScope ||
                             before.hidesDeclined != m_settings.hidesDeclined;
    if (listChanges && m_settings.isEnabled)
        fetchNextEvent();
}

void CalendarManager::changed(bool syncable)
{
    m_posting = true;
    emit m_services.notifications.calendarChanged();
    m_posting = false;
    if (syncable)
        emit m_services.notifications.syncableSettingsChanged();
}

// In those below a failed write is reported by the store itself; the setting
// holds for this run.

void CalendarManager::setEnabled(bool enabled)
{
    if (enabled == m_settings.isEnabled)
        return;
    const Settings before = m_settings;
    m_settings.isEnabled = enabled;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::enabled)), enabled));
    changed(true);
    follow(before);
}

void CalendarManager::setMenuBarOnly(bool only)
{
    if (only == m_settings.menuBarOnly)
        return;
    m_settings.menuBarOnly = only;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::menuBarOnly)), only));
    changed(true);
}

void CalendarManager::setIconColor(const QString &colorKey)
{
    if (colorKey == m_settings.iconColor)
        return;
    m_settings.iconColor = colorKey;
    static_cast<void>(
        m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::iconColor)), colorKey));
    changed(true);
}

void CalendarManager::setMaxEvents(qint64 count)
{
    const qint64 wanted = std::max<qint64>(1, count);
    if (wanted == m_settings.maxEvents)
        return;
    m_settings.maxEvents = wanted;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::maxEvents)), wanted));
    fetchNextEvent();
    emit m_services.notifications.syncableSettingsChanged();
}

void CalendarManager::setDisplayScope(CalendarScope scope)
{
    if (scope == m_settings.displayScope)
        return;
    m_settings.displayScope = scope;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::displayScope)),
                                                static_cast<qint64>(scope)));
    fetchNextEvent();
    emit m_services.notifications.syncableSettingsChanged();
}

void CalendarManager::setHidesDeclined(bool hides)
{
    if (hides == m_settings.hidesDeclined)
        return;
    m_settings.hidesDeclined = hides;
    static_cast<void>(
        m_services.defaults.write(m_services.debugMode.key(QString::fromLatin1(Key::hideDeclined)), hides));
    fetchNextEvent();
}

void CalendarManager::readAccess()
{
    m_accessGranted = m_services.store.access() == CalendarStore::Access::Granted;
}

void CalendarManager::requestAccess()
{
    m_services.store.requestAccess([self = QPointer(this)](const CalendarStore::AccessAnswer &answer) {
        if (!self)
            return;
        const bool had = std::exchange(self->m_accessGranted, answer.granted);
        if (!answer.error.isEmpty())
            qCWarning(lcCalendar, "Calendar access error: %s", qPrintable(answer.error));
        if (answer.granted)
            self->fetchNextEvent();
        else if (had)
            self->changed(false);
    });
}

void CalendarManager::startMonitoring()
{
    readAccess();
    m_refreshTimer.reset();
    m_monitoring = true;
    m_services.store.setWatching(true);
    fetchNextEvent();
}

void CalendarManager::stopMonitoring()
{
    m_monitoring = false;
    ++m_lastQuestion;
    m_services.store.setWatching(false);
    m_refreshTimer.reset();
    m_debounceTimer.reset();
}

void CalendarManager::refreshIfNeeded()
{
    const double age = m_lastFetchDate ? m_services.clock.now() - *m_lastFetchDate : 0;
    // A clock that was set back must not keep the list as it is.
    if (!m_lastFetchDate || age >= leastSecondsBetweenRefreshes || age < 0)
        fetchNextEvent();
}

void CalendarManager::fetchSoon()
{
    m_debounceTimer = m_services.clock.singleShot(debounce, [this] { fetchNextEvent(); });
}

void CalendarManager::fetchNextEvent()
{
    const quint64 question = ++m_lastQuestion;
    if (!m_accessGranted)
        return publish({});
    const Timestamp now = m_services.clock.now();
    m_services.store.fetch(startOfDay(now), daysLater(now, searchDays),
                           [self = QPointer(this), question](const QList<CalendarEvent> &events) {
                               if (!self || question != self->m_lastQuestion)
                                   return;
                               const Timestamp then = self->m_services.clock.now();
                               const Settings &wanted = self->m_settings;
                               self->m_lastFetchDate = then;
                               self->publish(nextCalendarEvents(events, then, wanted.displayScope, wanted.maxEvents,
                                                                wanted.hidesDeclined));
                           });
}

void CalendarManager::publish(const QList<CalendarEventInfo> &events)
{
    m_nextEvents = events;
    armRefresh();
    changed(false);
}

/// The list holds until one of its events is over or the day is.
void CalendarManager::armRefresh()
{
    m_refreshTimer.reset();
    if (!m_monitoring || !m_accessGranted)
        return;
    const Timestamp now = m_services.clock.now();
    Timestamp due = startOfNextDay(now);
    for (const CalendarEventInfo &each : m_nextEvents) {
        if (each.endDate > now)
            due = std::min(due, each.endDate);
    }
    m_refreshTimer = m_services.clock.atDate(due, [this] { fetchNextEvent(); });
}

QString CalendarManager::formattedEventTime(const CalendarEventInfo &event) const
{
    return calendarEventTime(event, m_services.clock.now());
}

} // namespace orvelle
