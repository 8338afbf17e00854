#include "platform/freedesktop/tray/FreedesktopStatusItem.h"

#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/tray/EmbeddedTray.h"
#include "platform/freedesktop/tray/HostMenu.h"
#include "platform/freedesktop/tray/NotifierItem.h"
#include "platform/freedesktop/x11/ScreenPositions.h"

#include <QCursor>
#include <QGuiApplication>
#include <QLoggingCategory>

namespace orvelle {

Q_LOGGING_CATEGORY(lcStatusItem, "StatusItem", QtInfoMsg)

namespace {

/// How long a desktop may be without tray before it counts as having none: a
/// panel that starts or restarts takes a moment.
constexpr std::chrono::seconds searchTime{5};

QPoint pointerPosition()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) ? QCursor::pos() : QPoint();
}

/// Without a display (in tests of the bus alone) places stay as they are.
QPoint hostPosition(const QPoint &given)
{
    const QList<ScreenLayout> screens = currentScreens();
    return screens.isEmpty() ? given : fromHost(given, pointerPosition(), screens);
}

} // namespace

FreedesktopStatusItem::FreedesktopStatusItem(Clock &clock, DesktopColorScheme &colors,
                                             const QDBusConnection &sessionBus)
    : m_clock(clock),
      m_bus(sessionBus),
      m_colors(colors),
      m_hostMenu(std::make_unique<HostMenu>()),
      m_notifier(std::make_unique<NotifierItem>(sessionBus)),
      m_embedded(std::make_unique<EmbeddedTray>())
{
    connect(&m_colors, &DesktopColorScheme::changed, this, &FreedesktopStatusItem::recolor);
    connect(m_hostMenu.get(), &HostMenu::chosen, this, &FreedesktopStatusItem::hostMenuChosen);
    connect(m_notifier.get(), &NotifierItem::hostSearched, this, &FreedesktopStatusItem::hostSearched);
    connect(m_notifier.get(), &NotifierItem::activated, this,
            [this](const QPoint &position) { emit activated(hostPosition(position)); });
    connect(m_notifier.get(), &NotifierItem::contextMenuRequested, this,
            [this](const QPoint &position) { emit contextMenuRequested(hostPosition(position)); });
    connect(m_embedded.get(), &EmbeddedTray::dockedChanged, this, &FreedesktopStatusItem::updateHost);
    connect(m_embedded.get(), &EmbeddedTray::clicked, this, &FreedesktopStatusItem::embeddedClicked);
    recolor();
}

FreedesktopStatusItem::~FreedesktopStatusItem() = default;

void FreedesktopStatusItem::show()
{
    if (m_shown)
        return;
    m_shown = true;
    if (m_bus.isConnected())
        m_bus.registerObject(HostMenu::objectPath(), m_hostMenu.get(), QDBusConnection::ExportScriptableContents);
    m_notifier->start();
    m_noneTimer = m_clock.singleShot(searchTime, [this] { reportNone(); });
}

void FreedesktopStatusItem::setPainter(Painter painter)
{
    m_notifier->setPainter(painter);
    m_embedded->setPainter(std::move(painter));
}

void FreedesktopStatusItem::setTitle(const QString &title)
{
    m_notifier->setTitle(title);
    m_embedded->setTitle(title);
}

void FreedesktopStatusItem::setToolTip(const QString &toolTip)
{
    m_notifier->setToolTip(toolTip);
}

void FreedesktopStatusItem::setHostMenu(const QList<HostMenuEntry> &entries)
{
    m_hostMenu->setEntries(entries);
}

void FreedesktopStatusItem::setHostMenuSource(HostMenuSource &source)
{
    m_hostMenu->setSource(source);
    m_notifier->setItemIsMenu(true);
}

void FreedesktopStatusItem::recolor()
{
    m_notifier->setColor(m_colors.symbolColor());
    m_embedded->setFallbackColor(m_colors.symbolColor());
}

void FreedesktopStatusItem::hostSearched(bool found)
{
    if (found)
        m_embedded->stop();
    else
        m_embedded->start();
    updateHost();
}

void FreedesktopStatusItem::updateHost()
{
    const Host now = m_notifier->hasHost() ? Host::Notifier : m_embedded->isDocked() ? Host::Embedded : Host::None;
    if (now == m_host)
        return;
    m_host = now;
    if (now == Host::None) {
        m_noneTimer = m_clock.singleShot(searchTime, [this] { reportNone(); });
        return;
    }
    m_noneTimer.reset();
    emit hostChanged(now);
}

void FreedesktopStatusItem::reportNone()
{
    if (m_host != Host::None)
        return;
    qCInfo(lcStatusItem, "the desktop has no tray");
    emit hostChanged(Host::None);
}

void FreedesktopStatusItem::embeddedClicked(Qt::MouseButton button, const QRect &icon)
{
    const QList<ScreenLayout> screens = currentScreens();
    const QPoint anchor = menuAnchor(icon, screens);
    const QPoint position = fromNative(anchor, screens).value_or(anchor);
    if (button == Qt::RightButton)
        emit contextMenuRequested(position);
    else
        emit activated(position);
}

} // namespace orvelle
