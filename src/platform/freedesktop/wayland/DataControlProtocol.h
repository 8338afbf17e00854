#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace orvelle {

class WaylandConnection;

/// The interfaces by which a compositor lets a program without a window read
/// and set the clipboard. There are two families of the same shape: the
/// staging protocol ext_data_control_v1 (wayland-protocols 1.39) and the older
/// wlr_data_control_unstable_v1, version 2. Names, order and signatures are
/// those of the published protocols.
struct DataControlProtocol {
    const wl_interface *manager;
    const wl_interface *source;
    const wl_interface *device;
    const wl_interface *offer;
    std::uint32_t version; ///< of the manager that is spoken at most
};

const DataControlProtocol &extDataControl();
const DataControlProtocol &wlrDataControl();

/// The family to speak with this compositor; null where there is none, or no
/// seat whose clipboard it would be.
const DataControlProtocol *offeredDataControl(const WaylandConnection &connection);

/// The numbers of the requests, by their order in the protocols.
struct DataControlRequest {
    enum Manager : std::uint32_t { CreateSource = 0, GetDevice = 1 };
    enum Device : std::uint32_t { SetSelection = 0, DestroyDevice = 1 };
    enum Source : std::uint32_t { AddType = 0, DestroySource = 1 };
    enum Offer : std::uint32_t { Receive = 0, DestroyOffer = 1 };
};

} // namespace orvelle
