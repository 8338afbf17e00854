#include "platform/freedesktop/x11/XcbPasteboard.h"

#include "platform/Clock.h"
#include "platform/freedesktop/PasteboardText.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QLoggingCategory>

#include <xcb/xfixes.h>

#include <algorithm>
#include <cstring>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcPasteboard, "Pasteboard", QtInfoMsg)

constexpr auto longestTurn = std::chrono::milliseconds(8);
/// Before another look for a server that has gone; each is twice the one before.
constexpr std::chrono::seconds firstPause{1};
constexpr std::chrono::seconds longestPause{300};

} // namespace

XcbPasteboard::XcbPasteboard(Clock &clock, QObject *parent) : Pasteboard(parent), m_clock(clock)
{
    if (!connected())
        qCInfo(lcPasteboard, "There is no X server; the clipboard cannot be read here");
}

XcbPasteboard::~XcbPasteboard()
{
    m_owner.reset();
    dropConnection();
}

bool XcbPasteboard::connected()
{
    if (m_x && m_x->isBroken())
        serverGone();
    if (m_x)
        return true;
    m_x = XcbConnection::open({"CLIPBOARD", "TARGETS", "INCR", "UTF8_STRING", "STRING", "text/plain"});
    if (!m_x)
        return false;
    m_window = xcb_generate_id(m_x->raw());
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_x->raw(), XCB_COPY_FROM_PARENT, m_window, m_x->root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    if (!watchOwner()) {
        dropConnection();
        return false;
    }
    m_reader = std::make_unique<XcbSelectionReader>(*m_x, m_clock, m_window, m_x->atom("CLIPBOARD"));
    m_readable = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_x->raw()), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &XcbPasteboard::readEvents);
    // What is sent or asked may take events off the socket, which then stays quiet.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &XcbPasteboard::readQueuedEvents, Qt::UniqueConnection);
    xcb_flush(m_x->raw());
    return true;
}

bool XcbPasteboard::watchOwner()
{
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(m_x->raw(), &xcb_xfixes_id);
    if (!fixes || !fixes->present)
        return false;
    const auto cookie = xcb_xfixes_query_version(m_x->raw(), 1, 0);
    const XcbPtr<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(m_x->raw(), cookie, nullptr));
    if (!version)
        return false;
    m_firstFixesEvent = fixes->first_event;
    const quint32 mask = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                         XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                         XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
    xcb_xfixes_select_selection_input(m_x->raw(), m_window, m_x->atom("CLIPBOARD"), mask);
    return true;
}

void XcbPasteboard::dropConnection()
{
    m_readable.reset(); // before the connection whose socket it watches
    m_reader.reset();
    m_names.clear();
    m_x.reset();
}

/// On Wayland this program outlives it, and the compositor starts another.
void XcbPasteboard::serverGone()
{
    qCWarning(lcPasteboard, "The X server is gone, and the clipboard with it");
    m_reader->abandon();
    m_lastOwner = {};
    dropConnection();
    joinLater(firstPause);
}

void XcbPasteboard::joinLater(std::chrono::seconds pause)
{
    m_joining = m_clock.singleShot(pause, [this, pause] {
        if (connected())
            qCInfo(lcPasteboard, "There is an X server again");
        else
            joinLater(std::min(2 * pause, longestPause));
    });
}

void XcbPasteboard::readEvents()
{
    handleEvents(&xcb_poll_for_event);
    if (m_x && m_x->isBroken())
        serverGone();
}

void XcbPasteboard::readQueuedEvents()
{
    handleEvents(&xcb_poll_for_queued_event);
}

/// An owner with a quick hand keeps the pieces coming, so others have their
/// turn now and then.
void XcbPasteboard::handleEvents(xcb_generic_event_t *(*next)(xcb_connection_t *))
{
    QElapsedTimer passed;
    passed.start();
    while (m_x) {
        const XcbPtr<xcb_generic_event_t> event{next(m_x->raw())};
        if (!event)
            return;
        handle(*event);
        if (passed.elapsed() > longestTurn.count()) {
            QMetaObject::invokeMethod(this, &XcbPasteboard::readEvents, Qt::QueuedConnection);
            return;
        }
    }
}

void XcbPasteboard::handle(const xcb_generic_event_t &event)
{
    const quint8 type = event.response_type & 0x7f;
    if (type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY)
        ownerChanged(event);
    else if (type == XCB_SELECTION_NOTIFY)
        m_reader->selectionNotify(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
    else if (type == XCB_PROPERTY_NOTIFY)
        propertyChanged(reinterpret_cast<const xcb_property_notify_event_t &>(event));
}

void XcbPasteboard::ownerChanged(const xcb_generic_event_t &event)
{
    const auto &notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    // With the owner's end nothing was copied. The server gives its window's
    // number to the next program, which may copy in the same millisecond.
    if (notice.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
        m_lastOwner = {};
        return;
    }
    // Some programs take the selection twice for one copy.
    const auto owner = std::pair(notice.owner, notice.selection_timestamp);
    if (std::exchange(m_lastOwner, owner) != owner)
        ++m_changeCount;
}

void XcbPasteboard::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.window == m_window && event.state == XCB_PROPERTY_NEW_VALUE)
        m_reader->propertyArrived(event.atom);
}

void XcbPasteboard::convert(xcb_atom_t target, qint64 maxBytes, QObject *context, DataHandler handler)
{
    if (connected() && target != XCB_ATOM_NONE) {
        m_reader->fetch(target, maxBytes, context, std::move(handler));
        return;
    }
    const auto kind = m_x ? PasteboardError::Kind::Refused : PasteboardError::Kind::Unavailable;
    QMetaObject::invokeMethod(
        context,
        [handler = std::move(handler), kind] {
            handler(PasteboardError{kind, 0});
        },
        Qt::QueuedConnection);
}

QStringList XcbPasteboard::typeNames(const QByteArray &atoms)
{
    std::vector<xcb_atom_t> list(std::size_t(std::min<qsizetype>(atoms.size() / 4, maxTypes)));
    if (!list.empty())
        std::memcpy(list.data(), atoms.constData(), list.size() * 4);
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : list) {
        if (atom != XCB_ATOM_NONE && !m_names.contains(atom))
            asked.emplace_back(atom, xcb_get_atom_name(m_x->raw(), atom));
    }
    for (const auto &[atom, cookie] : asked) {
        const XcbPtr<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(m_x->raw(), cookie, nullptr));
        if (reply)
            m_names.insert(atom, QString::fromUtf8(xcb_get_atom_name_name(reply.get()),
                                                   xcb_get_atom_name_name_length(reply.get())));
    }
    QStringList names;
    for (const xcb_atom_t atom : list) {
        if (m_names.contains(atom))
            names += m_names.value(atom);
    }
    return names;
}

void XcbPasteboard::types(QObject *context, TypesHandler handler)
{
    const xcb_atom_t targets = connected() ? m_x->atom("TARGETS") : xcb_atom_t(XCB_ATOM_NONE);
    convert(targets, maxTypes * 64, context,
            [this, handler = std::move(handler)](const Result<QByteArray, PasteboardError> &atoms) {
                if (!atoms || !m_x) {
                    handler(atoms ? PasteboardError{} : atoms.error());
                    return;
                }
                m_offered = typeNames(*atoms);
                QStringList names = m_offered;
                if (bestTextForm(names) && !names.contains(textType()))
                    names += textType();
                handler(names);
            });
}

xcb_atom_t XcbPasteboard::targetFor(const QString &type)
{
    if (!connected())
        return XCB_ATOM_NONE;
    return m_x->atom(type.toUtf8());
}

void XcbPasteboard::data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler)
{
    if (type != textType()) {
        convert(targetFor(type), maxBytes, context, std::move(handler));
        return;
    }
    const QString target = bestTextForm(m_offered).value_or(pasteboardTextForms.front());
    convert(targetFor(target), maxBytes, context,
            [target, handler = std::move(handler)](const Result<QByteArray, PasteboardError> &bytes) {
                handler(bytes ? Result<QByteArray, PasteboardError>(textFromForm(*bytes, target)) : bytes);
            });
}

void XcbPasteboard::write(const QList<PasteboardItem> &forms)
{
    if (!connected())
        return;
    if (!m_owner)
        m_owner = std::make_unique<XcbClipboardOwner>();
    m_owner->write(forms);
}

} // namespace orvelle
