#include "platform/freedesktop/wayland/DataControlProtocol.h"

#include "platform/freedesktop/wayland/WaylandConnection.h"

namespace orvelle {

namespace {

/// The four interfaces of one family. They name each other, so that they are
/// built in place and never moved.
class Family
{
public:
    struct Names {
        const char *manager;
        const char *source;
        const char *device;
        const char *offer;
    };

    /// `primary` is the signature of what concerns the primary selection,
    /// which came later in one family.
    Family(const Names &names, int version, const char *primary)
        : m_setPrimary{"set_primary_selection", primary, m_sourceArgument},
          m_primary{"primary_selection", primary, m_offerArgument},
          m_deviceRequests{m_setSelection, m_destroy, m_setPrimary},
          m_deviceEvents{m_dataOffer, m_selection, m_finished, m_primary},
          m_manager{names.manager, version, 3, m_managerRequests, 0, nullptr},
          m_source{names.source, 1, 2, m_sourceRequests, 2, m_sourceEvents},
          m_device{names.device, version, 3, m_deviceRequests, 4, m_deviceEvents},
          m_offer{names.offer, 1, 2, m_offerRequests, 1, m_offerEvents},
          m_protocol{&m_manager, &m_source, &m_device, &m_offer, static_cast<std::uint32_t>(version)}
    {
    }
    Family(const Family &) = delete;
    Family &operator=(const Family &) = delete;

    const DataControlProtocol &protocol() const { return m_protocol; }

private:
    const wl_interface *m_noArguments[2] = {nullptr, nullptr};
    const wl_interface *m_sourceArgument[1] = {&m_source};
    const wl_interface *m_offerArgument[1] = {&m_offer};
    const wl_interface *m_deviceArguments[2] = {&m_device, &wl_seat_interface};
    wl_message m_destroy{"destroy", "", m_noArguments};
    wl_message m_managerRequests[3] = {
        {"create_data_source", "n", m_sourceArgument}, {"get_data_device", "no", m_deviceArguments}, m_destroy};
    wl_message m_setSelection{"set_selection", "?o", m_sourceArgument};
    wl_message m_dataOffer{"data_offer", "n", m_offerArgument};
    wl_message m_selection{"selection", "?o", m_offerArgument};
    wl_message m_finished{"finished", "", m_noArguments};
    wl_message m_sourceRequests[2] = {{"offer", "s", m_noArguments}, m_destroy};
    wl_message m_sourceEvents[2] = {{"send", "sh", m_noArguments}, {"cancelled", "", m_noArguments}};
    wl_message m_offerRequests[2] = {{"receive", "sh", m_noArguments}, m_destroy};
    wl_message m_offerEvents[1] = {{"offer", "s", m_noArguments}};
    wl_message m_setPrimary;
    wl_message m_primary;
    wl_message m_deviceRequests[3];
    wl_message m_deviceEvents[4];
    wl_interface m_manager;
    wl_interface m_source;
    wl_interface m_device;
    wl_interface m_offer;
    DataControlProtocol m_protocol;
};

} // namespace

const DataControlProtocol &extDataControl()
{
    static const Family family({"ext_data_control_manager_v1", "ext_data_control_source_v1",
                                "ext_data_control_device_v1", "ext_data_control_offer_v1"},
                               1, "?o");
    return family.protocol();
}

const DataControlProtocol &wlrDataControl()
{
    static const Family family({"zwlr_data_control_manager_v1", "zwlr_data_control_source_v1",
                                "zwlr_data_control_device_v1", "zwlr_data_control_offer_v1"},
                               2, "2?o");
    return family.protocol();
}

const DataControlProtocol *offeredDataControl(const WaylandConnection &connection)
{
    if (!connection.has(wl_seat_interface))
        return nullptr;
    for (const DataControlProtocol *family : {&extDataControl(), &wlrDataControl()}) {
        if (connection.has(*family->manager))
            return family;
    }
    return nullptr;
}

} // namespace orvelle
