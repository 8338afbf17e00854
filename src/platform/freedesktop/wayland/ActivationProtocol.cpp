#include "platform/freedesktop/wayland/ActivationProtocol.h"

namespace orvelle {

namespace {

const wl_interface *const noObjects[2] = {};
const wl_interface *const newToken[1] = {&activationTokenInterface()};
const wl_interface *const tokenAndSurface[2] = {nullptr, &wl_surface_interface};
const wl_interface *const serialAndSeat[2] = {nullptr, &wl_seat_interface};
const wl_interface *const surface[1] = {&wl_surface_interface};

const wl_message activationRequests[] = {{"destroy", "", const_cast<const wl_interface **>(noObjects)},
                                         {"get_activation_token", "n", const_cast<const wl_interface **>(newToken)},
                                         {"activate", "so", const_cast<const wl_interface **>(tokenAndSurface)}};

const wl_message tokenRequests[] = {{"set_serial", "uo", const_cast<const wl_interface **>(serialAndSeat)},
                                    {"set_app_id", "s", const_cast<const wl_interface **>(noObjects)},
                                    {"set_surface", "o", const_cast<const wl_interface **>(surface)},
                                    {"commit", "", const_cast<const wl_interface **>(noObjects)},
                                    {"destroy", "", const_cast<const wl_interface **>(noObjects)}};

const wl_message tokenEvents[] = {{"done", "s", const_cast<const wl_interface **>(noObjects)}};

} // namespace

const wl_interface &activationInterface()
{
    static const wl_interface interface {
        "xdg_activation_v1", 1, 3, activationRequests, 0, nullptr
    };
    return interface;
}

const wl_interface &activationTokenInterface()
{
    static const wl_interface interface {
        "xdg_activation_token_v1", 1, 5, tokenRequests, 1, tokenEvents
    };
    return interface;
}

} // namespace orvelle
