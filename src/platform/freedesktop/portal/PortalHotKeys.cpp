#include "platform/freedesktop/portal/PortalHotKeys.h"

#include "platform/Clock.h"
#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/BusSignals.h"
#include "platform/freedesktop/portal/PortalRequest.h"
#include "platform/freedesktop/portal/PortalTrigger.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcPortal, "HotKeys", QtInfoMsg)

/// A portal that ends each time it is asked is left alone.
constexpr qsizetype mostBeginnings = 5;
constexpr double beginningsWithin = 60;

QString shortcutsInterface()
{
    return u"org.freedesktop.portal.GlobalShortcuts"_s;
}
QString sessionInterface()
{
    return u"org.freedesktop.portal.Session"_s;
}

/// Of a session or not: what is no path at all cannot even be sent back.
bool isSessionPath(const QString &path)
{
    const QString prefix = PortalRequest::path() + u"/session/"_s;
    return path.startsWith(prefix) && path.size() > prefix.size() && !path.endsWith(u'/') && !path.contains(u"//"_s) &&
           std::ranges::all_of(
               path, [](QChar c) { return c == u'/' || c == u'_' || (c.unicode() < 0x80 && c.isLetterOrNumber()); });
}

bool isAbsence(const QDBusError &error)
{
    return error.type() != QDBusError::AccessDenied && error.name() != u"org.freedesktop.portal.Error.NotAllowed"_s;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &out, const PortalShortcut &shortcut)
{
    out.beginStructure();
    out << shortcut.id << shortcut.properties;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, PortalShortcut &shortcut)
{
    in.beginStructure();
    in >> shortcut.id >> shortcut.properties;
    in.endStructure();
    return in;
}

PortalHotKeys::PortalHotKeys(Surroundings surroundings, QObject *parent)
    : HotKeyService(parent),
      m_surroundings(std::move(surroundings)),
      m_portal(PortalRequest::service(), m_surroundings.bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
    connect(&m_portal, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &before, const QString &now) { portalOwnerChanged(before, now); });
}

PortalHotKeys::~PortalHotKeys()
{
    unregisterHotKey();
}

std::optional<HotKeyError> PortalHotKeys::registerHotKey(const HotKey &hotKey)
{
    unregisterHotKey();
    if (!m_surroundings.bus.isConnected())
        return HotKeyError{HotKeyError::Kind::Unavailable, 0};
    m_wanted = hotKey;
    begin();
    return HotKeyError{HotKeyError::Kind::Undecided, 0};
}

void PortalHotKeys::unregisterHotKey()
{
    m_wanted.reset();
    if (!m_session.isEmpty()) {
        auto close =
            QDBusMessage::createMethodCall(PortalRequest::service(), m_session, sessionInterface(), u"Close"_s);
        close.setAutoStartService(false);
        m_surroundings.bus.send(close);
    }
    forgetSession();
}

void PortalHotKeys::forgetSession()
{
    ++m_attempt;
    m_introducing = false;
    m_isBound = false;
    m_presses.released();
    m_trigger.clear();
    m_request.reset();
    if (!m_session.isEmpty())
        listen(false);
    m_session.clear();
}

/// Only while there is a session: before, nobody on the bus may be the portal.
void PortalHotKeys::listen(bool on)
{
    const BusSignal heard[] = {
        {m_session, sessionInterface(), u"Closed"_s, SLOT(sessionClosed())},
        {PortalRequest::path(), shortcutsInterface(), u"Activated"_s,
         SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap))},
        {PortalRequest::path(), shortcutsInterface(), u"Deactivated"_s,
         SLOT(deactivated(QDBusObjectPath, QString, qulonglong, QVariantMap))},
        {PortalRequest::path(), shortcutsInterface(), u"ShortcutsChanged"_s, SLOT(shortcutsChanged(QDBusMessage))},
    };
    hearSignals(m_surroundings.bus, PortalRequest::service(), heard, this, on);
}

/// Programs outside of a sandbox tell who they are, where the portal wants to
/// know it: once for each run of the portal.
void PortalHotKeys::begin()
{
    if (m_introduced)
        return createSession();
    m_introducing = true;
    auto call = QDBusMessage::createMethodCall(PortalRequest::service(), PortalRequest::path(),
                                               u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    call << m_surroundings.appId << QVariantMap();
    auto *watcher = new QDBusPendingCallWatcher(m_surroundings.bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, attempt = m_attempt] {
        watcher->deleteLater();
        if (attempt != m_attempt)
            return;
        m_introducing = false;
        m_introduced = true;
        createSession();
    });
}

void PortalHotKeys::createSession()
{
    m_request = std::make_unique<PortalRequest>(
        m_surroundings.bus,
        PortalRequest::Call{
            u"GlobalShortcuts"_s, u"CreateSession"_s, {}, {{u"session_handle_token"_s, PortalRequest::newToken()}}},
        [this](const PortalAnswer &answer) { sessionCreated(answer); });
}

void PortalHotKeys::sessionCreated(const PortalAnswer &answer)
{
    const auto request = std::move(m_request);
    if (answer.kind != PortalAnswer::Kind::Done)
        return fail(answer);
    const QVariant handle = answer.results.value(u"session_handle"_s);
    m_session = handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
    if (!isSessionPath(m_session)) {
        qCWarning(lcPortal, "The portal named no session");
        m_session.clear();
        return lose(HotKeyError::Kind::Unavailable);
    }
    listen(true);
    bind();
}

void PortalHotKeys::bind()
{
    QVariantMap properties{{u"description"_s, m_surroundings.description}};
    const QString trigger = portalTrigger(*m_wanted, m_surroundings.keymap ? m_surroundings.keymap() : QByteArray());
    if (!trigger.isEmpty())
        properties.insert(u"preferred_trigger"_s, trigger);
    const PortalShortcuts shortcuts{{shortcutId(), properties}};
    m_request = std::make_unique<PortalRequest>(m_surroundings.bus,
                                                PortalRequest::Call{u"GlobalShortcuts"_s,
                                                                    u"BindShortcuts"_s,
                                                                    {QVariant::fromValue(QDBusObjectPath(m_session)),
                                                                     QVariant::fromValue(shortcuts), QString()},
                                                                    {}},
                                                [this](const PortalAnswer &answer) { bound(answer); });
}

void PortalHotKeys::bound(const PortalAnswer &answer)
{
    const auto request = std::move(m_request);
    if (answer.kind != PortalAnswer::Kind::Done)
        return fail(answer);
    const auto given = answer.results.constFind(u"shortcuts"_s);
    if (given == answer.results.constEnd())
        list();
    else
        listed(qdbus_cast<PortalShortcuts>(*given));
}

/// Some portals do not say what they have bound.
void PortalHotKeys::list()
{
    m_request = std::make_unique<PortalRequest>(
        m_surroundings.bus,
        PortalRequest::Call{
            u"GlobalShortcuts"_s, u"ListShortcuts"_s, {QVariant::fromValue(QDBusObjectPath(m_session))}, {}},
        [this](const PortalAnswer &answered) {
            const auto request = std::move(m_request);
            if (answered.kind == PortalAnswer::Kind::Done)
                listed(qdbus_cast<PortalShortcuts>(answered.results.value(u"shortcuts"_s)));
            else
                fail(answered);
        });
}

void PortalHotKeys::listed(const PortalShortcuts &shortcuts)
{
    const auto ours = std::ranges::find(shortcuts, shortcutId(), &PortalShortcut::id);
    if (ours == shortcuts.end())
        return lose(HotKeyError::Kind::Denied);
    const QString trigger = ours->properties.value(u"trigger_description"_s).toString();
    const bool isNews = !std::exchange(m_isBound, true) || m_trigger != trigger;
    m_trigger = trigger;
    if (isNews)
        emit hotKeyFound();
}

void PortalHotKeys::fail(const PortalAnswer &answer)
{
    if (answer.kind != PortalAnswer::Kind::Failed)
        return lose(HotKeyError::Kind::Denied, static_cast<int>(answer.kind));
    qCInfo(lcPortal, "The portal gives no shortcut: %ls", qUtf16Printable(answer.error.name()));
    lose(isAbsence(answer.error) ? HotKeyError::Kind::Unavailable : HotKeyError::Kind::Denied);
}

/// The wish stays: the portal may come, or come again.
void PortalHotKeys::lose(HotKeyError::Kind kind, int code)
{
    const auto wanted = m_wanted;
    unregisterHotKey();
    m_wanted = wanted;
    emit hotKeyLost({kind, code});
}

void PortalHotKeys::sessionClosed()
{
    qCInfo(lcPortal, "The desktop took the shortcut back");
    lose(HotKeyError::Kind::Denied);
}

void PortalHotKeys::portalOwnerChanged(const QString &oldOwner, const QString &newOwner)
{
    // Our own question may be what starts it.
    const bool isStart = oldOwner.isEmpty() && (m_request || m_introducing);
    if (!isStart)
        m_introduced = false;
    if (!m_wanted || isStart)
        return;
    forgetSession();
    if (newOwner.isEmpty())
        emit hotKeyLost({HotKeyError::Kind::Unavailable, 0});
    else if (mayBeginAgain())
        begin();
}

bool PortalHotKeys::mayBeginAgain()
{
    const Timestamp now = m_surroundings.clock.now();
    m_begun.removeIf([now](const Timestamp &each) { return now - each > beginningsWithin; });
    if (m_begun.size() >= mostBeginnings) {
        qCWarning(lcPortal, "The portal ends again and again; it is left alone");
        return false;
    }
    m_begun += now;
    return true;
}

void PortalHotKeys::activated(const QDBusObjectPath &session, const QString &id, qulonglong, const QVariantMap &options)
{
    if (session.path() != m_session || m_session.isEmpty() || id != shortcutId())
        return;
    if (!m_presses.pressed(m_surroundings.clock.now()))
        return;
    takeActivationToken(options.value(u"activation_token"_s).toString());
    emit fired();
}

void PortalHotKeys::deactivated(const QDBusObjectPath &session, const QString &id, qulonglong, const QVariantMap &)
{
    if (session.path() == m_session && id == shortcutId())
        m_presses.released();
}

/// Its arguments are of types that slots are not matched by.
void PortalHotKeys::shortcutsChanged(const QDBusMessage &signal)
{
    if (signal.signature() != u"oa(sa{sv})" || !m_isBound)
        return;
    if (signal.arguments().at(0).value<QDBusObjectPath>().path() == m_session)
        listed(qdbus_cast<PortalShortcuts>(signal.arguments().at(1)));
}

} // namespace orvelle
