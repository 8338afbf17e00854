#pragma once

#include "platform/freedesktop/portal/PortalHotKeys.h"
#include "support/PrivateBus.h"

#include <QDBusMetaType>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace orvelle::test {

/// The desktop's side of the shortcuts portal, which notes whatever a program
/// does that the protocol does not allow. On the bus while it lives.
class MockPortal : public QDBusVirtualObject
{
public:
    enum class Answer { Grant, Cancel, End, NotAllowed, Nothing, NoList, OtherShortcut };

    explicit MockPortal(PrivateBus &bus) : m_bus(bus.connection())
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this, QDBusConnection::SubPath);
        EXPECT_TRUE(m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    ~MockPortal() override
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"), QDBusConnection::UnregisterTree);
    }

    bool hasShortcuts = true, hasRegistry = true, objectPathHandle = false;
    Answer toCreate = Answer::Grant, toBind = Answer::Grant;
    QString sessionName; ///< instead of a proper one
    QString trigger = QStringLiteral("Press <Alt>x");

    /// As every portal should be, and nothing noted yet.
    void beFair()
    {
        hasShortcuts = hasRegistry = true;
        objectPathHandle = false;
        toCreate = toBind = Answer::Grant;
        sessionName = QString();
        session.clear();
        closed = listed = 0;
    }

    QStringList faults, registered;
    QString preferred, description;
    QString session; ///< the one that is open
    int sessions = 0, closed = 0, listed = 0, withdrawn = 0;

    void press(const QString &at, const QString &id) { emitShortcut("Activated", at, id); }
    void release(const QString &at, const QString &id) { emitShortcut("Deactivated", at, id); }
    void userSets(const QString &combination)
    {
        trigger = combination;
        signal(path(), shortcutsName(), "ShortcutsChanged", {object(session), QVariant::fromValue(bound())});
    }
    void closeSession()
    {
        signal(session, QStringLiteral("org.freedesktop.portal.Session"), "Closed", {});
        session.clear();
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &) override
    {
        m_caller = call.service();
        if (call.interface() == u"org.freedesktop.host.portal.Registry")
            return hasRegistry && introduce(call);
        if (call.interface() == u"org.freedesktop.portal.Session")
            return end(call);
        if (call.interface() == u"org.freedesktop.portal.Request") {
            ++withdrawn;
            return m_bus.send(call.createReply());
        }
        if (!hasShortcuts || call.interface() != shortcutsName())
            return false;
        check(!hasRegistry || m_introduced.contains(m_caller), "a call before the program said who it is");
        if (call.member() == u"CreateSession")
            return create(call);
        return call.member() == u"BindShortcuts" ? bind(call) : call.member() == u"ListShortcuts" && list(call);
    }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QString shortcutsName() { return QStringLiteral("org.freedesktop.portal.GlobalShortcuts"); }
    static QVariant object(const QString &at) { return QVariant::fromValue(QDBusObjectPath(at)); }
    PortalShortcuts bound() const
    {
        const QString id = toBind == Answer::OtherShortcut ? QStringLiteral("another") : PortalHotKeys::shortcutId();
        return {{id, {{QStringLiteral("trigger_description"), trigger}}}};
    }
    void check(bool holds, const char *what)
    {
        if (!holds)
            faults += QString::fromLatin1(what);
    }
    void signal(const QString &at, const QString &interface, const char *name, const QVariantList &arguments)
    {
        auto message = QDBusMessage::createTargetedSignal(m_caller, at, interface, QString::fromLatin1(name));
        message.setArguments(arguments);
        m_bus.send(message);
    }
    void emitShortcut(const char *name, const QString &at, const QString &id)
    {
        signal(path(), shortcutsName(), name, {object(at), id, qulonglong(1), QVariantMap()});
    }
    QString token(const QVariantMap &options, const char *name)
    {
        static const QRegularExpression valid(QStringLiteral("^[A-Za-z0-9_]+$"));
        const QString given = options.value(QString::fromLatin1(name)).toString();
        check(valid.match(given).hasMatch(), "a token that cannot be part of a path");
        check(!m_tokens.contains(given), "a token for the second time");
        m_tokens += given;
        return given;
    }
    QString ofCaller(const char *kind, const QString &name) const
    {
        return path() + u'/' + QString::fromLatin1(kind) + u'/' + m_caller.mid(1).replace(u'.', u'_') + u'/' + name;
    }
    bool introduce(const QDBusMessage &call)
    {
        check(call.signature() == u"sa{sv}", "Register takes sa{sv}");
        check(!m_introduced.contains(m_caller), "introduced for the second time");
        m_introduced += m_caller;
        registered += call.arguments().value(0).toString();
        return m_bus.send(call.createReply());
    }
    bool end(const QDBusMessage &call)
    {
        check(call.member() == u"Close" && call.path() == session, "an end of no session");
        ++closed;
        session.clear();
        return m_bus.send(call.createReply());
    }
    /// The answer to the call, and later that of the user.
    bool respond(const QDBusMessage &call, Answer answer, const QVariantMap &results)
    {
        const QString handle =
            ofCaller("request", token(qdbus_cast<QVariantMap>(call.arguments().last()), "handle_token"));
        if (answer == Answer::NotAllowed)
            return m_bus.send(
                call.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotAllowed"), QStringLiteral("no")));
        m_bus.send(call.createReply(object(handle)));
        if (answer == Answer::Nothing)
            return true;
        const uint code = answer == Answer::Cancel ? 1 : answer == Answer::End ? 2 : 0;
        QMetaObject::invokeMethod(
            this,
            [this, handle, code, results] {
                // A stranger's word first, on its own path.
                signal(path() + QStringLiteral("/request/x/y"), QStringLiteral("org.freedesktop.portal.Request"),
                       "Response", {2U, QVariantMap()});
                signal(handle, QStringLiteral("org.freedesktop.portal.Request"), "Response",
                       {code, code == 0 ? results : QVariantMap()});
            },
            Qt::QueuedConnection);
        return true;
    }
    bool create(const QDBusMessage &call)
    {
        check(call.signature() == u"a{sv}", "CreateSession takes a{sv}");
        check(session.isEmpty(), "a second session beside the first");
        const QString name = token(qdbus_cast<QVariantMap>(call.arguments().value(0)), "session_handle_token");
        if (toCreate == Answer::Grant) {
            session = ofCaller("session", name);
            ++sessions;
        }
        const QString said = sessionName.isNull() ? session : sessionName;
        m_isBound = false;
        return respond(call, toCreate,
                       {{QStringLiteral("session_handle"), objectPathHandle ? object(said) : QVariant(said)}});
    }
    bool bind(const QDBusMessage &call)
    {
        check(call.signature() == u"oa(sa{sv})sa{sv}", "BindShortcuts takes oa(sa{sv})sa{sv}");
        check(call.arguments().value(0).value<QDBusObjectPath>().path() == session, "shortcuts of no session");
        check(!m_isBound, "bound for the second time in one session");
        m_isBound = true;
        const auto shortcuts = qdbus_cast<PortalShortcuts>(call.arguments().value(1));
        check(shortcuts.size() == 1 && !shortcuts[0].id.isEmpty(), "one shortcut with a name");
        const QVariantMap about = shortcuts.value(0).properties;
        check(QSet<QString>({QStringLiteral("description"), QStringLiteral("preferred_trigger")})
                  .contains({about.keyBegin(), about.keyEnd()}),
              "properties that the protocol does not know");
        preferred = about.value(QStringLiteral("preferred_trigger")).toString();
        description = about.value(QStringLiteral("description")).toString();
        const bool says = toBind != Answer::NoList;
        return respond(call, says ? toBind : Answer::Grant,
                       says ? QVariantMap{{QStringLiteral("shortcuts"), QVariant::fromValue(bound())}} : QVariantMap());
    }
    bool list(const QDBusMessage &call)
    {
        check(call.signature() == u"oa{sv}", "ListShortcuts takes oa{sv}");
        ++listed;
        return respond(call, Answer::Grant, {{QStringLiteral("shortcuts"), QVariant::fromValue(bound())}});
    }

    QDBusConnection m_bus;
    QString m_caller;
    QStringList m_introduced, m_tokens;
    bool m_isBound = false;
};

} // namespace orvelle::test
