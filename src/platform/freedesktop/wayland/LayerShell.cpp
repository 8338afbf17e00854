#include "platform/freedesktop/wayland/LayerShell.h"

#include "platform/WindowSystem.h"
#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/wayland/WaylandReading.h"
#include "platform/freedesktop/wayland/WaylandRequest.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QRegion>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <algorithm>
#include <chrono>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcLayerShell, "LayerShell", QtInfoMsg)

/// A compositor that takes longer is not waited for.
constexpr std::chrono::milliseconds patience{1000};

} // namespace

void LayerShell::allowRolelessWindows()
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
}

LayerShell::LayerShell()
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    if (!native || !isOnWayland())
        return;
    m_display = static_cast<wl_display *>(native->nativeResourceForIntegration("wl_display"));
    if (!m_display)
        return;
    m_queue = wl_display_create_queue(m_display);
    auto *display = static_cast<wl_display *>(wl_proxy_create_wrapper(m_display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(display), m_queue);
    wl_registry *registry = wl_display_get_registry(display);
    static constexpr wl_registry_listener listener{
        [](void *self, wl_registry *from, std::uint32_t name, const char *interface, std::uint32_t version) {
            auto &shell = *static_cast<LayerShell *>(self);
            shell.m_activation.take(from, name, interface, version);
            if (qstrcmp(interface, layerShellInterface().name) == 0)
                shell.m_shell = static_cast<wl_proxy *>(
                    wl_registry_bind(from, name, &layerShellInterface(), std::min<std::uint32_t>(version, 4)));
        },
        [](void *, wl_registry *, std::uint32_t) {}};
    wl_registry_add_listener(registry, &listener, this);
    settleWayland(m_display, display, m_queue, patience);
    wl_registry_destroy(registry);
    wl_proxy_wrapper_destroy(display);
}

LayerShell::~LayerShell()
{
    stopListening();
    for (wl_proxy *surface : std::as_const(m_surfaces))
        wl_proxy_destroy(surface);
    if (m_shell)
        wl_proxy_destroy(m_shell);
    m_activation.release();
    if (m_queue)
        wl_event_queue_destroy(m_queue);
}

bool LayerShell::cover(QWindow &window, std::function<void()> taken)
{
    if (!m_shell || m_surfaces.contains(&window))
        return false;
    window.create();
    auto *surface = static_cast<wl_surface *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
    if (!surface)
        return false;
    wl_proxy *layer = wl_proxy_marshal_flags(m_shell, LayerShellRequest::GetLayerSurface, &layerSurfaceInterface(),
                                             wl_proxy_get_version(m_shell), 0, nullptr, surface, nullptr,
                                             LayerShellRequest::Overlay, "orvelle-menu");
    const auto state = std::make_shared<Layer>(Layer{&window, std::move(taken)});
    m_layers.insert(layer, state);
    m_surfaces.insert(&window, layer);
    using Configure = void(void *, wl_proxy *, std::uint32_t, std::uint32_t, std::uint32_t);
    static constexpr Configure *configure = [](void *self, wl_proxy *proxy, std::uint32_t serial, std::uint32_t width,
                                               std::uint32_t height) {
        sendRequest(proxy, LayerShellRequest::AckConfigure, serial);
        Layer &told = *static_cast<LayerShell *>(self)->m_layers.value(proxy);
        told.isConfigured = true;
        told.width = static_cast<int>(width);
        told.height = static_cast<int>(height);
    };
    using Closed = void(void *, wl_proxy *);
    static constexpr Closed *closed = [](void *self, wl_proxy *proxy) {
        const Layer &told = *static_cast<LayerShell *>(self)->m_layers.value(proxy);
        QMetaObject::invokeMethod(told.window, told.taken, Qt::QueuedConnection);
    };
    static void (*functions[])() = {reinterpret_cast<void (*)()>(configure), reinterpret_cast<void (*)()>(closed)};
    wl_proxy_set_queue(layer, m_queue);
    wl_proxy_add_listener(layer, functions, this);
    sendRequest(layer, LayerShellRequest::SetSize, 0U, 0U);
    sendRequest(layer, LayerShellRequest::SetAnchor, LayerShellRequest::allEdges);
    sendRequest(layer, LayerShellRequest::SetExclusiveZone, LayerShellRequest::overPanels);
    sendRequest(layer, LayerShellRequest::SetKeyboardInteractivity, LayerShellRequest::Exclusive);
    wl_surface_commit(surface);
    if (!readWaylandUntil(state->isConfigured, m_display, m_queue, patience)) {
        qCWarning(lcLayerShell, "The compositor did not lay out the menu's surface");
        uncover(window);
        return false;
    }
    window.resize(state->width, state->height);
    startListening();
    return true;
}

/// The toolkit reads the connection, but handles its own events only.
void LayerShell::startListening()
{
    m_activation.startListening();
    if (m_listening)
        return;
    m_listening = std::make_unique<QObject>();
    const auto handle = [this] { wl_display_dispatch_queue_pending(m_display, m_queue); };
    const auto *loop = QAbstractEventDispatcher::instance();
    QObject::connect(loop, &QAbstractEventDispatcher::awake, m_listening.get(), handle);
    QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, m_listening.get(), handle);
}

void LayerShell::stopListening()
{
    m_activation.stopListening();
    m_listening.reset();
}

void LayerShell::letGo(QWindow &window)
{
    if (wl_proxy *layer = m_surfaces.value(&window)) {
        auto *surface = static_cast<wl_surface *>(
            QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
        takeActivationToken(m_activation.token(surface, m_display, m_queue));
        m_activation.stopListening();
        sendRequest(layer, LayerShellRequest::SetKeyboardInteractivity, LayerShellRequest::NoKeyboard);
        window.setMask(QRegion(-1, -1, 1, 1));
    }
}

void LayerShell::uncover(QWindow &window)
{
    wl_proxy *layer = m_surfaces.take(&window);
    if (!layer)
        return;
    if (m_surfaces.isEmpty())
        stopListening();
    m_layers.remove(layer);
    sendDestroy(layer, LayerShellRequest::Destroy);
    wl_display_flush(m_display);
}

} // namespace orvelle
