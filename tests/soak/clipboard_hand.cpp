#include "platform/freedesktop/x11/XcbTools.h"
#include "soak/hand.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>

namespace orvelle::test {
namespace {

/// A program that copies one text after the other.
class Copier
{
public:
    explicit Copier(const XcbConnection &x) : m_x(x), m_window(xcb_generate_id(x.raw()))
    {
        xcb_create_window(x.raw(), XCB_COPY_FROM_PARENT, m_window, x.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    void copy(const QByteArray &text)
    {
        m_text = text;
        xcb_set_selection_owner(m_x.raw(), m_window, m_x.atom("CLIPBOARD"), XCB_CURRENT_TIME);
        xcb_flush(m_x.raw());
    }
    void answerAll() const
    {
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x.raw())}) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                answer(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
        }
    }

private:
    void answer(const xcb_selection_request_event_t &asked) const
    {
        bool done = true;
        const xcb_atom_t text = m_x.atom("UTF8_STRING");
        if (asked.target == m_x.atom("TARGETS"))
            putTargets(asked, {m_x.atom("TARGETS"), text});
        else if (asked.target == text)
            m_x.setText(asked.requestor, asked.property, text, m_text);
        else
            done = false;
        m_x.answerSelection(asked, done ? asked.property : xcb_atom_t(XCB_ATOM_NONE));
    }

    void putTargets(const xcb_selection_request_event_t &asked, std::initializer_list<quint32> targets) const
    {
        xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, asked.requestor, asked.property, XCB_ATOM_ATOM, 32,
                            quint32(targets.size()), targets.begin());
    }

    const XcbConnection &m_x;
    xcb_window_t m_window;
    QByteArray m_text;
};

/// Carries out the whole lines of what was read and leaves the rest.
void obey(Copier &copier, QByteArray &input)
{
    for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
        const QByteArray line = input.left(end);
        input.remove(0, end + 1);
        if (!line.startsWith("text "))
            continue;
        copier.copy(line.mid(5));
        std::puts("taken");
    }
}

} // namespace

int runClipboardHand()
{
    const auto x = XcbConnection::open({"CLIPBOARD", "TARGETS", "UTF8_STRING"});
    if (!x)
        return 2;
    Copier copier(*x);
    QByteArray input;
    pollfd waited[] = {{STDIN_FILENO, POLLIN, 0}, {xcb_get_file_descriptor(x->raw()), POLLIN, 0}};
    while (::poll(waited, 2, -1) >= 0 && !x->isBroken()) {
        copier.answerAll();
        if (waited[0].revents == 0)
            continue;
        char block[4096];
        const ssize_t count = ::read(STDIN_FILENO, block, sizeof block);
        if (count <= 0)
            return 0;
        input.append(block, count);
        obey(copier, input);
        copier.answerAll();
    }
    return 1;
}

} // namespace orvelle::test
