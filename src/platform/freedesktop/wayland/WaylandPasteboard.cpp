#include "platform/freedesktop/wayland/WaylandPasteboard.h"

#include "platform/Clock.h"
#include "platform/freedesktop/PasteboardText.h"
#include "platform/freedesktop/wayland/WaylandRequest.h"

#include <QLoggingCategory>
#include <QPointer>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcPasteboard, "Pasteboard", QtInfoMsg)

template<typename Handler, typename Value>
void answerLater(QObject *context, Handler handler, Value value)
{
    QMetaObject::invokeMethod(
        context, [handler = std::move(handler), value = std::move(value)] { handler(value); }, Qt::QueuedConnection);
}

} // namespace

std::unique_ptr<WaylandPasteboard> WaylandPasteboard::open(Clock &clock)
{
    auto connection = WaylandConnection::open();
    const DataControlProtocol *protocol = connection ? offeredDataControl(*connection) : nullptr;
    if (!protocol)
        return nullptr;
    return std::unique_ptr<WaylandPasteboard>(new WaylandPasteboard(std::move(connection), *protocol, clock));
}

WaylandPasteboard::WaylandPasteboard(std::unique_ptr<WaylandConnection> connection, const DataControlProtocol &protocol,
                                     Clock &clock)
    : m_connection(std::move(connection)), m_protocol(protocol), m_clock(clock)
{
    connect(m_connection.get(), &WaylandConnection::lost, this, &WaylandPasteboard::connectionLost);
    m_seat = m_connection->bind(wl_seat_interface, 1);
    m_manager = m_connection->bind(*m_protocol.manager, m_protocol.version);
    watch();
}

WaylandPasteboard::~WaylandPasteboard()
{
    m_readers.clear();
    for (const Offer &offer : m_offers)
        wl_proxy_destroy(offer.proxy);
    for (wl_proxy *proxy : {m_device, m_manager, m_seat}) {
        if (proxy)
            wl_proxy_destroy(proxy);
    }
}

void WaylandPasteboard::watch()
{
    static void (*const functions[])() = {asListener(&newOffer), asListener(&selected), asListener(&deviceFinished),
                                          asListener(&primarySelected)};
    m_device = wl_proxy_marshal_flags(m_manager, DataControlRequest::GetDevice, m_protocol.device,
                                      wl_proxy_get_version(m_manager), 0, nullptr, m_seat);
    listen(m_device, functions, this);
    m_connection->flush();
}

void WaylandPasteboard::connectionLost()
{
    qCWarning(lcPasteboard, "The compositor is gone, and the clipboard with it");
    m_selection = nullptr;
}

void WaylandPasteboard::newOffer(void *self, wl_proxy *, wl_proxy *offer)
{
    static void (*const functions[])() = {asListener(&typeOffered)};
    static_cast<WaylandPasteboard *>(self)->m_offers.push_back({offer, {}});
    listen(offer, functions, self);
}

void WaylandPasteboard::typeOffered(void *self, wl_proxy *proxy, const char *type)
{
    auto &offers = static_cast<WaylandPasteboard *>(self)->m_offers;
    const auto offer = std::ranges::find(offers, proxy, &Offer::proxy);
    if (offer != offers.end() && offer->types.size() < maxTypes)
        offer->types += QString::fromUtf8(type);
}

void WaylandPasteboard::selected(void *self, wl_proxy *, wl_proxy *offer)
{
    static_cast<WaylandPasteboard *>(self)->setSelection(offer);
}

void WaylandPasteboard::primarySelected(void *self, wl_proxy *, wl_proxy *offer)
{
    auto &pasteboard = *static_cast<WaylandPasteboard *>(self);
    if (offer && offer != pasteboard.m_selection)
        pasteboard.dropOffer(offer);
}

/// The compositor takes the device back, as when the seat goes.
void WaylandPasteboard::deviceFinished(void *self, wl_proxy *)
{
    auto &pasteboard = *static_cast<WaylandPasteboard *>(self);
    pasteboard.setSelection(nullptr);
    sendDestroy(std::exchange(pasteboard.m_device, nullptr), DataControlRequest::DestroyDevice);
    qCWarning(lcPasteboard, "The compositor no longer lets the clipboard be read");
}

void WaylandPasteboard::setSelection(wl_proxy *offer)
{
    if (m_selection && m_selection != offer)
        dropOffer(m_selection);
    m_selection = offer;
    // An owner's end is no copying.
    if (offer)
        ++m_changeCount;
}

void WaylandPasteboard::dropOffer(wl_proxy *offer)
{
    m_offers.remove_if([offer](const Offer &each) { return each.proxy == offer; });
    sendDestroy(offer, DataControlRequest::DestroyOffer);
}

void WaylandPasteboard::types(QObject *context, TypesHandler handler)
{
    using Answer = Result<QStringList, PasteboardError>;
    const auto offer = std::ranges::find(m_offers, m_selection, &Offer::proxy);
    if (!m_selection || offer == m_offers.end()) {
        const auto kind = m_device ? PasteboardError::Kind::Refused : PasteboardError::Kind::Unavailable;
        answerLater(context, std::move(handler), Answer(PasteboardError{kind, 0}));
        return;
    }
    QStringList names = offer->types;
    if (bestTextForm(names) && !names.contains(textType()))
        names += textType();
    answerLater(context, std::move(handler), Answer(names));
}

void WaylandPasteboard::data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler)
{
    if (type != textType()) {
        receive(type, maxBytes, context, std::move(handler));
        return;
    }
    const auto offer = std::ranges::find(m_offers, m_selection, &Offer::proxy);
    const QString form = (offer == m_offers.end() ? std::nullopt : bestTextForm(offer->types)).value_or(type);
    receive(form, maxBytes, context,
            [form, handler = std::move(handler)](const Result<QByteArray, PasteboardError> &bytes) {
                handler(bytes ? Result<QByteArray, PasteboardError>(textFromForm(*bytes, form)) : bytes);
            });
}

void WaylandPasteboard::receive(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler)
{
    const auto offer = std::ranges::find(m_offers, m_selection, &Offer::proxy);
    const bool isOffered = m_selection && offer != m_offers.end() && offer->types.contains(type);
    int ends[2];
    if (!isOffered || pipe2(ends, O_CLOEXEC) != 0) {
        const auto kind = m_device ? PasteboardError::Kind::Refused : PasteboardError::Kind::Unavailable;
        answerLater(context, std::move(handler), Result<QByteArray, PasteboardError>(PasteboardError{kind, 0}));
        return;
    }
    sendRequest(m_selection, DataControlRequest::Receive, type.toUtf8().constData(), ends[1]);
    m_connection->flush();
    close(ends[1]);
    const auto place = m_readers.emplace(m_readers.end());
    *place = std::make_unique<PipeReader>(
        ends[0], maxBytes, m_clock,
        [this, place, context = QPointer(context), handler = std::move(handler)](const auto &result) {
            const auto finished = std::move(*place);
            m_readers.erase(place);
            if (context)
                handler(result);
        });
}

void WaylandPasteboard::write(const QList<PasteboardItem> &forms)
{
    m_owner.write(forms);
}

} // namespace orvelle
