#include "platform/freedesktop/x11/XcbSelectionReader.h"

#include "platform/Clock.h"

#include <algorithm>

namespace orvelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestSilence = 2s;
/// For an owner that trickles.
constexpr auto longestTransfer = 30s;

/// Answers that come after their time-out carry the property of their own
/// request, which is not used again for so many requests.
constexpr int propertyTurns = 16;

constexpr quint32 sliceBytes = 1024 * 1024;

} // namespace

XcbSelectionReader::XcbSelectionReader(XcbConnection &x, Clock &clock, xcb_window_t window, xcb_atom_t selection)
    : m_x(x), m_clock(clock), m_window(window), m_selection(selection)
{
}

XcbSelectionReader::~XcbSelectionReader() = default;

void XcbSelectionReader::fetch(xcb_atom_t target, qint64 maxBytes, QObject *context, Pasteboard::DataHandler handler)
{
    m_queue.push_back({target, maxBytes, context, std::move(handler)});
    if (!m_underWay)
        startNext();
}

void XcbSelectionReader::abandon()
{
    m_silence.reset();
    m_patience.reset();
    m_underWay = false;
    for (const Request &each : std::exchange(m_queue, {})) {
        if (each.context)
            QMetaObject::invokeMethod(
                each.context, [handler = each.handler] { handler(PasteboardError{}); }, Qt::QueuedConnection);
    }
}

void XcbSelectionReader::startNext()
{
    if (m_queue.empty())
        return;
    m_underWay = true;
    m_incremental = false;
    m_received.clear();
    m_turn = (m_turn + 1) % propertyTurns;
    m_property = m_x.atom(QByteArray("ORVELLE_CONTENT_") + QByteArray::number(m_turn));
    xcb_delete_property(m_x.raw(), m_window, m_property);
    xcb_convert_selection(m_x.raw(), m_window, m_selection, m_queue.front().target, m_property, XCB_CURRENT_TIME);
    xcb_flush(m_x.raw());
    waitForOwner();
    m_patience = m_clock.singleShot(longestTransfer, [this] { fail(PasteboardError::Kind::TimedOut); });
}

void XcbSelectionReader::waitForOwner()
{
    m_silence = m_clock.singleShot(longestSilence, [this] { fail(PasteboardError::Kind::TimedOut); });
}

void XcbSelectionReader::finish(const Result<QByteArray, PasteboardError> &result)
{
    m_silence.reset();
    m_patience.reset();
    m_received.clear();
    const Request done = std::move(m_queue.front());
    m_queue.pop_front();
    m_underWay = false;
    startNext();
    if (done.context)
        done.handler(result);
}

void XcbSelectionReader::fail(PasteboardError::Kind kind, qint64 bytes)
{
    finish(PasteboardError{kind, bytes});
}

void XcbSelectionReader::selectionNotify(const xcb_selection_notify_event_t &event)
{
    if (!m_underWay || m_incremental || event.selection != m_selection || event.target != m_queue.front().target)
        return;
    if (event.property == XCB_ATOM_NONE) {
        fail(PasteboardError::Kind::Refused);
        return;
    }
    if (event.property != m_property)
        return;
    switch (takeProperty()) {
    case Piece::Bytes:
        finish(m_received);
        break;
    case Piece::Incremental:
        m_incremental = true;
        waitForOwner();
        break;
    case Piece::Nothing:
        finish(QByteArray(""));
        break;
    case Piece::TooLarge:
        break;
    }
}

void XcbSelectionReader::propertyArrived(xcb_atom_t property)
{
    if (!m_underWay || !m_incremental || property != m_property)
        return;
    switch (takeProperty()) {
    case Piece::Bytes:
        waitForOwner();
        break;
    case Piece::Nothing: // the end of an incremental transfer
        finish(m_received);
        break;
    case Piece::Incremental:
        fail(PasteboardError::Kind::Refused);
        break;
    case Piece::TooLarge:
        break;
    }
}

/// Adds the property's value to what was received, and deletes it, on which
/// the owner sends the next piece. With TooLarge the request has been failed.
XcbSelectionReader::Piece XcbSelectionReader::takeProperty()
{
    const qint64 most = m_queue.front().maxBytes;
    const qsizetype before = m_received.size();
    for (quint32 offset = 0;;) { // in units of four bytes, as the protocol counts
        const auto cookie =
            xcb_get_property(m_x.raw(), 0, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, offset, sliceBytes / 4);
        const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_x.raw(), cookie, nullptr));
        if (!reply)
            return Piece::Nothing;
        const auto *bytes = static_cast<const char *>(xcb_get_property_value(reply.get()));
        const int count = xcb_get_property_value_length(reply.get());
        const bool isIncremental = reply->type == m_x.atom("INCR");
        qint64 size = m_received.size() + count + reply->bytes_after;
        if (isIncremental && count >= 4)
            size = *reinterpret_cast<const quint32 *>(bytes); // a lower bound by its definition
        if (size > most) {
            xcb_delete_property(m_x.raw(), m_window, m_property);
            fail(PasteboardError::Kind::TooLarge, size);
            return Piece::TooLarge;
        }
        if (!isIncremental)
            m_received.append(bytes, count);
        offset += sliceBytes / 4;
        if (reply->bytes_after > 0 && count > 0 && !isIncremental)
            continue;
        xcb_delete_property(m_x.raw(), m_window, m_property);
        xcb_flush(m_x.raw());
        if (isIncremental)
            return Piece::Incremental;
        return m_received.size() > before ? Piece::Bytes : Piece::Nothing;
    }
}

} // namespace orvelle
