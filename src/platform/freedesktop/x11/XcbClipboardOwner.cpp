#include "platform/freedesktop/x11/XcbClipboardOwner.h"

#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/x11/XcbSelectionServer.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QSocketNotifier>

#include <poll.h>

#include <atomic>
#include <optional>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcPasteboard, "Pasteboard", QtInfoMsg)

using namespace std::chrono_literals;

constexpr auto longestHandOver = 1s;
/// For the thread's end after that.
constexpr auto longestEnd = 300ms;
/// So that a program that asks without a pause does not keep a write waiting.
constexpr auto longestTurn = 8ms;

} // namespace

/// The owner's thread. Everything is called there.
class XcbClipboardOwner::Service : public QObject
{
public:
    void write(const QList<PasteboardItem> &forms);
    void end(const QDeadlineTimer &deadline);
    /// What is held up now ends without another attempt. Any thread.
    void giveUp() { m_hasGivenUp = true; }

private:
    bool connected();
    void drop();
    bool askForTime();
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    void handOver(const QDeadlineTimer &deadline);
    template<typename Done>
    void readUntil(const QDeadlineTimer &deadline, Done done);

    SystemClock m_clock;
    std::unique_ptr<XcbConnection> m_x;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<XcbSelectionServer> m_server;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::optional<QList<PasteboardItem>> m_toWrite; ///< waits for the server's time
    bool m_isReadQueued = false;
    bool m_isHandedOver = false;
    std::atomic_bool m_hasGivenUp = false;
};

bool XcbClipboardOwner::Service::connected()
{
    if (m_x && m_x->isBroken())
        drop();
    if (m_x)
        return true;
    if (m_hasGivenUp)
        return false;
    m_x = XcbConnection::open({"CLIPBOARD", "TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "INCR", "NULL",
                               "ATOM_PAIR", "CLIPBOARD_MANAGER", "UTF8_STRING", "STRING", "TEXT", "text/plain",
                               "text/plain;charset=utf-8", "ORVELLE_TIME", "ORVELLE_HAND_OVER"});
    if (!m_x)
        return false;
    m_window = xcb_generate_id(m_x->raw());
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_x->raw(), XCB_COPY_FROM_PARENT, m_window, m_x->root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    m_server = std::make_unique<XcbSelectionServer>(*m_x, m_clock, m_window, m_x->atom("CLIPBOARD"));
    m_readable = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_x->raw()), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &Service::readEvents);
    return true;
}

void XcbClipboardOwner::Service::drop()
{
    m_readable.reset(); // before the connection whose socket it watches
    m_server.reset();
    m_x.reset();
}

void XcbClipboardOwner::Service::write(const QList<PasteboardItem> &forms)
{
    m_toWrite = forms;
    // The first attempt may be what tells that the server was started again.
    if (askForTime() || askForTime()) {
        readEvents();
        return;
    }
    m_toWrite.reset();
    qCWarning(lcPasteboard, "There is no X server that takes what was to be copied");
}

/// The convention wants a time of the server for the ownership; it comes with
/// the notice of this change.
bool XcbClipboardOwner::Service::askForTime()
{
    if (!connected())
        return false;
    xcb_change_property(m_x->raw(), XCB_PROP_MODE_APPEND, m_window, m_x->atom("ORVELLE_TIME"), XCB_ATOM_INTEGER, 32, 0,
                        nullptr);
    xcb_flush(m_x->raw());
    return !m_x->isBroken();
}

/// Also after everything that is sent or asked outside of it: that may take
/// events off the socket, which then stays quiet.
void XcbClipboardOwner::Service::readEvents()
{
    QElapsedTimer passed;
    passed.start();
    while (m_x) {
        const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x->raw())};
        if (!event)
            break;
        handle(*event);
        if (passed.elapsed() < longestTurn.count())
            continue;
        if (!std::exchange(m_isReadQueued, true))
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_isReadQueued = false;
                    readEvents();
                },
                Qt::QueuedConnection);
        return;
    }
    if (m_x && m_x->isBroken())
        drop();
}

void XcbClipboardOwner::Service::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
        m_server->selectionRequest(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        break;
    case XCB_SELECTION_CLEAR:
        m_server->lost();
        break;
    case XCB_DESTROY_NOTIFY:
        m_server->windowGone(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        break;
    case XCB_SELECTION_NOTIFY:
        m_isHandedOver =
            reinterpret_cast<const xcb_selection_notify_event_t &>(event).selection == m_x->atom("CLIPBOARD_MANAGER");
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (change.state == XCB_PROPERTY_DELETE)
            m_server->propertyDeleted(change.window, change.atom);
        else if (change.window == m_window && change.atom == m_x->atom("ORVELLE_TIME") && m_toWrite)
            m_server->own(*std::exchange(m_toWrite, std::nullopt), change.time);
        break;
    }
    default:
        break;
    }
}

void XcbClipboardOwner::Service::end(const QDeadlineTimer &deadline)
{
    if (m_x)
        handOver(deadline);
    drop();
    thread()->quit();
}

void XcbClipboardOwner::Service::handOver(const QDeadlineTimer &deadline)
{
    readUntil(deadline, [this] { return !m_toWrite; });
    if (!m_server->owns() || m_x->selectionOwner(m_x->atom("CLIPBOARD_MANAGER")) == XCB_WINDOW_NONE)
        return;
    m_isHandedOver = false;
    xcb_convert_selection(m_x->raw(), m_window, m_x->atom("CLIPBOARD_MANAGER"), m_x->atom("SAVE_TARGETS"),
                          m_x->atom("ORVELLE_HAND_OVER"), m_server->ownedSince());
    xcb_flush(m_x->raw());
    readUntil(deadline, [this] { return m_isHandedOver; });
}

template<typename Done>
void XcbClipboardOwner::Service::readUntil(const QDeadlineTimer &deadline, Done done)
{
    while (!done() && !deadline.hasExpired() && !m_x->isBroken()) {
        if (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x->raw())}) {
            handle(*event);
            continue;
        }
        pollfd readable{xcb_get_file_descriptor(m_x->raw()), POLLIN, 0};
        ::poll(&readable, 1, int(deadline.remainingTime()));
    }
}

XcbClipboardOwner::XcbClipboardOwner() : m_thread(std::make_unique<QThread>()), m_service(std::make_unique<Service>())
{
    m_thread->setObjectName(QStringLiteral("clipboard"));
    m_service->moveToThread(m_thread.get());
    m_thread->start();
}

XcbClipboardOwner::~XcbClipboardOwner()
{
    const QDeadlineTimer deadline(longestHandOver);
    QMetaObject::invokeMethod(
        m_service.get(), [service = m_service.get(), deadline] { service->end(deadline); }, Qt::QueuedConnection);
    if (m_thread->wait(QDeadlineTimer(longestHandOver + longestEnd)))
        return;
    qCWarning(lcPasteboard, "The X server does not answer; what was copied here ends with this program");
    // A thread that waits for a hung server, perhaps to be connected, cannot be called back.
    m_service->giveUp();
    static_cast<void>(m_service.release());
    static_cast<void>(m_thread.release());
}

void XcbClipboardOwner::write(const QList<PasteboardItem> &forms)
{
    QMetaObject::invokeMethod(
        m_service.get(), [service = m_service.get(), forms] { service->write(forms); }, Qt::QueuedConnection);
}

} // namespace orvelle
