#include "widgets/network/NetworkManager.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QScopedValueRollback>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNetwork, "NetworkManager", QtInfoMsg)

QString displayModeKey()
{
    return u"NetworkDisplayMode"_s;
}
QString menuBarOnlyKey()
{
    return u"NetworkMenuBarOnly"_s;
}

/// What the next speed is computed against.
struct Previous {
    NetworkReading reading;
    double seconds = 0;
};

/// A reading that failed counts as one without any bytes.
NetworkReading readTotals(NetworkCounters &counters)
{
    const auto reading = counters.read();
    if (reading)
        return *reading;
    qCWarning(lcNetwork, "getifaddrs() failed");
    return {};
}

} // namespace

NetworkManager::NetworkManager(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_schedule(services.sampler, services.powerEvents, [this] { return makeJob(); })
{
    load();
    connect(&services.notifications, &Notifications::debugModeChanged, this, &NetworkManager::reload);
    connect(&services.notifications, &Notifications::syncableSettingsChanged, this, [this] {
        if (!m_announcing)
            rereadAfterImport();
    });
    connect(&services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const DebugModeManager &debug = m_services.debugMode;
        if (keys.contains(debug.key(displayModeKey())) || keys.contains(debug.key(menuBarOnlyKey())))
            reload();
    });
}

void NetworkManager::load()
{
    const UserDefaults &defaults = m_services.defaults;
    const QString raw = defaults.get<QString>(m_services.debugMode.key(displayModeKey())).value_or(QString());
    m_displayMode = networkDisplayModeFromRawValue(raw).value_or(NetworkDisplayMode::Disabled);
    m_menuBarOnly = defaults.get<bool>(m_services.debugMode.key(menuBarOnlyKey())).value_or(true);
}

void NetworkManager::reload()
{
    const bool wasEnabled = isEnabled();
    load();
    followMode(wasEnabled);
    emit m_services.notifications.networkChanged();
}

/// An import writes the stored settings past their manager.
void NetworkManager::rereadAfterImport()
{
    const auto mode = m_displayMode;
    const bool menuBarOnly = m_menuBarOnly;
    load();
    if (mode == m_displayMode && menuBarOnly == m_menuBarOnly)
        return;
    followMode(mode != NetworkDisplayMode::Disabled);
    emit m_services.notifications.networkChanged();
}

void NetworkManager::announceSetting()
{
    emit m_services.notifications.networkChanged();
    const QScopedValueRollback own(m_announcing, true);
    emit m_services.notifications.syncableSettingsChanged();
}

void NetworkManager::followMode(bool wasEnabled)
{
    if (isEnabled() == wasEnabled)
        return;
    if (isEnabled())
        startMonitoring();
    else
        stopMonitoring();
}

void NetworkManager::setDisplayMode(NetworkDisplayMode mode)
{
    if (mode == m_displayMode)
        return;
    const bool wasEnabled = isEnabled();
    m_displayMode = mode;
    // A failed write is reported by the store itself; the mode holds for this run.
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(displayModeKey()), rawValue(mode)));
    followMode(wasEnabled);
    announceSetting();
}

void NetworkManager::setMenuBarOnly(bool only)
{
    if (only == m_menuBarOnly)
        return;
    m_menuBarOnly = only;
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(menuBarOnlyKey()), only));
    announceSetting();
}

BackgroundSampler::Job NetworkManager::makeJob()
{
    // Only ever touched by the job, which runs one at a time.
    auto previous = std::make_shared<std::optional<Previous>>();
    return [this, &counters = m_services.counters, previous](double seconds) -> BackgroundSampler::Deliver {
        const Previous now{readTotals(counters), seconds};
        const auto before = std::exchange(*previous, now);
        if (!before || seconds <= before->seconds)
            return {};
        const NetworkSpeed speed = networkSpeed(before->reading, now.reading, seconds - before->seconds);
        // Dropped undelivered when the schedule, and with it this, has gone.
        return [this, speed] { publish(speed); };
    };
}

void NetworkManager::publish(const NetworkSpeed &speed)
{
    m_currentSpeed = speed;
    m_speedHistory += speed;
    if (m_speedHistory.size() > maxHistoryCount)
        m_speedHistory.remove(0, m_speedHistory.size() - maxHistoryCount);
    emit m_services.notifications.networkChanged();
}

} // namespace orvelle
