#pragma once

#include <wayland-client.h>

#include <chrono>

namespace orvelle {

/// Handles the events of `queue` (null: the connection's own) that have come,
/// waiting up to `patience` for some. False when the connection is broken.
bool readWayland(wl_display *display, wl_event_queue *queue, std::chrono::milliseconds patience);

/// Goes on until one of those events has set `flag`; gives its value.
bool readWaylandUntil(const bool &flag, wl_display *display, wl_event_queue *queue, std::chrono::milliseconds patience);

/// Waits until the compositor has done what was asked so far, and its events
/// are handled. `asked` is the display, or a wrapper of it whose events go to
/// `queue`.
bool settleWayland(wl_display *display, wl_display *asked, wl_event_queue *queue, std::chrono::milliseconds patience);

} // namespace orvelle
