#pragma once

#include <QByteArray>
#include <QHash>

#include <xcb/xcb.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <vector>

namespace orvelle {

struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};
/// Replies and events of xcb are allocated with malloc.
template<typename T>
using XcbPtr = std::unique_ptr<T, FreeDeleter>;

/// A connection of our own to the X server that $DISPLAY names, beside the
/// toolkit's. One thread at a time.
class XcbConnection
{
public:
    /// Null without a DISPLAY, and when no server answers there.
    static std::unique_ptr<XcbConnection> open(std::initializer_list<const char *> atomNames);

    xcb_connection_t *raw() const { return m_connection.get(); }
    xcb_screen_t *screen() const { return m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    int screenNumber() const { return m_screenNumber; }
    bool isBroken() const { return xcb_connection_has_error(raw()) != 0; }

    /// One of the atoms named to open(); for others it asks the server.
    xcb_atom_t atom(const QByteArray &name) const;
    xcb_window_t selectionOwner(xcb_atom_t selection) const;
    /// The property's 32-bit numbers (at most `most`); empty when it is absent
    /// or of another format.
    std::vector<quint32> numbers(xcb_window_t window, xcb_atom_t property, quint32 most = 64) const;
    void setNumbers(xcb_window_t window, const char *property, xcb_atom_t type,
                    std::initializer_list<quint32> numbers) const;
    void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const QByteArray &text) const;
    /// Sends a client message with up to five numbers.
    void sendMessage(xcb_window_t to, xcb_window_t about, xcb_atom_t type, quint32 eventMask,
                     std::initializer_list<quint32> numbers) const;

    /// Tells who asked for a selection that its content is in `property` of the
    /// asking window, or with none that it is refused.
    void answerSelection(const xcb_selection_request_event_t &asked, xcb_atom_t property) const;

    /// How many bits a pixel of that visual has; 0 for an unknown visual.
    quint8 depthOf(xcb_visualid_t visual) const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_screen_t *m_screen = nullptr;
    int m_screenNumber = 0;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace orvelle
