#include "platform/freedesktop/wayland/LayerShellProtocol.h"

namespace orvelle {

namespace {

const wl_interface *const noObjects[5] = {};
const wl_interface *const newSurface[5] = {&layerSurfaceInterface(), &wl_surface_interface, &wl_output_interface,
                                           nullptr, nullptr};

const wl_message shellRequests[] = {{"get_layer_surface", "no?ous", const_cast<const wl_interface **>(newSurface)},
                                    {"destroy", "3", const_cast<const wl_interface **>(noObjects)}};

const wl_message surfaceRequests[] = {{"set_size", "uu", const_cast<const wl_interface **>(noObjects)},
                                      {"set_anchor", "u", const_cast<const wl_interface **>(noObjects)},
                                      {"set_exclusive_zone", "i", const_cast<const wl_interface **>(noObjects)},
                                      {"set_margin", "iiii", const_cast<const wl_interface **>(noObjects)},
                                      {"set_keyboard_interactivity", "u", const_cast<const wl_interface **>(noObjects)},
                                      {"get_popup", "o", const_cast<const wl_interface **>(noObjects)},
                                      {"ack_configure", "u", const_cast<const wl_interface **>(noObjects)},
                                      {"destroy", "", const_cast<const wl_interface **>(noObjects)},
                                      {"set_layer", "2u", const_cast<const wl_interface **>(noObjects)}};

const wl_message surfaceEvents[] = {{"configure", "uuu", const_cast<const wl_interface **>(noObjects)},
                                    {"closed", "", const_cast<const wl_interface **>(noObjects)}};

} // namespace

const wl_interface &layerShellInterface()
{
    static const wl_interface interface {
        "zwlr_layer_shell_v1", 4, 2, shellRequests, 0, nullptr
    };
    return interface;
}

const wl_interface &layerSurfaceInterface()
{
    static const wl_interface interface {
        "zwlr_layer_surface_v1", 4, 9, surfaceRequests, 2, surfaceEvents
    };
    return interface;
}

} // namespace orvelle
