#include "platform/freedesktop/x11/XcbSelectionServer.h"

#include "platform/Clock.h"
#include "platform/freedesktop/PasteboardText.h"

#include <algorithm>
#include <array>

namespace orvelle {

using namespace std::chrono_literals;

namespace {

/// Below every server's limit for one request.
constexpr qsizetype pieceBytes = 200 * 1024;
constexpr auto patience = 10s;
/// More transfers at once than that are no pasting.
constexpr std::size_t mostTransfers = 64;

} // namespace

XcbSelectionServer::XcbSelectionServer(XcbConnection &x, Clock &clock, xcb_window_t window, xcb_atom_t selection)
    : m_x(x), m_clock(clock), m_window(window), m_selection(selection)
{
}

XcbSelectionServer::~XcbSelectionServer() = default;

void XcbSelectionServer::own(const QList<PasteboardItem> &forms, xcb_timestamp_t time)
{
    m_forms = forms;
    m_time = time;
    xcb_set_selection_owner(m_x.raw(), forms.isEmpty() ? xcb_window_t(XCB_WINDOW_NONE) : m_window, m_selection, time);
    xcb_flush(m_x.raw());
}

std::vector<quint32> XcbSelectionServer::targets() const
{
    std::vector<quint32> list;
    for (const char *own : {"TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS"})
        list.push_back(m_x.atom(own));
    for (const PasteboardItem &form : m_forms) {
        if (form.type != Pasteboard::textType()) {
            list.push_back(m_x.atom(form.type.toUtf8()));
            continue;
        }
        for (const char *target : textRequests)
            list.push_back(m_x.atom(target));
    }
    return list;
}

void XcbSelectionServer::selectionRequest(const xcb_selection_request_event_t &event)
{
    // Programs older than the convention name no property and mean the target.
    const xcb_atom_t property = event.property == XCB_ATOM_NONE ? event.target : event.property;
    const bool isOurs = event.selection == m_selection && owns();
    const bool done = isOurs && (event.target == m_x.atom("MULTIPLE")
                                     ? event.property != XCB_ATOM_NONE && answerMultiple(event.requestor, property)
                                     : answer(event.requestor, event.target, property));
    m_x.answerSelection(event, done ? property : xcb_atom_t(XCB_ATOM_NONE));
}

bool XcbSelectionServer::answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    const auto put = [&](xcb_atom_t type, const std::vector<quint32> &numbers) {
        xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32, quint32(numbers.size()),
                            numbers.data());
        return true;
    };
    if (target == m_x.atom("TARGETS"))
        return put(XCB_ATOM_ATOM, targets());
    if (target == m_x.atom("TIMESTAMP"))
        return put(XCB_ATOM_INTEGER, {m_time});
    if (target == m_x.atom("SAVE_TARGETS"))
        return put(m_x.atom("NULL"), {});
    return answerContent(requestor, target, property);
}

bool XcbSelectionServer::answerMultiple(xcb_window_t requestor, xcb_atom_t property)
{
    std::vector<quint32> pairs = m_x.numbers(requestor, property, 2 * Pasteboard::maxTypes);
    if (pairs.size() < 2)
        return false;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const bool again = pairs[i] == m_x.atom("MULTIPLE");
        if (again || pairs[i + 1] == XCB_ATOM_NONE || !answer(requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, requestor, property, m_x.atom("ATOM_PAIR"), 32,
                        quint32(pairs.size()), pairs.data());
    return true;
}

bool XcbSelectionServer::answerContent(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    const auto isText = std::ranges::find_if(textRequests, [&](const char *name) { return m_x.atom(name) == target; });
    const auto form = std::ranges::find_if(m_forms, [&](const PasteboardItem &each) {
        return isText != textRequests.end() ? each.type == Pasteboard::textType()
                                            : m_x.atom(each.type.toUtf8()) == target;
    });
    if (form == m_forms.end())
        return false;
    Transfer transfer{requestor, property, target, form->data};
    if (isText != textRequests.end())
        transfer.data = textInForm(form->data, *isText);
    if (target == m_x.atom("TEXT")) // the owner chooses the encoding
        transfer.type = m_x.atom("UTF8_STRING");
    if (transfer.data.size() > pieceBytes) {
        if (m_transfers.size() >= mostTransfers)
            return false;
        sendPieces(std::move(transfer));
        return true;
    }
    xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, requestor, property, transfer.type, 8,
                        quint32(transfer.data.size()), transfer.data.constData());
    return true;
}

void XcbSelectionServer::sendPieces(Transfer transfer)
{
    // Whoever asks may name our own window, which keeps its mask.
    if (transfer.requestor != m_window) {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_x.raw(), transfer.requestor, XCB_CW_EVENT_MASK, &mask);
    }
    const quint32 size = quint32(transfer.data.size());
    xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property, m_x.atom("INCR"), 32,
                        1, &size);
    m_transfers.push_back(std::move(transfer));
    restartPatience();
}

void XcbSelectionServer::propertyDeleted(xcb_window_t window, xcb_atom_t property)
{
    const auto transfer = std::ranges::find_if(
        m_transfers, [&](const Transfer &each) { return each.requestor == window && each.property == property; });
    if (transfer == m_transfers.end())
        return;
    if (transfer->ended) {
        endAt(transfer);
        return;
    }
    const qsizetype count = std::min(pieceBytes, transfer->data.size() - transfer->sent);
    xcb_change_property(m_x.raw(), XCB_PROP_MODE_REPLACE, window, property, transfer->type, 8, quint32(count),
                        transfer->data.constData() + transfer->sent);
    xcb_flush(m_x.raw());
    transfer->sent += count;
    transfer->ended = count == 0; // an empty piece is the end
    restartPatience();
}

void XcbSelectionServer::endAt(std::vector<Transfer>::iterator place)
{
    const xcb_window_t window = place->requestor;
    m_transfers.erase(place);
    const bool more = std::ranges::any_of(m_transfers, [&](const Transfer &each) { return each.requestor == window; });
    if (!more && window != m_window) {
        const quint32 mask = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(m_x.raw(), window, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(m_x.raw());
    }
    if (m_transfers.empty())
        m_patience.reset();
}

void XcbSelectionServer::windowGone(xcb_window_t window)
{
    std::erase_if(m_transfers, [&](const Transfer &each) { return each.requestor == window; });
    if (m_transfers.empty())
        m_patience.reset();
}

void XcbSelectionServer::restartPatience()
{
    m_patience = m_clock.singleShot(patience, [this] { m_transfers.clear(); });
}

} // namespace orvelle
