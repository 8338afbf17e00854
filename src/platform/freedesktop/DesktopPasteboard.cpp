#include "platform/freedesktop/DesktopPasteboard.h"

#include "platform/freedesktop/XcbPasteboard.h"
#include "platform/freedesktop/wayland/WaylandPasteboard.h"

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

} // namespace

std::unique_ptr<Pasteboard> desktopPasteboard(Clock &clock)
{
    if (auto wayland = WaylandPasteboard::open(clock))
        return wayland;
    const bool hasX = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !hasX)
        return std::make_unique<ForbiddenPasteboard>();
    return std::make_unique<XcbPasteboard>(clock);
}

} // namespace orvelle
