#pragma once

#include "platform/Pasteboard.h"
#include "platform/freedesktop/x11/XcbClipboardOwner.h"
#include "platform/freedesktop/x11/XcbSelectionReader.h"

#include <QSocketNotifier>

namespace orvelle {

class Clock;

/// The CLIPBOARD selection of an X server, over a connection of its own
/// (ICCCM section 2; XFixes for the notice of changes). Not through the
/// toolkit's clipboard, whose reading waits on the main thread for as long as
/// the owner likes, takes any size, and tells a password manager's mark only
/// once the content has been fetched beside it. On Wayland this is what the
/// compositor shows to X programs; a server that is started again is joined.
/// Main thread.
class XcbPasteboard : public Pasteboard
{
    Q_OBJECT

public:
    explicit XcbPasteboard(Clock &clock, QObject *parent = nullptr);
    /// Hands what was written here over to the desktop's clipboard manager, if
    /// there is one; waits for it a second at most.
    ~XcbPasteboard() override;

    qint64 changeCount() const override { return m_changeCount; }
    void types(QObject *context, TypesHandler handler) override;
    void data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler) override;
    void write(const QList<PasteboardItem> &forms) override;

private:
    bool connected();
    bool watchOwner();
    void dropConnection();
    void serverGone();
    void joinLater(std::chrono::seconds pause);
    void readEvents();
    void readQueuedEvents();
    void handleEvents(xcb_generic_event_t *(*next)(xcb_connection_t *));
    void handle(const xcb_generic_event_t &event);
    void ownerChanged(const xcb_generic_event_t &event);
    void propertyChanged(const xcb_property_notify_event_t &event);
    void convert(xcb_atom_t target, qint64 maxBytes, QObject *context, DataHandler handler);
    QStringList typeNames(const QByteArray &atoms);
    xcb_atom_t targetFor(const QString &type);

    Clock &m_clock;
    std::unique_ptr<XcbConnection> m_x;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<XcbSelectionReader> m_reader;
    std::unique_ptr<XcbClipboardOwner> m_owner; ///< from the first write on
    xcb_window_t m_window = XCB_WINDOW_NONE;
    quint8 m_firstFixesEvent = 0;
    qint64 m_changeCount = 0;
    std::pair<xcb_window_t, xcb_timestamp_t> m_lastOwner;
    QHash<xcb_atom_t, QString> m_names;
    QStringList m_offered;            ///< the targets of the last types()
    std::unique_ptr<Timer> m_joining; ///< after the server went
};

} // namespace orvelle
