#include "widgets/timer/TimerManager.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/DesktopNotifications.h"
#include "platform/Sounds.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcTimer, "TimerManager", QtInfoMsg)

constexpr qsizetype presetCount = 3;

QString enabledKey()
{
    return u"TimerEnabled"_s;
}
QString menuBarOnlyKey()
{
    return u"TimerMenuBarOnly"_s;
}
QString presetsKey()
{
    return u"TimerPresets"_s;
}
QString messageTag()
{
    return u"timer"_s;
}

bool arePresets(const QList<qint64> &list)
{
    return list.size() == presetCount && std::ranges::all_of(list, [](qint64 seconds) { return seconds > 0; });
}

} // namespace

TimerManager::TimerManager(Services services, QObject *parent) : QObject(parent), m_services(std::move(services))
{
    load();
    // The countdown goes on: it is no part of either mode's data.
    connect(&m_services.notifications, &Notifications::debugModeChanged, this, [this] {
        load();
        changed();
    });
    connect(&m_services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const std::array own{enabledKey(), menuBarOnlyKey(), presetsKey()};
        const auto isChanged = [&](const QString &key) { return keys.contains(m_services.debugMode.key(key)); };
        if (!std::ranges::any_of(own, isChanged))
            return;
        const bool wasEnabled = m_isEnabled;
        load();
        if (wasEnabled && !m_isEnabled)
            stop();
        changed();
    });
}

TimerManager::~TimerManager() = default;

void TimerManager::load()
{
    const UserDefaults &defaults = m_services.defaults;
    const DebugModeManager &debug = m_services.debugMode;
    m_isEnabled = defaults.get<bool>(debug.key(enabledKey())).value_or(false);
    m_menuBarOnly = defaults.get<bool>(debug.key(menuBarOnlyKey())).value_or(true);
    const QList<qint64> stored = defaults.get<QList<qint64>>(debug.key(presetsKey())).value_or(QList<qint64>());
    const QList<qint64> firstOnes = stored.mid(0, presetCount);
    m_presets = arePresets(firstOnes) ? firstOnes : defaultPresets();
}

void TimerManager::changed()
{
    emit m_services.notifications.timerChanged();
}

// In the three below a failed write is reported by the store itself; the
// setting holds for this run.

void TimerManager::setEnabled(bool enabled)
{
    if (enabled == m_isEnabled)
        return;
    m_isEnabled = enabled;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(enabledKey()), enabled));
    if (!enabled)
        stop();
    changed();
}

void TimerManager::setMenuBarOnly(bool only)
{
    if (only == m_menuBarOnly)
        return;
    m_menuBarOnly = only;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(menuBarOnlyKey()), only));
    changed();
}

void TimerManager::setPresets(const QList<qint64> &presets)
{
    if (presets == m_presets || !arePresets(presets))
        return;
    m_presets = presets;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(presetsKey()), presets));
    changed();
}

void TimerManager::start(qint64 seconds)
{
    if (seconds <= 0)
        return;
    m_activeDuration = seconds;
    m_endDate = m_services.clock.now() + static_cast<double>(seconds);
    m_fireTimer = m_services.clock.atDate(*m_endDate, [this] { timeIsUp(); });
    m_services.desktopNotifications.withdraw(messageTag());
    qCInfo(lcTimer, "Minuteur démarré: %lds", static_cast<long>(seconds));
    changed();
}

void TimerManager::stop()
{
    m_fireTimer.reset();
    m_endDate.reset();
}

void TimerManager::cancel()
{
    if (!m_endDate)
        return;
    stop();
    changed();
}

void TimerManager::timeIsUp()
{
    stop();
    changed();
    m_services.sounds.playAlarm();
    m_services.activateApp();
    announce();
}

void TimerManager::announce()
{
    Alert alert;
    alert.message = text("timer.doneTitle"_text);
    alert.informativeText = text("timer.doneMessage %@"_text, durationLabel(m_activeDuration));
    alert.symbol = u"timer"_s;
    alert.buttons = {text("sheet.ok"_text)};
    // For a user who is at another screen; with the alert it is dealt with.
    m_services.desktopNotifications.show(messageTag(),
                                         {alert.message, alert.informativeText, u"alarm-symbolic"_s, true});
    m_services.alerts.show(alert, [self = QPointer<TimerManager>(this)](int) {
        if (self)
            self->m_services.desktopNotifications.withdraw(messageTag());
    });
}

bool TimerManager::isRunning() const
{
    return m_endDate && *m_endDate > m_services.clock.now();
}

qint64 TimerManager::remainingSeconds() const
{
    if (!m_endDate)
        return 0;
    return std::max<qint64>(0, static_cast<qint64>(std::ceil(*m_endDate - m_services.clock.now())));
}

double TimerManager::progress() const
{
    if (!m_endDate || m_activeDuration <= 0)
        return 0;
    const double left = *m_endDate - m_services.clock.now();
    return std::clamp(1 - left / static_cast<double>(m_activeDuration), 0.0, 1.0);
}

} // namespace orvelle
