#include "platform/freedesktop/kde/KdeHotKeys.h"

#include "platform/Clock.h"
#include "platform/freedesktop/BusSignals.h"
#include "platform/freedesktop/kde/KdeKeyNumber.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QKeySequence>
#include <QLoggingCategory>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcKde, "HotKeys", QtInfoMsg)

constexpr int timeoutMs = 5000;

/// What setShortcutKeys is asked for; KGlobalAccel's own numbers.
enum SetFlag : uint {
    IsPresent = 2,    ///< the key is to work
    NotAsStored = 4,  ///< also when the user once set another one
    IsTheDefault = 8, ///< does not set it
};

QString serviceName()
{
    return u"org.kde.kglobalaccel"_s;
}
QString servicePath()
{
    return u"/kglobalaccel"_s;
}
QString serviceInterface()
{
    return u"org.kde.KGlobalAccel"_s;
}
QString componentInterface()
{
    return u"org.kde.kglobalaccel.Component"_s;
}

QString componentPath(QString appId)
{
    const auto isPlain = [](QChar c) { return c.unicode() < 0x80 && c.isLetterOrNumber(); };
    for (QChar &c : appId)
        c = isPlain(c) ? c : QChar(u'_');
    return u"/component/"_s + appId;
}

QVariant sequences(int key)
{
    return QVariant::fromValue(KdeKeySequences{{{key, 0, 0, 0}}});
}

/// Of several the first; absent for none.
std::optional<int> firstKey(const KdeKeySequences &sequences)
{
    const auto found = std::ranges::find_if(sequences, [](const KdeKeySequence &each) { return each.keys[0] != 0; });
    return found == sequences.end() ? std::nullopt : std::optional(found->keys[0]);
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &out, const KdeKeySequence &sequence)
{
    out.beginStructure();
    out << QList<int>(sequence.keys.begin(), sequence.keys.end());
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, KdeKeySequence &sequence)
{
    QList<int> keys;
    in.beginStructure();
    in >> keys;
    in.endStructure();
    sequence = {};
    std::ranges::copy_n(keys.cbegin(), std::min<qsizetype>(keys.size(), sequence.keys.size()), sequence.keys.begin());
    return in;
}

KdeHotKeys::KdeHotKeys(Surroundings surroundings, QObject *parent)
    : HotKeyService(parent),
      m_surroundings(std::move(surroundings)),
      m_action{m_surroundings.appId, actionId(), m_surroundings.appName, m_surroundings.description},
      m_service(serviceName(), m_surroundings.bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    qDBusRegisterMetaType<KdeKeySequence>();
    qDBusRegisterMetaType<KdeKeySequences>();
    connect(&m_service, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &now) { serviceOwnerChanged(now); });
}

KdeHotKeys::~KdeHotKeys()
{
    unregisterHotKey();
}

std::optional<HotKeyError> KdeHotKeys::registerHotKey(const HotKey &hotKey)
{
    unregisterHotKey();
    if (!m_surroundings.bus.isConnected())
        return HotKeyError{HotKeyError::Kind::Unavailable, 0};
    m_wanted = kdeKeyNumber(hotKey, m_surroundings.keymap ? m_surroundings.keymap() : QByteArray());
    if (m_wanted == 0)
        return HotKeyError{HotKeyError::Kind::NoSuchKey, 0};
    begin();
    return HotKeyError{HotKeyError::Kind::Undecided, 0};
}

/// The service goes on holding the key for a program that has ended.
void KdeHotKeys::unregisterHotKey()
{
    if (m_isListening)
        tell(u"setInactive"_s);
    m_wanted = 0;
    forget();
}

void KdeHotKeys::forget()
{
    ++m_attempt;
    m_given.reset();
    m_trigger.clear();
    m_presses.released();
    listen(false);
}

void KdeHotKeys::listen(bool on)
{
    if (std::exchange(m_isListening, on) == on)
        return;
    const QString component = componentPath(m_surroundings.appId);
    const BusSignal heard[] = {
        {servicePath(), serviceInterface(), u"yourShortcutsChanged"_s, SLOT(changed(QDBusMessage))},
        {component, componentInterface(), u"globalShortcutPressed"_s, SLOT(pressed(QString, QString, qlonglong))},
        {component, componentInterface(), u"globalShortcutReleased"_s, SLOT(released(QString, QString, qlonglong))},
    };
    hearSignals(m_surroundings.bus, serviceName(), heard, this, on);
}

/// The default tells what was asked for last. If it is the same again, what the
/// user has made of it counts.
void KdeHotKeys::begin()
{
    listen(true);
    tell(u"doRegister"_s);
    ask(u"defaultShortcutKeys"_s, {}, [this](const KdeKeySequences &before) { set(firstKey(before) == m_wanted); });
}

void KdeHotKeys::set(bool isKnown)
{
    const uint flags = isKnown ? IsPresent : IsPresent | NotAsStored;
    ask(u"setShortcutKeys"_s, {sequences(m_wanted), flags}, [this, isKnown](const KdeKeySequences &set) {
        if (!isKnown && firstKey(set))
            remember();
        given(set, isKnown ? HotKeyError::Kind::Denied : HotKeyError::Kind::HeldByAnother);
    });
}

void KdeHotKeys::remember()
{
    tell(u"setShortcutKeys"_s, {sequences(m_wanted), uint(IsTheDefault)});
}

void KdeHotKeys::given(const KdeKeySequences &sequences, HotKeyError::Kind ifNone)
{
    const std::optional<int> before = std::exchange(m_given, firstKey(sequences));
    m_trigger =
        m_given.value_or(m_wanted) == m_wanted ? QString() : QKeySequence(*m_given).toString(QKeySequence::NativeText);
    if (!m_given)
        emit hotKeyLost({ifNone, 0});
    else if (m_given != before)
        emit hotKeyFound();
}

void KdeHotKeys::tell(const QString &method, const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(serviceName(), servicePath(), serviceInterface(), method);
    call.setArguments(QVariantList{m_action} + arguments);
    call.setAutoStartService(false);
    m_surroundings.bus.send(call);
}

void KdeHotKeys::ask(const QString &method, const QVariantList &arguments, const Handler &answered)
{
    auto call = QDBusMessage::createMethodCall(serviceName(), servicePath(), serviceInterface(), method);
    call.setArguments(QVariantList{m_action} + arguments);
    call.setAutoStartService(false); // on Wayland only the compositor can be it
    auto *watcher = new QDBusPendingCallWatcher(m_surroundings.bus.asyncCall(call, timeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answered, attempt = m_attempt] {
        watcher->deleteLater();
        if (attempt != m_attempt)
            return;
        const QDBusPendingReply<KdeKeySequences> reply = *watcher;
        if (reply.isValid())
            return answered(reply.value());
        qCInfo(lcKde, "The desktop's shortcuts do not answer: %ls", qUtf16Printable(reply.error().name()));
        lose(HotKeyError::Kind::Unavailable);
    });
}

/// The wish stays: the service may come, or come again.
void KdeHotKeys::lose(HotKeyError::Kind kind)
{
    forget();
    emit hotKeyLost({kind, 0});
}

void KdeHotKeys::serviceOwnerChanged(const QString &newOwner)
{
    if (m_wanted == 0)
        return;
    if (newOwner.isEmpty())
        return lose(HotKeyError::Kind::Unavailable);
    forget();
    begin();
}

void KdeHotKeys::pressed(const QString &component, const QString &action, qlonglong)
{
    if (component == m_surroundings.appId && action == actionId() && m_presses.pressed(m_surroundings.clock.now()))
        emit fired();
}

void KdeHotKeys::released(const QString &component, const QString &action, qlonglong)
{
    if (component == m_surroundings.appId && action == actionId())
        m_presses.released();
}

/// By the user, in the system settings. The arguments are of types that slots
/// are not matched by.
void KdeHotKeys::changed(const QDBusMessage &signal)
{
    if (signal.signature() != u"asa(ai)")
        return;
    if (signal.arguments().at(0).toStringList().mid(0, 2) != m_action.mid(0, 2))
        return;
    remember();
    given(qdbus_cast<KdeKeySequences>(signal.arguments().at(1)), HotKeyError::Kind::Denied);
}

} // namespace orvelle
