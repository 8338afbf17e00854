#include "platform/freedesktop/wayland/WaylandConnection.h"

#include "platform/freedesktop/wayland/WaylandReading.h"

#include <algorithm>
#include <cerrno>

namespace orvelle {

std::unique_ptr<WaylandConnection> WaylandConnection::open(std::chrono::milliseconds patience)
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return nullptr;
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    std::unique_ptr<WaylandConnection> connection(new WaylandConnection(display));
    return connection->settle(patience) ? std::move(connection) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display *display) : m_display(display)
{
    static constexpr wl_registry_listener listener{
        [](void *self, wl_registry *, std::uint32_t name, const char *interface, std::uint32_t version) {
            // Of several seats or screens the first counts.
            auto &globals = static_cast<WaylandConnection *>(self)->m_globals;
            if (!globals.contains(interface))
                globals.insert(interface, {name, version});
        },
        [](void *self, wl_registry *, std::uint32_t name) {
            static_cast<WaylandConnection *>(self)->m_globals.removeIf(
                [name](const auto &global) { return global->name == name; });
        }};
    m_registry = wl_display_get_registry(display);
    wl_registry_add_listener(m_registry, &listener, this);
    const int fd = wl_display_get_fd(display);
    m_readable = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &WaylandConnection::serve);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &WaylandConnection::flush);
}

WaylandConnection::~WaylandConnection()
{
    m_readable.reset(); // before the socket that it watches
    m_writable.reset();
    wl_registry_destroy(m_registry);
}

wl_proxy *WaylandConnection::bind(const wl_interface &interface, std::uint32_t version)
{
    const auto global = m_globals.constFind(interface.name);
    if (global == m_globals.constEnd() || m_lost)
        return nullptr;
    return static_cast<wl_proxy *>(
        wl_registry_bind(m_registry, global->name, &interface, std::min(version, global->version)));
}

void WaylandConnection::flush()
{
    if (m_lost)
        return;
    const bool full = wl_display_flush(m_display.get()) < 0 && errno == EAGAIN;
    m_writable->setEnabled(full);
    if (!full && wl_display_get_error(m_display.get()) != 0)
        fail();
}

void WaylandConnection::serve()
{
    if (m_lost)
        return;
    readWayland(m_display.get(), nullptr, std::chrono::milliseconds(0));
    flush();
}

bool WaylandConnection::settle(std::chrono::milliseconds patience)
{
    const bool done = !m_lost && settleWayland(m_display.get(), m_display.get(), nullptr, patience);
    flush();
    return done;
}

void WaylandConnection::fail()
{
    m_lost = true;
    m_readable->setEnabled(false);
    m_writable->setEnabled(false);
    emit lost();
}

} // namespace orvelle
