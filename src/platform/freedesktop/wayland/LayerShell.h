#pragma once

#include "platform/OverlayShell.h"
#include "platform/freedesktop/wayland/LayerShellProtocol.h"
#include "platform/freedesktop/wayland/WaylandActivation.h"

#include <QHash>
#include <QObject>

#include <memory>

namespace orvelle {

/// Windows as overlay surfaces of compositors with the layer-shell protocol.
/// Works on the toolkit's own connection and surfaces: the toolkit gives a
/// window with Qt::BypassWindowManagerHint no role of its own when
/// allowRolelessWindows() was called in time. Main thread.
class LayerShell : public OverlayShell
{
public:
    LayerShell();
    ~LayerShell() override;
    LayerShell(const LayerShell &) = delete;
    LayerShell &operator=(const LayerShell &) = delete;

    /// Before the toolkit's application object is made.
    static void allowRolelessWindows();

    bool isAvailable() const override { return m_shell != nullptr; }
    bool cover(QWindow &window, std::function<void()> taken) override;
    void letGo(QWindow &window) override;
    void uncover(QWindow &window) override;

private:
    /// What the compositor says of a surface.
    struct Layer {
        QWindow *window;
        std::function<void()> taken;
        bool isConfigured = false;
        int width = 0;
        int height = 0;
    };

    void startListening();
    void stopListening();

    wl_display *m_display = nullptr; ///< the toolkit's
    wl_event_queue *m_queue = nullptr;
    wl_proxy *m_shell = nullptr;
    WaylandActivation m_activation;
    QHash<QWindow *, wl_proxy *> m_surfaces;
    QHash<wl_proxy *, std::shared_ptr<Layer>> m_layers;
    std::unique_ptr<QObject> m_listening; ///< to the event loop, while there is a surface
};

} // namespace orvelle
