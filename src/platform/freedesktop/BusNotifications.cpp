#include "platform/freedesktop/BusNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNotifications, "DesktopNotifications", QtInfoMsg)

QString service()
{
    return u"org.freedesktop.Notifications"_s;
}

QDBusMessage call(const QString &method)
{
    return QDBusMessage::createMethodCall(service(), u"/org/freedesktop/Notifications"_s, service(), method);
}

QVariantMap hintsOf(const DesktopNotifications::Message &message)
{
    constexpr uchar normal = 1;
    constexpr uchar critical = 2;
    return {{u"urgency"_s, QVariant::fromValue(message.urgent ? critical : normal)},
            {u"desktop-entry"_s, u"org.orvelle.Orvelle"_s},
            {u"suppress-sound"_s, true}}; // the sound is ours
}

} // namespace

BusNotifications::BusNotifications(const QDBusConnection &sessionBus, QObject *parent)
    : QObject(parent), m_bus(sessionBus), m_service(service(), sessionBus, QDBusServiceWatcher::WatchForUnregistration)
{
    // Another service numbers its messages anew.
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this, [this] { m_shown.clear(); });
}

void BusNotifications::show(const QString &tag, const Message &message)
{
    if (!m_bus.isConnected())
        return;
    Shown &shown = m_shown[tag];
    shown.withdrawn = false;
    ++shown.inAnswer;
    constexpr int untilDismissed = 0;
    constexpr int asUsual = -1;
    const QDBusMessage notify = call(u"Notify"_s) << u"Orvelle"_s << shown.id << message.iconName << message.title
                                                  << message.body.toHtmlEscaped() << QStringList() << hintsOf(message)
                                                  << (message.urgent ? untilDismissed : asUsual);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(notify), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, tag] {
        pending->deleteLater();
        const QDBusPendingReply<uint> reply = *pending;
        if (reply.isError())
            qCInfo(lcNotifications, "not shown: %ls", qUtf16Printable(reply.error().name()));
        answered(tag, reply.isError() ? 0 : reply.value());
    });
}

void BusNotifications::answered(const QString &tag, uint id)
{
    const auto shown = m_shown.find(tag);
    if (shown == m_shown.end())
        return;
    --shown->inAnswer;
    shown->id = id;
    if (shown->withdrawn && shown->inAnswer == 0)
        withdraw(tag);
}

void BusNotifications::withdraw(const QString &tag)
{
    const auto shown = m_shown.find(tag);
    if (shown == m_shown.end())
        return;
    if (shown->inAnswer > 0) {
        shown->withdrawn = true;
        return;
    }
    if (shown->id != 0)
        m_bus.send(call(u"CloseNotification"_s) << shown->id);
    m_shown.erase(shown);
}

} // namespace orvelle
