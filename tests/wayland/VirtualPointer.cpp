#include "wayland/VirtualPointer.h"

#include "platform/freedesktop/wayland/WaylandRequest.h"

#include <linux/input-event-codes.h>

namespace orvelle::test {

namespace {

extern const wl_interface pointerInterface;

const wl_interface *none[4] = {};
const wl_interface *creation[2] = {&wl_seat_interface, &pointerInterface};

const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", creation}, {"destroy", "", none}};
const wl_interface managerInterface{"zwlr_virtual_pointer_manager_v1", 1, 2, managerRequests, 0, nullptr};

const wl_message pointerRequests[] = {{"motion", "uff", none},   {"motion_absolute", "uuuuu", none},
                                      {"button", "uuu", none},   {"axis", "uuf", none},
                                      {"frame", "", none},       {"axis_source", "u", none},
                                      {"axis_stop", "uu", none}, {"axis_discrete", "uufi", none},
                                      {"destroy", "", none}};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, 9, pointerRequests, 0, nullptr};

enum Request : std::uint32_t { MotionAbsolute = 1, Button = 2, Frame = 4 };

} // namespace

VirtualPointer::VirtualPointer(const QSize &screen) : m_screen(screen), m_connection(WaylandConnection::open())
{
    wl_proxy *manager = m_connection ? m_connection->bind(managerInterface, 1) : nullptr;
    if (!manager)
        return;
    m_pointer = wl_proxy_marshal_flags(manager, 0, &pointerInterface, 1, 0, nullptr, nullptr);
    wl_proxy_destroy(manager);
    moveTo({1, 1});
}

VirtualPointer::~VirtualPointer()
{
    if (m_pointer)
        wl_proxy_destroy(m_pointer);
}

void VirtualPointer::moveTo(const QPoint &place)
{
    sendRequest(m_pointer, MotionAbsolute, ++m_time, static_cast<std::uint32_t>(place.x()),
                static_cast<std::uint32_t>(place.y()), static_cast<std::uint32_t>(m_screen.width()),
                static_cast<std::uint32_t>(m_screen.height()));
    send();
}

void VirtualPointer::button(bool down)
{
    sendRequest(m_pointer, Button, ++m_time, static_cast<std::uint32_t>(BTN_LEFT), static_cast<std::uint32_t>(down));
    send();
}

void VirtualPointer::send()
{
    sendRequest(m_pointer, Frame);
    m_connection->settle(std::chrono::seconds(5));
}

} // namespace orvelle::test
