#pragma once

#include "platform/StatusItem.h"

#include <QColor>
#include <QRect>

#include <xcb/xcb.h>

#include <optional>

namespace orvelle {

class XcbConnection;

/// The window that an XEmbed tray takes in, and the picture on it. It is made
/// for one tray and destroyed with it. Main thread.
class TrayIconWindow
{
public:
    /// A window of the visual that the tray asks for (0: the screen's own).
    /// `connection` must outlive it.
    TrayIconWindow(const XcbConnection &connection, xcb_visualid_t visual);
    ~TrayIconWindow();
    TrayIconWindow(const TrayIconWindow &) = delete;
    TrayIconWindow &operator=(const TrayIconWindow &) = delete;

    xcb_window_t id() const { return m_window; }
    void setTitle(const QString &title);
    /// The window is no more: the server destroyed it along with its tray.
    void forget() { m_window = XCB_WINDOW_NONE; }

    /// Where it is, in pixels from the root window's corner; empty when unknown.
    QRect geometry() const;
    /// Draws the icon in the middle. The colour is what the tray prescribes,
    /// else what stands out from the pixels behind, else `fallback`.
    void paint(const StatusItem::Painter &painter, const std::optional<QColor> &prescribed, const QColor &fallback);

private:
    void createWindow(xcb_visualid_t visual);
    void describe();
    QImage pixelsOf(xcb_window_t window, const QRect &area, quint8 depth) const;
    std::optional<QColor> colorBehind(const QRect &onRoot) const;
    void put(const QImage &picture);

    const XcbConnection &m_x;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_colormap_t m_colormap = XCB_NONE;
    xcb_gcontext_t m_gc = XCB_NONE;
    quint8 m_depth = 0;
};

} // namespace orvelle
