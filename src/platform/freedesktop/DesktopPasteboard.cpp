#include "platform/freedesktop/DesktopPasteboard.h"

#include "platform/freedesktop/wayland/WaylandPasteboard.h"
#include "platform/freedesktop/x11/XcbPasteboard.h"

#include <QMetaObject>

namespace orvelle {

namespace {

/// A compositor that keeps what is copied between the programs in use.
class ForbiddenPasteboard : public Pasteboard
{
public:
    qint64 changeCount() const override { return 0; }
    bool isReadable() const override { return false; }
    void types(QObject *context, TypesHandler handler) override { refuse(context, std::move(handler)); }
    void data(const QString &, qint64, QObject *context, DataHandler handler) override
    {
        refuse(context, std::move(handler));
    }
    void write(const QList<PasteboardItem> &) override {}

private:
    template<typename Handler>
    static void refuse(QObject *context, Handler handler)
    {
        QMetaObject::invokeMethod(
            context,
            [handler = std::move(handler)] {
                handler(PasteboardError{PasteboardError::Kind::Unavailable, 0});
            },
            Qt::QueuedConnection);
    }
};

/// The X server's beside a compositor, joined at the first use: it may run only
/// as long as X programs do, and joining it would start it.
class LateXcbPasteboard : public Pasteboard
{
public:
    explicit LateXcbPasteboard(Clock &clock) : m_clock(clock) {}

    bool servesWindows() const override { return false; }
    qint64 changeCount() const override { return joined().changeCount(); }
    void types(QObject *context, TypesHandler handler) override { joined().types(context, std::move(handler)); }
    void data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler) override
    {
        joined().data(type, maxBytes, context, std::move(handler));
    }
    void write(const QList<PasteboardItem> &forms) override { joined().write(forms); }

private:
    XcbPasteboard &joined() const
    {
        if (!m_x)
            m_x = std::make_unique<XcbPasteboard>(m_clock);
        return *m_x;
    }

    Clock &m_clock;
    mutable std::unique_ptr<XcbPasteboard> m_x;
};

} // namespace

std::unique_ptr<Pasteboard> desktopPasteboard(Clock &clock)
{
    if (auto wayland = WaylandPasteboard::open(clock))
        return wayland;
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return std::make_unique<XcbPasteboard>(clock);
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return std::make_unique<ForbiddenPasteboard>();
    return std::make_unique<LateXcbPasteboard>(clock);
}

} // namespace orvelle
