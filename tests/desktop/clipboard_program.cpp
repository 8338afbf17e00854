// Another program with the clipboard, told what to do by its arguments:
//
//   clipboard_program own TARGET CONTENT [TARGET CONTENT]...
//       offers these until another program takes the selection, and prints
//       each target that it is asked for
//   clipboard_program manager
//       a clipboard manager (Clipboard Manager Specification 0.1): keeps what
//       is handed over to it and offers it from then on, until it is ended
#include "platform/freedesktop/x11/XcbTools.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

using namespace orvelle;

namespace {

using Contents = std::map<xcb_atom_t, QByteArray>;

constexpr quint32 mostUnits = 1 << 24;

class Program
{
public:
    explicit Program(const XcbConnection &x) : m_x(x), m_window(xcb_generate_id(x.raw()))
    {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(x.raw(), XCB_COPY_FROM_PARENT, m_window, x.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    }

    void own(const char *selection)
    {
        xcb_set_selection_owner(m_x.raw(), m_window, m_x.atom(selection), XCB_CURRENT_TIME);
        xcb_flush(m_x.raw());
    }
    void offer(const Contents &contents)
    {
        m_contents = contents;
        own("CLIPBOARD");
    }
    /// Until the clipboard is another program's.
    void serve(bool isManager)
    {
        while (const XcbPtr<xcb_generic_event_t> event{xcb_wait_for_event(m_x.raw())}) {
            const int type = event->response_type & 0x7f;
            if (type == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
            else if (type == XCB_SELECTION_CLEAR && !isManager)
                return;
        }
    }

private:
    void answer(const xcb_selection_request_event_t &asked)
    {
        const XcbPtr<xcb_get_atom_name_reply_t> name(
            xcb_get_atom_name_reply(m_x.raw(), xcb_get_atom_name(m_x.raw(), asked.target), nullptr));
        std::printf("asked %.*s\n", name ? xcb_get_atom_name_name_length(name.get()) : 0,
                    name ? xcb_get_atom_name_name(name.get()) : "");
        bool done = true;
        if (asked.selection == m_x.atom("CLIPBOARD_MANAGER"))
            keep();
        else if (asked.target == m_x.atom("TARGETS"))
            putTargets(asked);
        else
            done = putContent(asked);
        m_x.answerSelection(asked, done ? asked.property : xcb_atom_t(XCB_ATOM_NONE));
        std::fflush(stdout);
    }

    void putTargets(const xcb_selection_request_event_t &asked) const
    {
        std::vector<quint32> targets{m_x.atom("TARGETS")};
        for (const auto &[target, content] : m_contents)
            targets.push_back(target);
        xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, asked.requestor, asked.property, XCB_ATOM_ATOM, 32,
                            quint32(targets.size()), targets.data());
    }

    bool putContent(const xcb_selection_request_event_t &asked) const
    {
        const auto content = m_contents.find(asked.target);
        if (content == m_contents.end())
            return false;
        xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, asked.requestor, asked.property, asked.target, 8,
                            quint32(content->second.size()), content->second.constData());
        return true;
    }

    /// What the owner has, in every form that has a content.
    void keep()
    {
        Contents kept;
        const QByteArray targets = fetch(m_x.atom("TARGETS"));
        for (qsizetype i = 0; i + 4 <= targets.size(); i += 4) {
            xcb_atom_t target = 0;
            std::memcpy(&target, targets.constData() + i, 4);
            const bool isContent = target != m_x.atom("TARGETS") && target != m_x.atom("MULTIPLE") &&
                                   target != m_x.atom("TIMESTAMP") && target != m_x.atom("SAVE_TARGETS");
            if (isContent)
                kept[target] = fetch(target);
        }
        offer(kept);
        std::printf("saved %zu\n", kept.size());
    }

    QByteArray fetch(xcb_atom_t target)
    {
        xcb_convert_selection(m_x.raw(), m_window, m_x.atom("CLIPBOARD"), target, m_x.atom("KEPT"), XCB_CURRENT_TIME);
        xcb_flush(m_x.raw());
        const auto notice = waitFor(XCB_SELECTION_NOTIFY);
        if (!notice || reinterpret_cast<xcb_selection_notify_event_t *>(notice.get())->property == XCB_ATOM_NONE)
            return {};
        auto [type, bytes] = take();
        if (type != m_x.atom("INCR"))
            return bytes;
        QByteArray whole;
        do {
            while (const auto change = waitFor(XCB_PROPERTY_NOTIFY)) {
                const auto &told = *reinterpret_cast<xcb_property_notify_event_t *>(change.get());
                if (told.atom == m_x.atom("KEPT") && told.state == XCB_PROPERTY_NEW_VALUE)
                    break;
            }
            bytes = take().second;
            whole += bytes;
        } while (!bytes.isEmpty());
        return whole;
    }

    std::pair<xcb_atom_t, QByteArray> take() const
    {
        const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            m_x.raw(),
            xcb_get_property(m_x.raw(), 1, m_window, m_x.atom("KEPT"), XCB_GET_PROPERTY_TYPE_ANY, 0, mostUnits),
            nullptr));
        if (!reply)
            return {};
        return {reply->type, QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                        xcb_get_property_value_length(reply.get()))};
    }

    XcbPtr<xcb_generic_event_t> waitFor(int type) const
    {
        while (XcbPtr<xcb_generic_event_t> event{xcb_wait_for_event(m_x.raw())}) {
            if ((event->response_type & 0x7f) == type)
                return event;
        }
        return nullptr;
    }

    const XcbConnection &m_x;
    xcb_window_t m_window;
    Contents m_contents;
};

} // namespace

int main(int argc, char **argv)
{
    const auto x = XcbConnection::open({});
    const std::string what = argc > 1 ? argv[1] : "";
    if (!x || (what != "manager" && (what != "own" || argc < 4)))
        return 2;
    Program program(*x);
    Contents contents;
    for (int i = 2; i + 1 < argc; i += 2)
        contents[x->atom(argv[i])] = argv[i + 1];
    const bool isManager = what == "manager";
    if (isManager)
        program.own("CLIPBOARD_MANAGER");
    else
        program.offer(contents);
    std::puts("ready");
    std::fflush(stdout);
    program.serve(isManager);
}
