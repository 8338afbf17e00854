#include "platform/freedesktop/NetlinkCounters.h"

#include <netlink/cache.h>
#include <netlink/netlink.h>
#include <netlink/route/link.h>
#include <netlink/socket.h>

#include <cerrno>

namespace orvelle {

namespace {

struct FreeCache {
    void operator()(nl_cache *cache) const { nl_cache_free(cache); }
};
using CachePointer = std::unique_ptr<nl_cache, FreeCache>;

InterfaceCounters countersOf(rtnl_link *link)
{
    InterfaceCounters result;
    result.index = rtnl_link_get_ifindex(link);
    result.name = QString::fromUtf8(rtnl_link_get_name(link));
    result.kind = QString::fromUtf8(rtnl_link_get_type(link));
    result.master = rtnl_link_get_master(link);
    result.bytesIn = rtnl_link_get_stat(link, RTNL_LINK_RX_BYTES);
    result.bytesOut = rtnl_link_get_stat(link, RTNL_LINK_TX_BYTES);
    return result;
}

} // namespace

void NetlinkCounters::Close::operator()(nl_sock *socket) const
{
    nl_socket_free(socket);
}

bool NetlinkCounters::connectSocket()
{
    if (m_socket)
        return true;
    m_socket.reset(nl_socket_alloc());
    if (m_socket && nl_connect(m_socket.get(), NETLINK_ROUTE) == 0)
        return true;
    m_socket.reset();
    return false;
}

Result<NetworkReading, int> NetlinkCounters::read()
{
    nl_cache *links = nullptr;
    if (!connectSocket() || rtnl_link_alloc_cache_flags(m_socket.get(), AF_UNSPEC, &links, 0) != 0) {
        m_socket.reset();
        return EIO;
    }
    const CachePointer cache(links);
    NetworkReading reading;
    for (nl_object *each = nl_cache_get_first(links); each; each = nl_cache_get_next(each))
        reading.interfaces += countersOf(reinterpret_cast<rtnl_link *>(each));
    return reading;
}

} // namespace orvelle
