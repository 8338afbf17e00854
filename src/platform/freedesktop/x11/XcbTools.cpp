#include "platform/freedesktop/x11/XcbTools.h"

#include <QtGlobal>

#include <algorithm>
#include <array>

namespace orvelle {

std::unique_ptr<XcbConnection> XcbConnection::open(std::initializer_list<const char *> atomNames)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return nullptr;
    auto opened = std::make_unique<XcbConnection>();
    opened->m_connection.reset(xcb_connect(nullptr, &opened->m_screenNumber));
    if (opened->isBroken())
        return nullptr;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(opened->raw()));
    for (int skip = opened->m_screenNumber; skip > 0 && screen.rem > 0; --skip)
        xcb_screen_next(&screen);
    if (screen.rem == 0)
        return nullptr;
    opened->m_screen = screen.data;

    // All questions first, then all answers: one round trip.
    std::vector<std::pair<QByteArray, xcb_intern_atom_cookie_t>> asked;
    for (const QByteArray name : atomNames)
        asked.emplace_back(name, xcb_intern_atom(opened->raw(), 0, quint16(name.size()), name.constData()));
    for (const auto &[name, cookie] : asked) {
        const XcbPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(opened->raw(), cookie, nullptr));
        opened->m_atoms.insert(name, reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE));
    }
    return opened;
}

xcb_atom_t XcbConnection::atom(const QByteArray &name) const
{
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd())
        return *known;
    const auto cookie = xcb_intern_atom(raw(), 0, quint16(name.size()), name.constData());
    const XcbPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(raw(), cookie, nullptr));
    return *m_atoms.insert(name, reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE));
}

xcb_window_t XcbConnection::selectionOwner(xcb_atom_t selection) const
{
    const auto cookie = xcb_get_selection_owner(raw(), selection);
    const XcbPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(raw(), cookie, nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

std::vector<quint32> XcbConnection::numbers(xcb_window_t window, xcb_atom_t property, quint32 most) const
{
    const auto cookie = xcb_get_property(raw(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most);
    const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(raw(), cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / int(sizeof(quint32))};
}

void XcbConnection::setNumbers(xcb_window_t window, const char *property, xcb_atom_t type,
                               std::initializer_list<quint32> numbers) const
{
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, atom(property), type, 32, quint32(numbers.size()),
                        numbers.begin());
}

void XcbConnection::setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const QByteArray &text) const
{
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, property, type, 8, quint32(text.size()),
                        text.constData());
}

void XcbConnection::sendMessage(xcb_window_t to, xcb_window_t about, xcb_atom_t type, quint32 eventMask,
                                std::initializer_list<quint32> numbers) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    std::copy_n(numbers.begin(), std::min<std::size_t>(numbers.size(), 5), message.data.data32);
    xcb_send_event(raw(), 0, to, eventMask, reinterpret_cast<const char *>(&message));
}

void XcbConnection::answerSelection(const xcb_selection_request_event_t &asked, xcb_atom_t property) const
{
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = asked.time;
    notice.requestor = asked.requestor;
    notice.selection = asked.selection;
    notice.target = asked.target;
    notice.property = property;
    xcb_send_event(raw(), 0, asked.requestor, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&notice));
    xcb_flush(raw());
}

quint8 XcbConnection::depthOf(xcb_visualid_t visual) const
{
    for (auto depth = xcb_screen_allowed_depths_iterator(m_screen); depth.rem > 0; xcb_depth_next(&depth)) {
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem > 0; xcb_visualtype_next(&type)) {
            if (type.data->visual_id == visual)
                return depth.data->depth;
        }
    }
    return 0;
}

} // namespace orvelle
