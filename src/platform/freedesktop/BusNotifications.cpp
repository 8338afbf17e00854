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
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this, &BusNotifications::serviceEnded);
}

/// Another service numbers its messages anew.
void BusNotifications::serviceEnded()
{
    ++m_services;
    const auto before = std::exchange(m_shown, {});
    for (auto each = before.cbegin(); each != before.cend(); ++each) {
        if (each->next)
            show(each.key(), *each->next);
    }
}

void BusNotifications::show(const QString &tag, const Message &message)
{
    if (!m_bus.isConnected())
        return;
    Shown &shown = m_shown[tag];
    shown.withdrawn = false;
    if (shown.isAsked)
        shown.next = message;
    else
        send(tag, message);
}

void BusNotifications::send(const QString &tag, const Message &message)
{
    Shown &shown = m_shown[tag];
    shown.isAsked = true;
    constexpr int untilDismissed = 0;
    constexpr int asUsual = -1;
    const QDBusMessage notify = call(u"Notify"_s) << u"Orvelle"_s << shown.id << message.iconName << message.title
                                                  << message.body.toHtmlEscaped() << QStringList() << hintsOf(message)
                                                  << (message.urgent ? untilDismissed : asUsual);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(notify), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, tag, to = m_services] {
        pending->deleteLater();
        const QDBusPendingReply<uint> reply = *pending;
        if (reply.isError())
            qCInfo(lcNotifications, "not shown: %ls", qUtf16Printable(reply.error().name()));
        if (to == m_services)
            answered(tag, reply.isError() ? 0 : reply.value());
    });
}

void BusNotifications::answered(const QString &tag, uint id)
{
    const auto shown = m_shown.find(tag);
    if (shown == m_shown.end())
        return;
    shown->isAsked = false;
    shown->id = id;
    if (shown->withdrawn)
        withdraw(tag);
    else if (const auto next = std::exchange(shown->next, std::nullopt))
        send(tag, *next);
}

void BusNotifications::withdraw(const QString &tag)
{
    const auto shown = m_shown.find(tag);
    if (shown == m_shown.end())
        return;
    if (shown->isAsked) {
        shown->withdrawn = true;
        shown->next.reset();
        return;
    }
    if (shown->id != 0)
        m_bus.send(call(u"CloseNotification"_s) << shown->id);
    m_shown.erase(shown);
}

} // namespace orvelle
