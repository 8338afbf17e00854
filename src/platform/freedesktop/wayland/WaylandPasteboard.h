#pragma once

#include "platform/Pasteboard.h"
#include "platform/freedesktop/wayland/DataControlProtocol.h"
#include "platform/freedesktop/wayland/PipeTransfer.h"
#include "platform/freedesktop/wayland/WaylandClipboardOwner.h"
#include "platform/freedesktop/wayland/WaylandConnection.h"

#include <list>
#include <memory>

namespace orvelle {

class Clock;

/// The clipboard of a compositor that lets programs without the focus at it
/// (data-control, see DataControlProtocol). Main thread.
class WaylandPasteboard : public Pasteboard
{
    Q_OBJECT

public:
    /// Null where there is no compositor, or one that forbids this.
    static std::unique_ptr<WaylandPasteboard> open(Clock &clock);
    ~WaylandPasteboard() override;

    qint64 changeCount() const override { return m_changeCount; }
    bool isReadable() const override { return m_device != nullptr; }
    void types(QObject *context, TypesHandler handler) override;
    void data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler) override;
    void write(const QList<PasteboardItem> &forms) override;

private:
    /// What somebody copied: the proxy, and the types that were told of it.
    struct Offer {
        wl_proxy *proxy = nullptr;
        QStringList types;
    };

    WaylandPasteboard(std::unique_ptr<WaylandConnection> connection, const DataControlProtocol &protocol, Clock &clock);
    void watch();
    void connectionLost();
    void setSelection(wl_proxy *offer);
    void dropOffer(wl_proxy *offer);
    void receive(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler);

    // Called by the compositor.
    static void newOffer(void *self, wl_proxy *device, wl_proxy *offer);
    static void selected(void *self, wl_proxy *device, wl_proxy *offer);
    static void primarySelected(void *self, wl_proxy *device, wl_proxy *offer);
    static void deviceFinished(void *self, wl_proxy *device);
    static void typeOffered(void *self, wl_proxy *offer, const char *type);

    std::unique_ptr<WaylandConnection> m_connection;
    const DataControlProtocol &m_protocol;
    Clock &m_clock;
    wl_proxy *m_seat = nullptr;
    wl_proxy *m_manager = nullptr;
    wl_proxy *m_device = nullptr;
    std::list<Offer> m_offers; ///< announced; the selection is one of them
    wl_proxy *m_selection = nullptr;
    qint64 m_changeCount = 0;
    WaylandClipboardOwner m_owner;
    std::list<std::unique_ptr<PipeReader>> m_readers;
};

} // namespace orvelle
