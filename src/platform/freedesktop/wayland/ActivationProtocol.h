#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace orvelle {

/// The published protocol xdg_activation_v1, version 1: a program that has the
/// user's attention hands it on, to a window of its own or of another program.
const wl_interface &activationInterface();
const wl_interface &activationTokenInterface();

/// The numbers of requests that are used, as published.
struct ActivationRequest {
    enum Activation : std::uint32_t { GetToken = 1 };
    enum Token : std::uint32_t { SetSerial = 0, SetSurface = 2, Commit = 3, Destroy = 4 };
};

} // namespace orvelle
