#include "platform/freedesktop/tray/EmbeddedTray.h"

#include "platform/freedesktop/tray/TrayIconWindow.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QLoggingCategory>

#include <array>

namespace orvelle {

Q_LOGGING_CATEGORY(lcEmbeddedTray, "EmbeddedTray", QtInfoMsg)

namespace {

constexpr quint32 requestDock = 0; // SYSTEM_TRAY_REQUEST_DOCK

/// xcb has one struct per kind of event, all beginning alike.
template<typename T>
const T &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const T &>(event);
}

Qt::MouseButton buttonOf(quint8 detail)
{
    switch (detail) {
    case 1:
        return Qt::LeftButton;
    case 3:
        return Qt::RightButton;
    default:
        return Qt::NoButton;
    }
}

} // namespace

EmbeddedTray::EmbeddedTray(QObject *parent) : QObject(parent) {}

EmbeddedTray::~EmbeddedTray() = default;

void EmbeddedTray::start()
{
    if (m_x)
        return;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        qCInfo(lcEmbeddedTray, "a Wayland session, so no embedded tray");
        return;
    }
    m_x = XcbConnection::open({"MANAGER", "_XEMBED_INFO", "_NET_WM_PID", "_NET_WM_NAME", "UTF8_STRING",
                               "_NET_SYSTEM_TRAY_OPCODE", "_NET_SYSTEM_TRAY_VISUAL", "_NET_SYSTEM_TRAY_COLORS"});
    if (!m_x) {
        qCInfo(lcEmbeddedTray, "no X server, so no embedded tray");
        return;
    }
    m_selection = m_x->atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(m_x->screenNumber()));
    const quint32 rootEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // the MANAGER message comes with these
    xcb_change_window_attributes(m_x->raw(), m_x->root(), XCB_CW_EVENT_MASK, &rootEvents);
    m_readable = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_x->raw()), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &EmbeddedTray::readEvents);
    findManager();
    readEvents();
}

void EmbeddedTray::stop()
{
    undock();
    m_manager = XCB_WINDOW_NONE;
    m_readable.reset();
    m_x.reset();
}

void EmbeddedTray::setPainter(StatusItem::Painter painter)
{
    m_painter = std::move(painter);
    repaint();
}

void EmbeddedTray::setTitle(const QString &title)
{
    m_title = title;
    if (!m_window)
        return;
    m_window->setTitle(title);
    xcb_flush(m_x->raw());
}

void EmbeddedTray::setFallbackColor(const QColor &color)
{
    m_fallbackColor = color;
    repaint();
}

void EmbeddedTray::readEvents()
{
    while (m_x) {
        const XcbPtr<xcb_generic_event_t> event(xcb_poll_for_event(m_x->raw()));
        if (!event)
            break;
        handle(*event);
    }
    if (m_x && m_x->isBroken())
        connectionLost();
    else if (m_x)
        xcb_flush(m_x->raw());
}

void EmbeddedTray::handle(const xcb_generic_event_t &event)
{
    constexpr quint8 sentBySomeone = 0x80;
    switch (event.response_type & ~sentBySomeone) {
    case XCB_CLIENT_MESSAGE:
        handleClientMessage(as<xcb_client_message_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        handleDestroyed(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_REPARENT_NOTIFY:
        handleReparented(as<xcb_reparent_notify_event_t>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
    case XCB_CONFIGURE_NOTIFY:
        repaint();
        break;
    case XCB_EXPOSE:
        if (as<xcb_expose_event_t>(event).count == 0)
            repaint();
        break;
    case XCB_BUTTON_PRESS:
        m_pressed = as<xcb_button_press_event_t>(event).detail;
        break;
    case XCB_BUTTON_RELEASE:
        handleRelease(as<xcb_button_release_event_t>(event));
        break;
    default:
        break;
    }
}

void EmbeddedTray::handleClientMessage(const xcb_client_message_event_t &message)
{
    if (message.type == m_x->atom("MANAGER") && message.data.data32[1] == m_selection)
        findManager();
}

void EmbeddedTray::handleDestroyed(xcb_window_t window)
{
    if (window == m_manager) {
        m_manager = XCB_WINDOW_NONE;
        undock();
        findManager(); // another one may have taken over already
    } else if (m_window && window == m_window->id()) {
        m_window->forget();
        undock();
    }
}

void EmbeddedTray::handleReparented(const xcb_reparent_notify_event_t &event)
{
    if (!m_window || event.window != m_window->id())
        return;
    if (event.parent == m_x->root())
        undock(); // what a tray does with its icons as it ends
    else
        setDocked(true);
}

void EmbeddedTray::handleRelease(const xcb_button_release_event_t &event)
{
    const Qt::MouseButton button = buttonOf(event.detail);
    const bool pressedHere = m_pressed == event.detail;
    m_pressed = 0;
    if (!m_window || !pressedHere || button == Qt::NoButton)
        return;
    const QRect icon = m_window->geometry();
    if (!QRect({}, icon.size()).contains(event.event_x, event.event_y))
        return;
    // Queued, because a menu may run an event loop of its own.
    QMetaObject::invokeMethod(
        this, [this, button, icon] { emit clicked(button, icon); }, Qt::QueuedConnection);
}

void EmbeddedTray::findManager()
{
    // Grabbed, so that the tray cannot vanish before its end is listened for.
    xcb_grab_server(m_x->raw());
    const xcb_window_t manager = m_x->selectionOwner(m_selection);
    if (manager && manager != m_manager) {
        const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_x->raw(), manager, XCB_CW_EVENT_MASK, &events);
    }
    xcb_ungrab_server(m_x->raw());
    xcb_flush(m_x->raw());
    if (manager && manager != m_manager) {
        undock();
        dock(manager);
    }
}

void EmbeddedTray::dock(xcb_window_t manager)
{
    m_manager = manager;
    const auto visual = m_x->numbers(manager, m_x->atom("_NET_SYSTEM_TRAY_VISUAL"), 1);
    m_window = std::make_unique<TrayIconWindow>(*m_x, visual.empty() ? 0 : visual.front());
    m_window->setTitle(m_title);
    m_x->sendMessage(manager, manager, m_x->atom("_NET_SYSTEM_TRAY_OPCODE"), XCB_EVENT_MASK_NO_EVENT,
                     {XCB_CURRENT_TIME, requestDock, m_window->id()});
    xcb_flush(m_x->raw());
}

void EmbeddedTray::undock()
{
    m_window.reset();
    m_pressed = 0;
    setDocked(false);
}

void EmbeddedTray::setDocked(bool docked)
{
    if (docked == m_docked)
        return;
    m_docked = docked;
    qCInfo(lcEmbeddedTray, docked ? "the tray took the icon in" : "the icon left the tray");
    QMetaObject::invokeMethod(this, &EmbeddedTray::dockedChanged, Qt::QueuedConnection);
}

void EmbeddedTray::connectionLost()
{
    qCWarning(lcEmbeddedTray, "the connection to the X server broke");
    stop();
}

void EmbeddedTray::repaint()
{
    if (!m_window || !m_docked)
        return;
    m_window->paint(m_painter, prescribedColor(), m_fallbackColor);
    xcb_flush(m_x->raw());
    // Waiting for replies may have queued events without the socket saying so again.
    QMetaObject::invokeMethod(this, &EmbeddedTray::readEvents, Qt::QueuedConnection);
}

std::optional<QColor> EmbeddedTray::prescribedColor() const
{
    // Four colours of three 16-bit values: foreground, error, warning, success.
    constexpr std::size_t valueCount = 12;
    const auto values = m_x->numbers(m_manager, m_x->atom("_NET_SYSTEM_TRAY_COLORS"), valueCount);
    if (values.size() < valueCount)
        return std::nullopt;
    return QColor::fromRgba64(quint16(values[0]), quint16(values[1]), quint16(values[2]));
}

} // namespace orvelle
