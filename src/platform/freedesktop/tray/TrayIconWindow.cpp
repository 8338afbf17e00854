#include "platform/freedesktop/tray/TrayIconWindow.h"

#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPainter>
#include <QSysInfo>

#include <algorithm>
#include <array>
#include <vector>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcTrayIconWindow, "TrayIconWindow", QtInfoMsg)

namespace {

constexpr quint16 initialSide = 24;
constexpr int largestSide = 1024;
constexpr quint8 argbDepth = 32;
constexpr quint32 windowEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                 XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE;

/// The pixels of the server in the toolkit's terms, by depth.
QImage::Format formatOfDepth(quint8 depth)
{
    switch (depth) {
    case 16:
        return QImage::Format_RGB16;
    case 24:
        return QImage::Format_RGB32;
    case 30:
        return QImage::Format_RGB30;
    case argbDepth:
        return QImage::Format_ARGB32_Premultiplied;
    default:
        return QImage::Format_Invalid;
    }
}

bool serverHasOurByteOrder(const XcbConnection &x)
{
    const bool serverLittle = xcb_get_setup(x.raw())->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    return serverLittle == (QSysInfo::ByteOrder == QSysInfo::LittleEndian);
}

QColor mean(const std::array<QColor, 4> &colors)
{
    int red = 0, green = 0, blue = 0;
    for (const QColor &color : colors) {
        red += color.red();
        green += color.green();
        blue += color.blue();
    }
    return {red / 4, green / 4, blue / 4};
}

} // namespace

TrayIconWindow::TrayIconWindow(const XcbConnection &connection, xcb_visualid_t visual) : m_x(connection)
{
    createWindow(visual);
    describe();
}

TrayIconWindow::~TrayIconWindow()
{
    if (m_gc)
        xcb_free_gc(m_x.raw(), m_gc);
    if (m_window)
        xcb_destroy_window(m_x.raw(), m_window);
    if (m_colormap)
        xcb_free_colormap(m_x.raw(), m_colormap);
}

void TrayIconWindow::createWindow(xcb_visualid_t visual)
{
    m_depth = m_x.depthOf(visual);
    if (formatOfDepth(m_depth) == QImage::Format_Invalid) {
        visual = m_x.screen()->root_visual;
        m_depth = m_x.screen()->root_depth;
    }
    m_window = xcb_generate_id(m_x.raw());
    m_colormap = xcb_generate_id(m_x.raw());
    xcb_create_colormap(m_x.raw(), XCB_COLORMAP_ALLOC_NONE, m_colormap, m_x.root(), visual);
    // Transparent by itself, or showing what the tray paints behind it.
    const bool transparent = m_depth == argbDepth;
    const quint32 background = transparent ? 0 : XCB_BACK_PIXMAP_PARENT_RELATIVE;
    const std::array<quint32, 4> values{background, 0, windowEvents, m_colormap};
    // A window of another depth than the root's cannot be parent relative before it is embedded.
    const bool relative = !transparent && m_depth == m_x.screen()->root_depth;
    const quint32 backgroundMask = relative ? XCB_CW_BACK_PIXMAP : XCB_CW_BACK_PIXEL;
    xcb_create_window(m_x.raw(), m_depth, m_window, m_x.root(), -1, -1, initialSide, initialSide, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      backgroundMask | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values.data());
    m_gc = xcb_generate_id(m_x.raw());
    xcb_create_gc(m_x.raw(), m_gc, m_window, 0, nullptr);
}

void TrayIconWindow::describe()
{
    constexpr quint32 embedVersion = 0, wantsToBeMapped = 1;
    m_x.setNumbers(m_window, "_XEMBED_INFO", m_x.atom("_XEMBED_INFO"), {embedVersion, wantsToBeMapped});
    m_x.setNumbers(m_window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {quint32(QCoreApplication::applicationPid())});
    m_x.setText(m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, QByteArray("orvelle\0Orvelle\0", 16));
}

void TrayIconWindow::setTitle(const QString &title)
{
    m_x.setText(m_window, XCB_ATOM_WM_NAME, m_x.atom("UTF8_STRING"), title.toUtf8());
    m_x.setText(m_window, m_x.atom("_NET_WM_NAME"), m_x.atom("UTF8_STRING"), title.toUtf8());
}

QRect TrayIconWindow::geometry() const
{
    const auto sizeCookie = xcb_get_geometry(m_x.raw(), m_window);
    const auto placeCookie = xcb_translate_coordinates(m_x.raw(), m_window, m_x.root(), 0, 0);
    const XcbPtr<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(m_x.raw(), sizeCookie, nullptr));
    const XcbPtr<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_x.raw(), placeCookie, nullptr));
    if (!size || !place)
        return {};
    return {place->dst_x, place->dst_y, size->width, size->height};
}

void TrayIconWindow::paint(const StatusItem::Painter &painter, const std::optional<QColor> &prescribed,
                           const QColor &fallback)
{
    const QRect area = geometry();
    const int side = std::min({area.width(), area.height(), largestSide});
    if (side <= 0 || area.width() > largestSide || area.height() > largestSide || !painter)
        return;
    const QColor color = prescribed ? *prescribed : colorBehind(area).value_or(fallback);
    QImage picture;
    if (m_depth == argbDepth) {
        picture = QImage(area.size(), formatOfDepth(m_depth));
        picture.fill(Qt::transparent);
    } else {
        xcb_clear_area(m_x.raw(), 0, m_window, 0, 0, 0, 0);
        picture = pixelsOf(m_window, QRect(QPoint(), area.size()), m_depth);
        if (picture.isNull())
            return; // not on the screen now; an Expose event comes when it is
    }
    QPainter canvas(&picture);
    canvas.drawImage((area.width() - side) / 2, (area.height() - side) / 2, painter(side, color));
    canvas.end();
    put(picture);
}

QImage TrayIconWindow::pixelsOf(xcb_window_t window, const QRect &area, quint8 depth) const
{
    const QImage::Format format = formatOfDepth(depth);
    const auto cookie = xcb_get_image(m_x.raw(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, qint16(area.x()), qint16(area.y()),
                                      quint16(area.width()), quint16(area.height()), ~quint32(0));
    const XcbPtr<xcb_get_image_reply_t> reply(xcb_get_image_reply(m_x.raw(), cookie, nullptr));
    if (!reply || format == QImage::Format_Invalid || !serverHasOurByteOrder(m_x))
        return {};
    QImage image(area.size(), format);
    if (xcb_get_image_data_length(reply.get()) != image.sizeInBytes())
        return {};
    std::copy_n(xcb_get_image_data(reply.get()), image.sizeInBytes(), image.bits());
    return image;
}

std::optional<QColor> TrayIconWindow::colorBehind(const QRect &onRoot) const
{
    // The corners stay free of the symbol, so they show the panel even while
    // the icon is drawn.
    const QImage seen = pixelsOf(m_x.root(), onRoot, m_x.screen()->root_depth);
    if (seen.isNull())
        return std::nullopt;
    const int right = seen.width() - 1, bottom = seen.height() - 1;
    return DesktopColorScheme::contrastTo(mean({seen.pixelColor(0, 0), seen.pixelColor(right, 0),
                                                seen.pixelColor(0, bottom), seen.pixelColor(right, bottom)}));
}

void TrayIconWindow::put(const QImage &picture)
{
    if (!serverHasOurByteOrder(m_x)) {
        qCWarning(lcTrayIconWindow, "the X server orders bytes differently; the icon is not drawn");
        return;
    }
    xcb_put_image(m_x.raw(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_gc, quint16(picture.width()),
                  quint16(picture.height()), 0, 0, 0, m_depth, quint32(picture.sizeInBytes()), picture.constBits());
}

} // namespace orvelle
