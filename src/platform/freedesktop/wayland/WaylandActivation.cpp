#include "platform/freedesktop/wayland/WaylandActivation.h"

#include "platform/freedesktop/wayland/ActivationProtocol.h"
#include "platform/freedesktop/wayland/WaylandReading.h"
#include "platform/freedesktop/wayland/WaylandRequest.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvelle {

namespace {

/// The menu is still on the screen meanwhile.
constexpr std::chrono::milliseconds patience{300};

/// The first whose pointers and keyboards can be given back; up to it no events
/// were added to them that would have to be listened to.
constexpr std::uint32_t seatVersion = 3;

struct Answer {
    bool done = false;
    QString token;
};

} // namespace

void WaylandActivation::release()
{
    stopListening();
    if (wl_pointer *pointer = std::exchange(m_pointer, nullptr))
        wl_pointer_destroy(pointer);
    if (wl_keyboard *keyboard = std::exchange(m_keyboard, nullptr))
        wl_keyboard_destroy(keyboard);
    if (wl_seat *seat = std::exchange(m_seat, nullptr))
        wl_seat_destroy(seat);
    if (wl_proxy *activation = std::exchange(m_activation, nullptr))
        wl_proxy_destroy(activation);
}

void WaylandActivation::take(wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version)
{
    if (!m_activation && qstrcmp(interface, activationInterface().name) == 0)
        m_activation = static_cast<wl_proxy *>(wl_registry_bind(registry, name, &activationInterface(), 1));
    if (m_seat || qstrcmp(interface, wl_seat_interface.name) != 0)
        return;
    m_seat =
        static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, std::min(version, seatVersion)));
    static constexpr wl_seat_listener listener{[](void *self, wl_seat *, std::uint32_t capabilities) {
                                                   static_cast<WaylandActivation *>(self)->m_capabilities =
                                                       capabilities;
                                               },
                                               [](void *, wl_seat *, const char *) {}};
    wl_seat_add_listener(m_seat, &listener, this);
}

void WaylandActivation::startListening()
{
    if (!m_activation || !m_seat || m_pointer || m_keyboard)
        return;
    m_serial = 0;
    if (m_capabilities & WL_SEAT_CAPABILITY_POINTER) {
        m_pointer = wl_seat_get_pointer(m_seat);
        static constexpr wl_pointer_listener listener = [] {
            wl_pointer_listener functions{};
            functions.enter = [](void *, wl_pointer *, std::uint32_t, wl_surface *, wl_fixed_t, wl_fixed_t) {};
            functions.leave = [](void *, wl_pointer *, std::uint32_t, wl_surface *) {};
            functions.motion = [](void *, wl_pointer *, std::uint32_t, wl_fixed_t, wl_fixed_t) {};
            functions.button = [](void *self, wl_pointer *, std::uint32_t serial, std::uint32_t, std::uint32_t,
                                  std::uint32_t) { static_cast<WaylandActivation *>(self)->m_serial = serial; };
            functions.axis = [](void *, wl_pointer *, std::uint32_t, std::uint32_t, wl_fixed_t) {};
            return functions;
        }();
        wl_pointer_add_listener(m_pointer, &listener, this);
    }
    if (m_capabilities & WL_SEAT_CAPABILITY_KEYBOARD) {
        m_keyboard = wl_seat_get_keyboard(m_seat);
        static constexpr wl_keyboard_listener listener = [] {
            wl_keyboard_listener functions{};
            functions.keymap = [](void *, wl_keyboard *, std::uint32_t, std::int32_t fd, std::uint32_t) { close(fd); };
            functions.enter = [](void *, wl_keyboard *, std::uint32_t, wl_surface *, wl_array *) {};
            functions.leave = [](void *, wl_keyboard *, std::uint32_t, wl_surface *) {};
            functions.key = [](void *self, wl_keyboard *, std::uint32_t serial, std::uint32_t, std::uint32_t,
                               std::uint32_t) { static_cast<WaylandActivation *>(self)->m_serial = serial; };
            functions.modifiers = [](void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                                     std::uint32_t) {};
            return functions;
        }();
        wl_keyboard_add_listener(m_keyboard, &listener, this);
    }
}

void WaylandActivation::stopListening()
{
    // An older compositor would go on sending events to what is only forgotten here.
    if (m_seat && wl_seat_get_version(m_seat) < seatVersion)
        return;
    if (wl_pointer *pointer = std::exchange(m_pointer, nullptr))
        wl_pointer_release(pointer);
    if (wl_keyboard *keyboard = std::exchange(m_keyboard, nullptr))
        wl_keyboard_release(keyboard);
}

QString WaylandActivation::token(wl_surface *surface, wl_display *display, wl_event_queue *queue)
{
    wl_display_dispatch_queue_pending(display, queue);
    if (!m_activation || m_serial == 0)
        return {};
    wl_proxy *asked = wl_proxy_marshal_flags(m_activation, ActivationRequest::GetToken, &activationTokenInterface(),
                                             wl_proxy_get_version(m_activation), 0, nullptr);
    using Done = void(void *, wl_proxy *, const char *);
    static constexpr Done *done = [](void *answer, wl_proxy *, const char *token) {
        *static_cast<Answer *>(answer) = {true, QString::fromUtf8(token)};
    };
    static void (*const functions[])() = {asListener(done)};
    Answer answer;
    listen(asked, functions, &answer);
    sendRequest(asked, ActivationRequest::SetSerial, m_serial, m_seat);
    sendRequest(asked, ActivationRequest::SetSurface, surface);
    sendRequest(asked, ActivationRequest::Commit);
    readWaylandUntil(answer.done, display, queue, patience);
    sendDestroy(asked, ActivationRequest::Destroy);
    return answer.token;
}

} // namespace orvelle
