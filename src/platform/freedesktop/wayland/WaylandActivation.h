#pragma once

#include <QString>

#include <wayland-client.h>

#include <cstdint>

namespace orvelle {

/// Asks the compositor for a token with which the focus is handed on from a
/// surface of ours: to prove that the user wants it, it names the last press of
/// a key or button, which is therefore listened for. Everything goes over the
/// given queue of the toolkit's connection. Main thread.
class WaylandActivation
{
public:
    WaylandActivation() = default;
    ~WaylandActivation() { release(); }
    WaylandActivation(const WaylandActivation &) = delete;
    WaylandActivation &operator=(const WaylandActivation &) = delete;

    /// Of the registry, whose queue is used from then on; what is not needed is
    /// left alone.
    void take(wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version);

    /// Before the queue ends.
    void release();

    /// While a surface of ours has pointer and keyboard.
    void startListening();
    void stopListening();

    /// Handles what has come, and asks on behalf of the surface. Empty where
    /// nothing was pressed, or the compositor gives none at once.
    QString token(wl_surface *surface, wl_display *display, wl_event_queue *queue);

private:
    wl_proxy *m_activation = nullptr;
    wl_seat *m_seat = nullptr;
    std::uint32_t m_capabilities = 0;
    wl_pointer *m_pointer = nullptr;
    wl_keyboard *m_keyboard = nullptr;
    std::uint32_t m_serial = 0; ///< of the last press
};

} // namespace orvelle
