#pragma once

#include "platform/HotKeyService.h"
#include "platform/freedesktop/KeyPresses.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QStringList>

#include <array>
#include <functional>

namespace orvelle {

class Clock;

/// (ai): keys that are pressed one after the other, by kdeKeyNumber(), and 0
/// where there is none.
struct KdeKeySequence {
    std::array<int, 4> keys{};
};
using KdeKeySequences = QList<KdeKeySequence>;
QDBusArgument &operator<<(QDBusArgument &out, const KdeKeySequence &sequence);
const QDBusArgument &operator>>(const QDBusArgument &in, KdeKeySequence &sequence);

/// The hot key by KDE's own service (org.kde.kglobalaccel, in KWin on Wayland):
/// the portal of Plasma 5.27 binds none, and opens the system settings each
/// time it is asked. The shortcut is listed there; what the user sets or
/// removes there counts until another one is asked for here. Registering is
/// never done at once; hotKeyFound() or hotKeyLost() follows. Begins anew when
/// the service comes later or again. Main thread.
class KdeHotKeys : public HotKeyService
{
    Q_OBJECT

public:
    struct Surroundings {
        QDBusConnection bus;
        Clock &clock;
        QString appId;                      ///< the name of the desktop entry
        QString appName;                    ///< under which the user finds the shortcut
        QString description;                ///< what the user reads that the key does
        std::function<QByteArray()> keymap; ///< see kdeKeyNumber()
    };
    explicit KdeHotKeys(Surroundings surroundings, QObject *parent = nullptr);
    ~KdeHotKeys() override;

    std::optional<HotKeyError> registerHotKey(const HotKey &hotKey) override;
    void unregisterHotKey() override;
    QString desktopTrigger() const override { return m_trigger; }

    static QString actionId() { return QStringLiteral("toggle-menu"); }

private:
    using Handler = std::function<void(const KdeKeySequences &)>;
    void begin();
    void forget();
    void listen(bool on);
    void ask(const QString &method, const QVariantList &arguments, const Handler &answered);
    void tell(const QString &method, const QVariantList &arguments = {});
    void remember();
    void set(bool isKnown);
    void given(const KdeKeySequences &sequences, HotKeyError::Kind ifNone);
    void lose(HotKeyError::Kind kind);
    void serviceOwnerChanged(const QString &newOwner);

private slots:
    void pressed(const QString &component, const QString &action, qlonglong time);
    void released(const QString &component, const QString &action, qlonglong time);
    void changed(const QDBusMessage &signal);

private:
    Surroundings m_surroundings;
    QStringList m_action; ///< by which the service knows the shortcut
    QDBusServiceWatcher m_service;
    int m_wanted = 0;      ///< 0 for none
    quint64 m_attempt = 0; ///< answers to older ones are dropped
    bool m_isListening = false;
    std::optional<int> m_given;
    QString m_trigger;
    KeyPresses m_presses;
};

} // namespace orvelle

Q_DECLARE_METATYPE(orvelle::KdeKeySequence)
