#pragma once

#include "platform/StatusItem.h"

#include <QColor>
#include <QRect>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <memory>
#include <optional>

namespace orvelle {

class TrayIconWindow;
class XcbConnection;

/// The icon in an X11 system tray (freedesktop.org System Tray Protocol 0.4,
/// XEmbed 0.5), over a connection of its own; a tray may come and go. Where
/// there is no X server it stays undocked, and so it does on Wayland: panels
/// there host no X windows, and connecting would start a server for nothing.
/// Main thread.
class EmbeddedTray : public QObject
{
    Q_OBJECT

public:
    explicit EmbeddedTray(QObject *parent = nullptr);
    ~EmbeddedTray() override;

    /// Looks for a tray, and waits for one.
    void start();
    /// Withdraws the icon and disconnects.
    void stop();
    bool isDocked() const { return m_docked; }

    void setPainter(StatusItem::Painter painter);
    void setTitle(const QString &title);
    /// For a tray that neither prescribes a colour nor lets itself be sampled.
    void setFallbackColor(const QColor &color);

signals:
    void dockedChanged();
    /// The button was released over the icon; `icon` in the X server's pixels.
    void clicked(Qt::MouseButton button, const QRect &icon);

private:
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    void handleClientMessage(const xcb_client_message_event_t &message);
    void handleDestroyed(xcb_window_t window);
    void handleReparented(const xcb_reparent_notify_event_t &event);
    void handleRelease(const xcb_button_release_event_t &event);
    void findManager();
    void dock(xcb_window_t manager);
    void undock();
    void setDocked(bool docked);
    void connectionLost();
    void repaint();
    std::optional<QColor> prescribedColor() const;

    std::unique_ptr<XcbConnection> m_x;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<TrayIconWindow> m_window; ///< before m_x in destruction
    xcb_window_t m_manager = XCB_WINDOW_NONE;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    quint8 m_pressed = 0; ///< the button held down on the icon
    bool m_docked = false;
    StatusItem::Painter m_painter;
    QString m_title;
    QColor m_fallbackColor;
};

} // namespace orvelle
