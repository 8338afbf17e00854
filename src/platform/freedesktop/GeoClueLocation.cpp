#include "platform/freedesktop/GeoClueLocation.h"

#include "platform/Clock.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds patience{30};
constexpr double refusalHolds = 900;
constexpr uint cityAccuracy = 4;

QString service()
{
    return u"org.freedesktop.GeoClue2"_s;
}
QString clientInterface()
{
    return u"org.freedesktop.GeoClue2.Client"_s;
}
QString propertiesInterface()
{
    return u"org.freedesktop.DBus.Properties"_s;
}

bool isDenial(const QDBusMessage &reply)
{
    return reply.errorName() == u"org.freedesktop.DBus.Error.AccessDenied"_s;
}

} // namespace

GeoClueLocation::GeoClueLocation(Clock &clock, const QString &busAddress, QObject *parent)
    : LocationService(parent),
      m_clock(clock),
      m_busAddress(busAddress),
      m_connectionName(u"orvelle-location-%1"_s.arg(quintptr(this))),
      m_bus(QString())
{
}

GeoClueLocation::~GeoClueLocation()
{
    end();
    QDBusConnection::disconnectFromBus(m_connectionName);
}

LocationService::Authorization GeoClueLocation::authorization() const
{
    const bool isRefusal = m_authorization == Authorization::Denied || m_authorization == Authorization::Restricted;
    const bool isForgotten = isRefusal && m_clock.now() - m_decided > refusalHolds;
    return isForgotten ? Authorization::NotDetermined : m_authorization;
}

void GeoClueLocation::call(const QString &path, const QString &interface, const QString &method,
                           const QVariantList &arguments, Answered answered)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service(), path, interface, method);
    message.setArguments(arguments);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, pending, round = m_round, answered = std::move(answered)] {
                pending->deleteLater();
                if (round == m_round)
                    answered(pending->reply());
            });
}

void GeoClueLocation::requestAuthorization()
{
    if (m_isAsking || m_isLocating)
        return;
    m_isAsking = true;
    withClient([this] {
        m_isAsking = false;
        decide(Authorization::Authorized);
    });
}

/// Over a connection of its own: the shared one is never tried again after it
/// failed or broke.
void GeoClueLocation::joinBus()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_bus = m_busAddress.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SystemBus, m_connectionName)
                                   : QDBusConnection::connectToBus(m_busAddress, m_connectionName);
    m_client.clear();
}

void GeoClueLocation::withClient(std::function<void()> next)
{
    if (!m_bus.isConnected())
        joinBus();
    if (!m_client.isEmpty())
        return next();
    const QString manager = u"/org/freedesktop/GeoClue2/Manager"_s;
    call(manager, u"org.freedesktop.GeoClue2.Manager"_s, u"GetClient"_s, {},
         [this, next = std::move(next)](const QDBusMessage &reply) {
             const QDBusPendingReply<QDBusObjectPath> path(reply);
             if (path.isError()) {
                 m_isAsking = false;
                 decide(isDenial(reply) ? Authorization::Denied : Authorization::Restricted);
                 return giveUp(path.error().name());
             }
             m_client = path.value().path();
             next();
         });
}

void GeoClueLocation::requestLocation()
{
    if (m_isLocating)
        return;
    m_isLocating = true;
    m_patience = m_clock.singleShot(patience, [this] { giveUp(u"no place was found in time"_s); });
    withClient([this] {
        setClientProperty(u"DesktopId"_s, u"org.orvelle.Orvelle"_s, [this] {
            setClientProperty(u"RequestedAccuracyLevel"_s, cityAccuracy, [this] { startClient(); });
        });
    });
}

void GeoClueLocation::setClientProperty(const QString &name, const QVariant &value, std::function<void()> next)
{
    call(m_client, propertiesInterface(), u"Set"_s, {clientInterface(), name, QVariant::fromValue(QDBusVariant(value))},
         [this, next = std::move(next)](const QDBusMessage &reply) {
             if (!m_isLocating)
                 return;
             if (reply.type() == QDBusMessage::ErrorMessage)
                 return giveUp(reply.errorName());
             next();
         });
}

void GeoClueLocation::startClient()
{
    m_isStarted = true;
    m_bus.connect(service(), m_client, clientInterface(), u"LocationUpdated"_s, this,
                  SLOT(locationUpdated(QDBusObjectPath, QDBusObjectPath)));
    call(m_client, clientInterface(), u"Start"_s, {}, [this](const QDBusMessage &reply) {
        if (!m_isLocating || reply.type() != QDBusMessage::ErrorMessage)
            return;
        if (isDenial(reply))
            decide(Authorization::Denied);
        giveUp(reply.errorName());
    });
}

void GeoClueLocation::locationUpdated(const QDBusObjectPath &, const QDBusObjectPath &now)
{
    if (!m_isLocating || !m_isStarted || now.path() == u"/"_s)
        return;
    m_isStarted = false;
    call(m_client, clientInterface(), u"Stop"_s, {}, [](const QDBusMessage &) {});
    readLocation(now.path());
}

void GeoClueLocation::readLocation(const QString &path)
{
    call(path, propertiesInterface(), u"GetAll"_s, {u"org.freedesktop.GeoClue2.Location"_s},
         [this](const QDBusMessage &reply) {
             if (!m_isLocating)
                 return;
             const QDBusPendingReply<QVariantMap> properties(reply);
             if (properties.isError())
                 return giveUp(properties.error().name());
             bool hasLatitude = false;
             bool hasLongitude = false;
             const QVariantMap values = properties.value();
             const Coordinates place{values.value(u"Latitude"_s).toDouble(&hasLatitude),
                                     values.value(u"Longitude"_s).toDouble(&hasLongitude)};
             if (!hasLatitude || !hasLongitude || !isValid(place))
                 return giveUp(u"the service gave no place"_s);
             end();
             emit located(place);
         });
}

/// Lets go of everything at the service.
void GeoClueLocation::end()
{
    m_patience.reset();
    if (!m_client.isEmpty()) {
        m_bus.disconnect(service(), m_client, clientInterface(), u"LocationUpdated"_s, this,
                         SLOT(locationUpdated(QDBusObjectPath, QDBusObjectPath)));
        if (m_isStarted)
            m_bus.send(QDBusMessage::createMethodCall(service(), m_client, clientInterface(), u"Stop"_s));
    }
    // The path is asked for anew each time: the service may have ended since.
    m_client.clear();
    m_isStarted = false;
    m_isLocating = false;
    m_isAsking = false;
    ++m_round;
}

void GeoClueLocation::giveUp(const QString &reason)
{
    if (!m_isLocating)
        return;
    end();
    emit failed(reason);
}

void GeoClueLocation::decide(Authorization decision)
{
    m_authorization = decision;
    m_decided = m_clock.now();
    emit authorizationChanged();
}

} // namespace orvelle
