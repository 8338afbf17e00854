#include "widgets/network/NetworkManager.h"

#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNetwork, "NetworkManager", QtInfoMsg)

const MonitorSettings<NetworkDisplayMode>::Kind &settingsKind()
{
    static const MonitorSettings<NetworkDisplayMode>::Kind kind{u"NetworkDisplayMode"_s, u"NetworkMenuBarOnly"_s,
                                                                &networkDisplayModeFromRawValue,
                                                                &Notifications::networkChanged};
    return kind;
}

/// What the next speed is computed against.
struct Previous {
    NetworkReading reading;
    double seconds = 0;
};

/// A reading that failed counts as one without any bytes.
NetworkReading readTotals(NetworkCounters &counters, FailureNotice &failure)
{
    const auto reading = counters.read();
    if (failure.begins(!reading))
        qCWarning(lcNetwork, "getifaddrs() failed");
    return reading ? *reading : NetworkReading{};
}

} // namespace

NetworkManager::NetworkManager(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_settings({services.defaults, services.debugMode, services.notifications}, settingsKind(),
                 [this](bool enabled) { follow(enabled); }),
      m_schedule(services.sampler, services.powerEvents, [this] { return makeJob(); })
{
}

void NetworkManager::follow(bool enabled)
{
    if (enabled)
        startMonitoring();
    else
        stopMonitoring();
}

BackgroundSampler::Job NetworkManager::makeJob()
{
    // Only ever touched by the job, which runs one at a time.
    auto previous = std::make_shared<std::optional<Previous>>();
    auto failure = std::make_shared<FailureNotice>();
    return [this, &counters = m_services.counters, previous, failure](double seconds) -> BackgroundSampler::Deliver {
        const Previous now{readTotals(counters, *failure), seconds};
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
