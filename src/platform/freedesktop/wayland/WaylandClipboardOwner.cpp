#include "platform/freedesktop/wayland/WaylandClipboardOwner.h"

#include "platform/freedesktop/PasteboardText.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/wayland/DataControlProtocol.h"
#include "platform/freedesktop/wayland/PipeTransfer.h"
#include "platform/freedesktop/wayland/WaylandConnection.h"
#include "platform/freedesktop/wayland/WaylandRequest.h"

#include <QDeadlineTimer>
#include <QLoggingCategory>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <list>
#include <utility>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcPasteboard, "Pasteboard", QtInfoMsg)

constexpr std::chrono::seconds longestEnd{1};
/// Of a compositor that is busy: what was copied would be lost, and nobody
/// waits for this thread.
constexpr std::chrono::seconds longestStart{10};

bool isText(QByteArrayView type)
{
    return std::ranges::any_of(textRequests, [type](const char *each) { return type == each; });
}

} // namespace

/// The owner's thread. Everything is called there.
class WaylandClipboardOwner::Service : public QObject
{
public:
    void write(const QList<PasteboardItem> &forms);
    void end();

private:
    /// What was written and is still served. Outlives being replaced until the
    /// compositor says so.
    struct Source {
        Service *owner = nullptr;
        wl_proxy *proxy = nullptr;
        QList<PasteboardItem> forms;
    };

    bool connected();
    void drop();
    wl_proxy *makeSource(const QList<PasteboardItem> &forms);
    void serve(const Source &source, const char *type, int fd);

    // Called by the compositor.
    static void newOffer(void *, wl_proxy *, wl_proxy *) {}
    static void selected(void *self, wl_proxy *device, wl_proxy *offer);
    static void deviceFinished(void *self, wl_proxy *device);
    static void sendAsked(void *source, wl_proxy *proxy, const char *type, int fd);
    static void sourceCancelled(void *source, wl_proxy *proxy);

    SystemClock m_clock;
    std::unique_ptr<WaylandConnection> m_connection;
    const DataControlProtocol *m_protocol = nullptr;
    wl_proxy *m_seat = nullptr;
    wl_proxy *m_manager = nullptr;
    wl_proxy *m_device = nullptr;
    std::list<Source> m_sources;
    std::list<std::unique_ptr<PipeWriter>> m_writers;
};

bool WaylandClipboardOwner::Service::connected()
{
    if (m_device)
        return true;
    drop();
    m_connection = WaylandConnection::open(longestStart);
    m_protocol = m_connection ? offeredDataControl(*m_connection) : nullptr;
    if (!m_protocol)
        return false;
    // Not from inside of what the connection is doing.
    connect(m_connection.get(), &WaylandConnection::lost, this, &Service::drop, Qt::QueuedConnection);
    m_seat = m_connection->bind(wl_seat_interface, 1);
    m_manager = m_connection->bind(*m_protocol->manager, m_protocol->version);
    m_device = wl_proxy_marshal_flags(m_manager, DataControlRequest::GetDevice, m_protocol->device,
                                      wl_proxy_get_version(m_manager), 0, nullptr, m_seat);
    static void (*const functions[])() = {asListener(&newOffer), asListener(&selected), asListener(&deviceFinished),
                                          asListener(&selected)};
    listen(m_device, functions, this);
    return true;
}

void WaylandClipboardOwner::Service::drop()
{
    m_writers.clear();
    for (const Source &source : std::exchange(m_sources, {}))
        wl_proxy_destroy(source.proxy);
    for (wl_proxy **proxy : {&m_device, &m_manager, &m_seat}) {
        if (wl_proxy *owned = std::exchange(*proxy, nullptr))
            wl_proxy_destroy(owned);
    }
    m_connection.reset();
}

void WaylandClipboardOwner::Service::end()
{
    drop();
    thread()->quit();
}

void WaylandClipboardOwner::Service::write(const QList<PasteboardItem> &forms)
{
    if (!connected()) {
        qCWarning(lcPasteboard, "There is no compositor that takes what was to be copied");
        return;
    }
    wl_proxy *source = forms.isEmpty() ? nullptr : makeSource(forms);
    sendRequest(m_device, DataControlRequest::SetSelection, source);
    m_connection->flush();
}

wl_proxy *WaylandClipboardOwner::Service::makeSource(const QList<PasteboardItem> &forms)
{
    static void (*const functions[])() = {asListener(&sendAsked), asListener(&sourceCancelled)};
    wl_proxy *proxy = wl_proxy_marshal_flags(m_manager, DataControlRequest::CreateSource, m_protocol->source,
                                             wl_proxy_get_version(m_manager), 0, nullptr);
    m_sources.push_back({this, proxy, forms});
    listen(proxy, functions, &m_sources.back());
    for (const PasteboardItem &form : forms) {
        if (form.type != Pasteboard::textType()) {
            sendRequest(proxy, DataControlRequest::AddType, form.type.toUtf8().constData());
            continue;
        }
        for (const char *type : textRequests)
            sendRequest(proxy, DataControlRequest::AddType, type);
    }
    return proxy;
}

void WaylandClipboardOwner::Service::serve(const Source &source, const char *type, int fd)
{
    const QString wanted = isText(type) ? Pasteboard::textType() : QString::fromUtf8(type);
    const auto form = std::ranges::find(source.forms, wanted, &PasteboardItem::type);
    if (form == source.forms.end()) {
        close(fd);
        return;
    }
    const QByteArray bytes = isText(type) ? textInForm(form->data, type) : form->data;
    const auto place = m_writers.emplace(m_writers.end());
    *place = std::make_unique<PipeWriter>(fd, bytes, m_clock, [this, place] {
        const auto finished = std::move(*place);
        m_writers.erase(place);
    });
}

/// What is offered is of no use here; its object ends with having been named.
void WaylandClipboardOwner::Service::selected(void *, wl_proxy *, wl_proxy *offer)
{
    if (offer)
        sendDestroy(offer, DataControlRequest::DestroyOffer);
}

/// The next write joins again, on the seat that there is by then.
void WaylandClipboardOwner::Service::deviceFinished(void *self, wl_proxy *)
{
    auto &service = *static_cast<Service *>(self);
    sendDestroy(std::exchange(service.m_device, nullptr), DataControlRequest::DestroyDevice);
}

void WaylandClipboardOwner::Service::sendAsked(void *source, wl_proxy *, const char *type, int fd)
{
    const auto &asked = *static_cast<Source *>(source);
    asked.owner->serve(asked, type, fd);
}

void WaylandClipboardOwner::Service::sourceCancelled(void *source, wl_proxy *proxy)
{
    auto &sources = static_cast<Source *>(source)->owner->m_sources;
    sendDestroy(proxy, DataControlRequest::DestroySource);
    sources.remove_if([source](const Source &each) { return &each == source; });
}

WaylandClipboardOwner::WaylandClipboardOwner()
    : m_thread(std::make_unique<QThread>()), m_service(std::make_unique<Service>())
{
    m_thread->setObjectName(QStringLiteral("clipboard"));
    m_service->moveToThread(m_thread.get());
}

WaylandClipboardOwner::~WaylandClipboardOwner()
{
    if (!m_thread->isRunning())
        return;
    QMetaObject::invokeMethod(
        m_service.get(), [service = m_service.get()] { service->end(); }, Qt::QueuedConnection);
    if (m_thread->wait(QDeadlineTimer(longestEnd)))
        return;
    static_cast<void>(m_service.release());
    static_cast<void>(m_thread.release());
}

void WaylandClipboardOwner::write(const QList<PasteboardItem> &forms)
{
    if (!m_thread->isRunning())
        m_thread->start();
    QMetaObject::invokeMethod(
        m_service.get(), [service = m_service.get(), forms] { service->write(forms); }, Qt::QueuedConnection);
}

} // namespace orvelle
