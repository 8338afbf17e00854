#include "platform/freedesktop/tray/NotifierItem.h"

#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/tray/HostMenu.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcNotifierItem, "NotifierItem", QtInfoMsg)

namespace {

constexpr int callTimeoutMs = 5000;
/// A watcher that will not have the item is left alone.
constexpr int mostDrops = 3;
constexpr std::array iconSides{16, 22, 24, 32, 48};
constexpr uint doNotQueueForName = 4; // DBUS_NAME_FLAG_DO_NOT_QUEUE

QString watcherService()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}
QString watcherPath()
{
    return u"/StatusNotifierWatcher"_s;
}
QString itemPath()
{
    return u"/StatusNotifierItem"_s;
}

QDBusMessage watcherCall(const QString &interface, const QString &method)
{
    auto call = QDBusMessage::createMethodCall(watcherService(), watcherPath(), interface, method);
    call.setAutoStartService(false); // a watcher without a panel would serve nobody
    return call;
}

bool isAbsent(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown ||
           error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner"_s; // the name without auto-start
}

bool lacksProperty(const QDBusError &error)
{
    return error.type() == QDBusError::UnknownProperty || error.type() == QDBusError::UnknownInterface ||
           error.type() == QDBusError::UnknownMethod || error.type() == QDBusError::InvalidArgs;
}

void registerTypes()
{
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

/// Watchers name an item by its service, with or without the object's path.
bool isItemOf(const QString &service, const QString &item)
{
    return item == service || item.startsWith(service + u'/') || item.startsWith(service + u'@');
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &out, const NotifierPixmap &pixmap)
{
    out.beginStructure();
    out << pixmap.width << pixmap.height << pixmap.bytes;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, NotifierPixmap &pixmap)
{
    in.beginStructure();
    in >> pixmap.width >> pixmap.height >> pixmap.bytes;
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const NotifierToolTip &toolTip)
{
    out.beginStructure();
    out << toolTip.iconName << toolTip.iconPixmaps << toolTip.title << toolTip.text;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, NotifierToolTip &toolTip)
{
    in.beginStructure();
    in >> toolTip.iconName >> toolTip.iconPixmaps >> toolTip.title >> toolTip.text;
    in.endStructure();
    return in;
}

NotifierPixmap NotifierPixmap::fromImage(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{argb.width(), argb.height(), QByteArray(argb.width() * argb.height() * 4, '\0')};
    auto *to = reinterpret_cast<uchar *>(pixmap.bytes.data());
    for (int y = 0; y < argb.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x, to += 4)
            qToBigEndian<quint32>(line[x], to);
    }
    return pixmap;
}

NotifierItem::NotifierItem(const QDBusConnection &bus, QObject *parent)
    : QObject(parent),
      m_bus(bus),
      m_watcher(watcherService(), bus, QDBusServiceWatcher::WatchForOwnerChange),
      m_serviceName(u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid()))
{
    registerTypes();
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) { watcherOwnerChanged(newOwner); });
}

NotifierItem::~NotifierItem()
{
    if (!m_started)
        return;
    m_bus.unregisterObject(itemPath());
    m_bus.asyncCall(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                   u"org.freedesktop.DBus"_s, u"ReleaseName"_s)
                    << m_serviceName);
}

void NotifierItem::start()
{
    if (m_started)
        return;
    if (!m_bus.isConnected()) {
        qCInfo(lcNotifierItem, "no session bus, so no tray host on it");
        QMetaObject::invokeMethod(
            this, [this] { setHasHost(false); }, Qt::QueuedConnection);
        return;
    }
    m_started = true;
    m_bus.registerObject(itemPath(), this, QDBusConnection::ExportScriptableContents);
    for (const auto &[signal, slot] : {std::pair{u"StatusNotifierHostRegistered"_s, SLOT(askForHost())},
                                       std::pair{u"StatusNotifierHostUnregistered"_s, SLOT(askForHost())}})
        m_bus.connect({}, watcherPath(), watcherService(), signal, this, slot);
    m_bus.connect({}, watcherPath(), watcherService(), u"StatusNotifierItemUnregistered"_s, this,
                  SLOT(itemUnregistered(QString)));
    // The bus handles one connection's messages in order: the name is ours
    // before the watcher hears of it, without waiting for the answer.
    m_bus.asyncCall(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                   u"org.freedesktop.DBus"_s, u"RequestName"_s)
                    << m_serviceName << doNotQueueForName);
    registerItem();
}

void NotifierItem::watcherOwnerChanged(const QString &newOwner)
{
    if (!m_started)
        return;
    ++m_search;
    m_registered = false;
    m_dropped = 0;
    if (newOwner.isEmpty())
        setHasHost(false);
    else
        registerItem();
}

/// A watcher may drop what is still there: GNOME's does now and then, when the
/// name comes to its knowledge later than what the item says of itself. It
/// does not look for the name of a connection.
void NotifierItem::itemUnregistered(const QString &item)
{
    const bool isOurs = isItemOf(m_serviceName, item) || isItemOf(m_bus.baseService(), item);
    if (!isOurs || !m_registered || m_dropped >= mostDrops)
        return;
    ++m_dropped;
    qCInfo(lcNotifierItem, "the watcher dropped the item; it is registered again");
    registerItem();
}

void NotifierItem::registerItem()
{
    const QString name = m_dropped > 0 ? m_bus.baseService() : m_serviceName;
    const auto call = watcherCall(watcherService(), u"RegisterStatusNotifierItem"_s) << name;
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call, callTimeoutMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, search = ++m_search] {
        pending->deleteLater();
        if (search != m_search)
            return;
        const QDBusPendingReply<> reply = *pending;
        m_registered = !reply.isError();
        if (m_registered) {
            askForHost();
            return;
        }
        if (!isAbsent(reply.error()))
            qCWarning(lcNotifierItem, "the watcher refused the item: %ls", qUtf16Printable(reply.error().name()));
        setHasHost(false);
    });
}

void NotifierItem::askForHost()
{
    if (!m_registered)
        return;
    const auto call = watcherCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s)
                      << watcherService() << u"IsStatusNotifierHostRegistered"_s;
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call, callTimeoutMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, search = ++m_search] {
        pending->deleteLater();
        if (search != m_search)
            return;
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        setHasHost(reply.isValid() ? reply.value().variant().toBool() : lacksProperty(reply.error()));
    });
}

void NotifierItem::setHasHost(bool found)
{
    if (m_hasHost != found)
        qCInfo(lcNotifierItem, found ? "a tray host shows the item" : "the tray host is gone");
    m_hasHost = found;
    emit hostSearched(found);
}

void NotifierItem::setPainter(StatusItem::Painter painter)
{
    m_painter = std::move(painter);
    m_pixmaps.clear();
    emit NewIcon();
}

void NotifierItem::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    m_pixmaps.clear();
    emit NewIcon();
}

void NotifierItem::setTitle(const QString &title)
{
    if (title == m_title)
        return;
    m_title = title;
    emit NewTitle();
    emit NewToolTip();
}

void NotifierItem::setToolTip(const QString &toolTip)
{
    if (toolTip == m_toolTip)
        return;
    m_toolTip = toolTip;
    emit NewToolTip();
}

NotifierPixmaps NotifierItem::iconPixmap() const
{
    if (m_pixmaps.isEmpty() && m_painter) {
        std::ranges::transform(iconSides, std::back_inserter(m_pixmaps),
                               [this](int side) { return NotifierPixmap::fromImage(m_painter(side, m_color)); });
    }
    return m_pixmaps;
}

QDBusObjectPath NotifierItem::menu() const
{
    return QDBusObjectPath(HostMenu::objectPath());
}

// The host waits for the answer to its call, and a menu may run an event loop
// of its own: so the signals come after the answer.

void NotifierItem::Activate(int x, int y)
{
    QMetaObject::invokeMethod(
        this,
        [this, x, y] {
            emit activated({x, y});
        },
        Qt::QueuedConnection);
}

void NotifierItem::SecondaryActivate(int, int) {}

void NotifierItem::ContextMenu(int x, int y)
{
    QMetaObject::invokeMethod(
        this,
        [this, x, y] {
            emit contextMenuRequested({x, y});
        },
        Qt::QueuedConnection);
}

void NotifierItem::Scroll(int, const QString &orientation)
{
    const QString direction = orientation.toLower(); // hosts differ in case
    if (direction != u"vertical"_s && direction != u"horizontal"_s && calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, u"the orientation is vertical or horizontal"_s);
}

void NotifierItem::ProvideXdgActivationToken(const QString &token)
{
    if (!takeActivationToken(token) && calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, u"not an activation token"_s);
}

} // namespace orvelle
