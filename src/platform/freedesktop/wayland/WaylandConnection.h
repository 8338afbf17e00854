#pragma once

#include <QHash>
#include <QObject>
#include <QSocketNotifier>

#include <wayland-client.h>

#include <chrono>
#include <functional>
#include <memory>

namespace orvelle {

/// A connection of our own to the compositor, served by the event loop. Apart
/// from the toolkit's, so that it works before there is a window and without
/// the toolkit's private interfaces. One thread.
class WaylandConnection : public QObject
{
    Q_OBJECT

public:
    /// Connects and learns what the compositor offers; null when there is no
    /// compositor, or it does not answer within `patience`.
    static std::unique_ptr<WaylandConnection> open(std::chrono::milliseconds patience = std::chrono::seconds(1));
    ~WaylandConnection() override;

    wl_display *display() const { return m_display.get(); }
    bool has(const wl_interface &interface) const { return m_globals.contains(interface.name); }
    /// The global of this interface in at most this version; null when the
    /// compositor does not have it. The caller destroys it.
    wl_proxy *bind(const wl_interface &interface, std::uint32_t version);

    /// Sends what was asked for. Call after requests outside of an event.
    void flush();
    /// Waits until the compositor has done what was asked so far, and handled
    /// its events; false when it did not within `patience`.
    bool settle(std::chrono::milliseconds patience);

signals:
    /// The compositor is gone; nothing works any more.
    void lost();

private:
    struct Disconnect {
        void operator()(wl_display *display) const { wl_display_disconnect(display); }
    };
    struct Global {
        std::uint32_t name;
        std::uint32_t version;
    };

    explicit WaylandConnection(wl_display *display);
    void serve();
    void fail();

    std::unique_ptr<wl_display, Disconnect> m_display;
    wl_registry *m_registry = nullptr;
    QHash<QByteArray, Global> m_globals;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    bool m_lost = false;
};

} // namespace orvelle
