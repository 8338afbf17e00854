#include "platform/freedesktop/wayland/WaylandReading.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace orvelle {

namespace {

int prepareRead(wl_display *display, wl_event_queue *queue)
{
    return queue ? wl_display_prepare_read_queue(display, queue) : wl_display_prepare_read(display);
}

int dispatchPending(wl_display *display, wl_event_queue *queue)
{
    return queue ? wl_display_dispatch_queue_pending(display, queue) : wl_display_dispatch_pending(display);
}

} // namespace

bool readWayland(wl_display *display, wl_event_queue *queue, std::chrono::milliseconds patience)
{
    if (prepareRead(display, queue) != 0)
        return dispatchPending(display, queue) >= 0; // there were some already
    wl_display_flush(display);
    pollfd readable{wl_display_get_fd(display), POLLIN, 0};
    if (poll(&readable, 1, static_cast<int>(patience.count())) > 0)
        wl_display_read_events(display);
    else
        wl_display_cancel_read(display);
    return dispatchPending(display, queue) >= 0;
}

bool readWaylandUntil(const bool &flag, wl_display *display, wl_event_queue *queue, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    while (!flag && !deadline.hasExpired()) {
        if (!readWayland(display, queue, std::chrono::milliseconds(deadline.remainingTime())))
            break;
    }
    return flag;
}

bool settleWayland(wl_display *display, wl_display *asked, wl_event_queue *queue, std::chrono::milliseconds patience)
{
    bool done = false;
    static constexpr wl_callback_listener listener{
        [](void *flag, wl_callback *, std::uint32_t) { *static_cast<bool *>(flag) = true; }};
    wl_callback *callback = wl_display_sync(asked);
    wl_callback_add_listener(callback, &listener, &done);
    readWaylandUntil(done, display, queue, patience);
    wl_callback_destroy(callback);
    return done;
}

} // namespace orvelle
