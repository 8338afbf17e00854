#pragma once

#include "platform/Pasteboard.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <vector>

namespace orvelle {

class Clock;
class Timer;

/// Answers other programs that paste what this one owns: TARGETS, MULTIPLE,
/// TIMESTAMP, SAVE_TARGETS, text in its older forms, and large contents in
/// pieces (ICCCM 2.2, 2.6 and 2.7.2). In the thread that made it, whose event
/// loop the clock's timers need.
class XcbSelectionServer
{
public:
    XcbSelectionServer(XcbConnection &x, Clock &clock, xcb_window_t window, xcb_atom_t selection);
    ~XcbSelectionServer();

    /// Takes the selection with these forms, or lets go of it with none. `time`
    /// is the server's.
    void own(const QList<PasteboardItem> &forms, xcb_timestamp_t time);
    bool owns() const { return !m_forms.isEmpty(); }
    /// Another program has it now. Pieces on their way still arrive.
    void lost() { m_forms.clear(); }
    xcb_timestamp_t ownedSince() const { return m_time; }

    void selectionRequest(const xcb_selection_request_event_t &event);
    /// `window` has taken a piece.
    void propertyDeleted(xcb_window_t window, xcb_atom_t property);
    void windowGone(xcb_window_t window);

private:
    struct Transfer {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t type;
        QByteArray data;
        qsizetype sent = 0;
        bool ended = false;
    };

    bool answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool answerMultiple(xcb_window_t requestor, xcb_atom_t property);
    bool answerContent(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    void sendPieces(Transfer transfer);
    void endAt(std::vector<Transfer>::iterator place);
    void restartPatience();
    std::vector<quint32> targets() const;

    XcbConnection &m_x;
    Clock &m_clock;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    QList<PasteboardItem> m_forms;
    xcb_timestamp_t m_time = XCB_CURRENT_TIME;
    std::vector<Transfer> m_transfers;
    std::unique_ptr<Timer> m_patience; ///< with programs that stop taking pieces
};

} // namespace orvelle
