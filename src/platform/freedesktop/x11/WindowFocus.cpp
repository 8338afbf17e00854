#include "platform/freedesktop/x11/WindowFocus.h"

#include "platform/freedesktop/x11/XcbTools.h"

#include <algorithm>

namespace orvelle {

WindowFocus::WindowFocus() = default;

WindowFocus::~WindowFocus() = default;

bool WindowFocus::connected()
{
    // X windows are only a part of what a Wayland desktop shows: the answer
    // would be wrong more often than right.
    if (!m_tried && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        m_x = XcbConnection::open({"_NET_ACTIVE_WINDOW", "_NET_SUPPORTED"});
    m_tried = true;
    if (m_x && m_x->isBroken())
        m_x.reset();
    if (!m_x)
        return false;
    while (const XcbPtr<xcb_generic_event_t> stale{xcb_poll_for_event(m_x->raw())}) {
        // Errors about windows that went away meanwhile, and keyboard changes.
    }
    return true;
}

WindowToken WindowFocus::focused()
{
    if (!connected())
        return 0;
    if (managerActivates()) {
        const auto active = m_x->numbers(m_x->root(), m_x->atom("_NET_ACTIVE_WINDOW"), 1);
        return active.empty() ? 0 : active.front();
    }
    const auto cookie = xcb_get_input_focus(m_x->raw());
    const XcbPtr<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(m_x->raw(), cookie, nullptr));
    const bool isWindow = reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT && reply->focus != m_x->root();
    return isWindow ? reply->focus : 0;
}

void WindowFocus::give(WindowToken token)
{
    const auto window = xcb_window_t(token);
    if (window == XCB_WINDOW_NONE || window != token || !connected() || focused() == token || !isViewable(window))
        return;
    if (managerActivates()) {
        // As a pager would ask: the user did choose this window.
        constexpr quint32 fromPager = 2;
        m_x->sendMessage(m_x->root(), window, m_x->atom("_NET_ACTIVE_WINDOW"),
                         XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                         {fromPager, XCB_CURRENT_TIME, 0});
    } else {
        xcb_set_input_focus(m_x->raw(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    }
    xcb_flush(m_x->raw());
}

bool WindowFocus::isViewable(quint32 window) const
{
    const auto cookie = xcb_get_window_attributes(m_x->raw(), window);
    const XcbPtr<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(m_x->raw(), cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool WindowFocus::managerActivates() const
{
    constexpr quint32 mostHints = 1024;
    const auto supported = m_x->numbers(m_x->root(), m_x->atom("_NET_SUPPORTED"), mostHints);
    return std::ranges::find(supported, m_x->atom("_NET_ACTIVE_WINDOW")) != supported.end();
}

} // namespace orvelle
