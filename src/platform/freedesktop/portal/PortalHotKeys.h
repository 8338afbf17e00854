#pragma once

#include "base/Timestamp.h"
#include "platform/HotKeyService.h"
#include "platform/freedesktop/KeyPresses.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace orvelle {

class Clock;
class PortalRequest;
struct PortalAnswer;

/// (sa{sv}): a shortcut's name and what is said of it.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
using PortalShortcuts = QList<PortalShortcut>;
QDBusArgument &operator<<(QDBusArgument &out, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &in, PortalShortcut &shortcut);

/// The hot key by the desktop's portal (org.freedesktop.portal.GlobalShortcuts,
/// version 1 on): the desktop asks the user, and may give another combination
/// than the one that was asked for. So registering is never done at once; what
/// came of it is told by hotKeyFound() and hotKeyLost(). Begins anew when the
/// portal comes later or again. Main thread.
class PortalHotKeys : public HotKeyService
{
    Q_OBJECT

public:
    struct Surroundings {
        QDBusConnection bus; ///< to itself: the portal knows a program by its connection
        Clock &clock;
        QString appId;                      ///< the name of the desktop entry
        QString description;                ///< what the user reads that the key does
        std::function<QByteArray()> keymap; ///< see portalTrigger()
    };
    explicit PortalHotKeys(Surroundings surroundings, QObject *parent = nullptr);
    ~PortalHotKeys() override;

    std::optional<HotKeyError> registerHotKey(const HotKey &hotKey) override;
    void unregisterHotKey() override;
    QString desktopTrigger() const override { return m_trigger; }

    static QString shortcutId() { return QStringLiteral("toggle-menu"); }

private:
    void begin();
    void createSession();
    void sessionCreated(const PortalAnswer &answer);
    void bind();
    void bound(const PortalAnswer &answer);
    void list();
    void listed(const PortalShortcuts &shortcuts);
    void fail(const PortalAnswer &answer);
    void lose(HotKeyError::Kind kind, int code = 0);
    void forgetSession();
    void listen(bool on);
    void portalOwnerChanged(const QString &oldOwner, const QString &newOwner);
    bool mayBeginAgain();

private slots:
    void activated(const QDBusObjectPath &session, const QString &id, qulonglong time, const QVariantMap &options);
    void deactivated(const QDBusObjectPath &session, const QString &id, qulonglong time, const QVariantMap &options);
    void shortcutsChanged(const QDBusMessage &signal);
    void sessionClosed();

private:
    Surroundings m_surroundings;
    QDBusServiceWatcher m_portal;
    std::optional<HotKey> m_wanted;
    std::unique_ptr<PortalRequest> m_request; ///< not answered yet
    quint64 m_attempt = 0;                    ///< answers to older ones are dropped
    bool m_introducing = false;
    bool m_introduced = false; ///< to the portal that runs now
    bool m_isBound = false;
    QString m_session;
    QString m_trigger;
    QList<Timestamp> m_begun; ///< the last times that the portal came again
    KeyPresses m_presses;
};

} // namespace orvelle

Q_DECLARE_METATYPE(orvelle::PortalShortcut)
