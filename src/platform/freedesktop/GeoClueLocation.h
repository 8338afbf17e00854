#pragma once

#include "base/Timestamp.h"
#include "platform/LocationService.h"

#include <QDBusConnection>
#include <QDBusObjectPath>

#include <functional>
#include <memory>

class QDBusMessage;

namespace orvelle {

class Clock;
class Timer;

/// The place from GeoClue 2 (org.freedesktop.GeoClue2, its D-Bus interface
/// documentation), to the accuracy of a city. The service is asked for one
/// reading and stopped at once; nothing of it runs in between.
///
/// Whether the user allows it is only known once it was asked for a place. A
/// refusal, and the absence of the service, are forgotten after a quarter of
/// an hour, as nobody tells of a change of mind. The bus is joined when it is
/// first needed, and again after it was started anew.
class GeoClueLocation : public LocationService
{
    Q_OBJECT

public:
    /// `clock` outlives this. An empty address is that of the system's bus.
    explicit GeoClueLocation(Clock &clock, const QString &busAddress = {}, QObject *parent = nullptr);
    ~GeoClueLocation() override;

    Authorization authorization() const override;
    void requestAuthorization() override;
    void requestLocation() override;

private slots:
    void locationUpdated(const QDBusObjectPath &before, const QDBusObjectPath &now);

private:
    using Answered = std::function<void(const QDBusMessage &reply)>;

    void call(const QString &path, const QString &interface, const QString &method, const QVariantList &arguments,
              Answered answered);
    void joinBus();
    void withClient(std::function<void()> next);
    void setClientProperty(const QString &name, const QVariant &value, std::function<void()> next);
    void startClient();
    void readLocation(const QString &path);
    void end();
    void giveUp(const QString &reason);
    void decide(Authorization decision);

    Clock &m_clock;
    QString m_busAddress;
    QString m_connectionName;
    QDBusConnection m_bus;
    Authorization m_authorization = Authorization::NotDetermined;
    Timestamp m_decided;
    QString m_client; ///< object path; empty while none is held
    bool m_isLocating = false;
    bool m_isAsking = false;
    bool m_isStarted = false;
    int m_round = 0; ///< answers to what was asked before the last end() no longer count
    std::unique_ptr<Timer> m_patience;
};

} // namespace orvelle
