#pragma once

#include <wayland-client.h>

#include <cstdint>

namespace orvelle {

/// Sends a request that makes no object, by its number in the protocol.
template<typename... Arguments>
void sendRequest(wl_proxy *proxy, std::uint32_t opcode, Arguments... arguments)
{
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

/// Sends the request that ends an object, and ends it here.
inline void sendDestroy(wl_proxy *proxy, std::uint32_t opcode)
{
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), WL_MARSHAL_FLAG_DESTROY);
}

/// One function of a table of listeners. A table holds one for each event of
/// the interface, in the protocol's order.
template<typename Function>
constexpr auto asListener(Function *function)
{
    return reinterpret_cast<void (*)()>(function);
}

inline void listen(wl_proxy *proxy, void (*const functions[])(), void *self)
{
    wl_proxy_add_listener(proxy, const_cast<void (**)()>(functions), self);
}

} // namespace orvelle
