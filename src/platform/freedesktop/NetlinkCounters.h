#pragma once

#include "platform/NetworkCounters.h"

#include <memory>

struct nl_sock;

namespace orvelle {

/// The 64-bit counters of all links of the network name space, asked of the
/// kernel by rtnetlink (rtnetlink(7)).
class NetlinkCounters : public NetworkCounters
{
public:
    /// EIO when the kernel does not answer; the next reading tries again.
    Result<NetworkReading, int> read() override;

private:
    struct Close {
        void operator()(nl_sock *socket) const;
    };

    bool connectSocket();

    std::unique_ptr<nl_sock, Close> m_socket;
};

} // namespace orvelle
