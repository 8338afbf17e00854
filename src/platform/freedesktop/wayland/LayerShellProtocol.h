#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace orvelle {

/// The published protocol wlr_layer_shell_unstable_v1, version 4: surfaces in
/// layers above or below all windows.
const wl_interface &layerShellInterface();
const wl_interface &layerSurfaceInterface();

/// The numbers of requests and values that are used, as published.
struct LayerShellRequest {
    enum Shell : std::uint32_t { GetLayerSurface = 0 };
    enum Surface : std::uint32_t {
        SetSize = 0,
        SetAnchor = 1,
        SetExclusiveZone = 2,
        SetKeyboardInteractivity = 4,
        AckConfigure = 6,
        Destroy = 7
    };
    enum Layer : std::uint32_t { Overlay = 3 };
    enum Keyboard : std::uint32_t { NoKeyboard = 0, Exclusive = 1 };
    static constexpr std::uint32_t allEdges = 15;
    /// Not moved aside by panels.
    static constexpr std::int32_t overPanels = -1;
};

} // namespace orvelle
