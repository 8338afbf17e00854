#include "menubar/GlobalShortcut.h"

#include "base/Notifications.h"
#include "platform/UserDefaults.h"

#include <QLoggingCategory>

#include <limits>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcShortcut, "GlobalShortcut", QtInfoMsg)

QString enabledKey()
{
    return QStringLiteral("GlobalShortcutEnabled");
}
QString keyCodeKey()
{
    return QStringLiteral("GlobalShortcutKeyCode");
}
QString modifiersKey()
{
    return QStringLiteral("GlobalShortcutModifiers");
}

bool fits(qint64 number)
{
    return number >= 0 && number <= std::numeric_limits<quint32>::max();
}

GlobalShortcut::State stateOf(HotKeyError::Kind kind)
{
    switch (kind) {
    case HotKeyError::Kind::Unavailable:
        return GlobalShortcut::State::Unavailable;
    case HotKeyError::Kind::HeldByAnother:
        return GlobalShortcut::State::HeldByAnother;
    case HotKeyError::Kind::NoSuchKey:
        return GlobalShortcut::State::NoSuchKey;
    case HotKeyError::Kind::Undecided:
        return GlobalShortcut::State::Undecided;
    case HotKeyError::Kind::Denied:
        return GlobalShortcut::State::Denied;
    }
    Q_UNREACHABLE();
}

void logFailure(const HotKeyError &error)
{
    if (error.kind == HotKeyError::Kind::Undecided)
        return;
    if (error.kind == HotKeyError::Kind::Unavailable)
        qCWarning(lcShortcut, "Failed to install hot key event handler: %d", error.code);
    else
        qCWarning(lcShortcut, "Failed to register hot key: %d", error.code);
}

} // namespace

GlobalShortcut::GlobalShortcut(const Services &services, QObject *parent) : QObject(parent), m_services(services)
{
    const HotKeyService *hotKeys = &services.hotKeys;
    connect(hotKeys, &HotKeyService::fired, &services.notifications, &Notifications::globalShortcutFired);
    connect(hotKeys, &HotKeyService::hotKeyLost, this, [this](const HotKeyError &error) {
        logFailure(error);
        setState(stateOf(error.kind));
    });
    connect(hotKeys, &HotKeyService::hotKeyFound, this, [this] {
        m_state = State::Registered;
        emit stateChanged(); // also for another trigger
    });
    connect(&services.defaults, &UserDefaults::changedExternally, this, &GlobalShortcut::storedElsewhere);
}

bool GlobalShortcut::isEnabled() const
{
    return m_services.defaults.get<bool>(enabledKey()).value_or(true);
}

std::optional<Shortcut> GlobalShortcut::shortcut() const
{
    constexpr Shortcut standard;
    const qint64 keyCode = m_services.defaults.get<qint64>(keyCodeKey()).value_or(standard.keyCode);
    const qint64 modifiers = m_services.defaults.get<qint64>(modifiersKey()).value_or(0);
    if (!fits(keyCode) || !fits(modifiers))
        return std::nullopt;
    if (modifiers == 0)
        return Shortcut{quint32(keyCode), standard.modifiers};
    return Shortcut{quint32(keyCode), quint32(modifiers) & allShortcutModifiers};
}

void GlobalShortcut::setup()
{
    m_isSetUp = true;
    setState(registered());
}

GlobalShortcut::State GlobalShortcut::registered()
{
    if (!isEnabled())
        return State::Off;
    const auto stored = shortcut();
    const auto hotKey = stored ? hotKeyOf(*stored) : std::nullopt;
    if (!hotKey) {
        qCWarning(lcShortcut, "The stored shortcut is none that can be registered");
        return State::Refused;
    }
    const auto error = m_services.hotKeys.registerHotKey(*hotKey);
    if (!error)
        return State::Registered;
    logFailure(*error);
    return stateOf(error->kind);
}

void GlobalShortcut::remove()
{
    m_isSetUp = false;
    m_services.hotKeys.unregisterHotKey();
    setState(State::Off);
}

void GlobalShortcut::setState(State state)
{
    if (std::exchange(m_state, state) != state)
        emit stateChanged();
}

bool GlobalShortcut::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return true;
    if (!m_services.defaults.write(enabledKey(), enabled))
        return false;
    emit m_services.notifications.globalShortcutChanged();
    emit m_services.notifications.syncableSettingsChanged();
    return true;
}

bool GlobalShortcut::setShortcut(const Shortcut &wanted)
{
    if (!m_services.defaults.write(keyCodeKey(), qint64(wanted.keyCode)) ||
        !m_services.defaults.write(modifiersKey(), qint64(wanted.modifiers)))
        return false;
    emit m_services.notifications.globalShortcutChanged();
    emit m_services.notifications.syncableSettingsChanged();
    return true;
}

void GlobalShortcut::storedElsewhere(const QStringList &keys)
{
    if (!keys.contains(enabledKey()) && !keys.contains(keyCodeKey()) && !keys.contains(modifiersKey()))
        return;
    if (m_isSetUp)
        emit m_services.notifications.globalShortcutChanged();
    else
        emit stateChanged(); // what is stored shows in the settings all the same
}

} // namespace orvelle
