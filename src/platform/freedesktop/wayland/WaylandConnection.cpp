#include "platform/freedesktop/wayland/WaylandConnection.h"

#include <QDeadlineTimer>

#include <poll.h>

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
    if (!m_lost)
        readFor(std::chrono::milliseconds(0));
}

/// Handles what has arrived, waiting up to `patience` for it.
bool WaylandConnection::readFor(std::chrono::milliseconds patience)
{
    wl_display *display = m_display.get();
    while (wl_display_prepare_read(display) != 0)
        wl_display_dispatch_pending(display);
    wl_display_flush(display);
    pollfd readable{wl_display_get_fd(display), POLLIN, 0};
    if (poll(&readable, 1, static_cast<int>(patience.count())) > 0)
        wl_display_read_events(display);
    else
        wl_display_cancel_read(display);
    wl_display_dispatch_pending(display);
    flush();
    return !m_lost;
}

bool WaylandConnection::settle(std::chrono::milliseconds patience)
{
    bool done = false;
    static constexpr wl_callback_listener listener{
        [](void *flag, wl_callback *, std::uint32_t) { *static_cast<bool *>(flag) = true; }};
    wl_callback *callback = wl_display_sync(m_display.get());
    wl_callback_add_listener(callback, &listener, &done);
    const QDeadlineTimer deadline(patience);
    while (!done && !deadline.hasExpired() && readFor(std::chrono::milliseconds(deadline.remainingTime()))) {
    }
    wl_callback_destroy(callback);
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
