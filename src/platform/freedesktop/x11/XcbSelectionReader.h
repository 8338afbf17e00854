#pragma once

#include "platform/Pasteboard.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QPointer>

#include <deque>

namespace orvelle {

class Clock;
class Timer;

/// Fetches a selection's content from its owner, one request after the other,
/// in pieces where the owner sends pieces (ICCCM 2.4 and 2.7.2). Main thread.
class XcbSelectionReader
{
public:
    /// `window` is the requestor; it must select property changes.
    XcbSelectionReader(XcbConnection &x, Clock &clock, xcb_window_t window, xcb_atom_t selection);
    ~XcbSelectionReader();

    void fetch(xcb_atom_t target, qint64 maxBytes, QObject *context, Pasteboard::DataHandler handler);

    /// Answers all requests with Unavailable, from the event loop.
    void abandon();

    void selectionNotify(const xcb_selection_notify_event_t &event);
    /// A property of the window has a new value.
    void propertyArrived(xcb_atom_t property);

private:
    struct Request {
        xcb_atom_t target;
        qint64 maxBytes;
        QPointer<QObject> context;
        Pasteboard::DataHandler handler;
    };

    void startNext();
    void waitForOwner();
    void finish(const Result<QByteArray, PasteboardError> &result);
    void fail(PasteboardError::Kind kind, qint64 bytes = 0);
    enum class Piece { Bytes, Incremental, Nothing, TooLarge };
    Piece takeProperty();

    XcbConnection &m_x;
    Clock &m_clock;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    std::deque<Request> m_queue; ///< the first one is under way
    bool m_underWay = false;
    bool m_incremental = false;
    QByteArray m_received;
    int m_turn = 0;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    std::unique_ptr<Timer> m_silence;  ///< the owner says nothing
    std::unique_ptr<Timer> m_patience; ///< the owner takes too long altogether
};

} // namespace orvelle
