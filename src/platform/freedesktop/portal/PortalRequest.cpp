#include "platform/freedesktop/portal/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QString requestInterface()
{
    return u"org.freedesktop.portal.Request"_s;
}

/// Where the portal will put the request: known before, so that no answer comes
/// before somebody listens.
QString expectedHandle(const QDBusConnection &bus, const QString &token)
{
    return PortalRequest::path() + u"/request/"_s + bus.baseService().mid(1).replace(u'.', u'_') + u'/' + token;
}

} // namespace

QString PortalRequest::newToken()
{
    return u"orvelle_"_s + QUuid::createUuid().toString(QUuid::Id128);
}

PortalRequest::PortalRequest(const QDBusConnection &bus, const Call &call, Handler answered)
    : m_bus(bus), m_answered(std::move(answered))
{
    const QString token = newToken();
    m_handle = expectedHandle(bus, token);
    m_bus.connect(service(), m_handle, requestInterface(), u"Response"_s, this, SLOT(responded(uint, QVariantMap)));
    QVariantMap options = call.options;
    options.insert(u"handle_token"_s, token);
    auto message =
        QDBusMessage::createMethodCall(service(), path(), u"org.freedesktop.portal."_s + call.interface, call.method);
    message.setArguments(call.arguments + QVariantList{options});
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            finish({PortalAnswer::Kind::Failed, {}, reply.error()});
    });
}

PortalRequest::~PortalRequest()
{
    if (!m_answered)
        return;
    auto close = QDBusMessage::createMethodCall(service(), m_handle, requestInterface(), u"Close"_s);
    close.setAutoStartService(false); // a portal that has ended knows nothing of it
    m_bus.send(close);
}

void PortalRequest::responded(uint response, const QVariantMap &results)
{
    constexpr uint done = 0, cancelled = 1;
    const auto kind = response == done        ? PortalAnswer::Kind::Done
                      : response == cancelled ? PortalAnswer::Kind::Cancelled
                                              : PortalAnswer::Kind::Ended;
    finish({kind, results, {}});
}

void PortalRequest::finish(const PortalAnswer &answer)
{
    if (const Handler answered = std::exchange(m_answered, {}))
        answered(answer);
}

} // namespace orvelle
