#pragma once

#include "platform/freedesktop/wayland/WaylandConnection.h"

#include <QPoint>
#include <QSize>

namespace orvelle::test {

/// A mouse of the test's own (wlr_virtual_pointer_unstable_v1, version 1, as
/// published).
class VirtualPointer
{
public:
    explicit VirtualPointer(const QSize &screen);
    ~VirtualPointer();

    bool isThere() const { return m_pointer != nullptr; }
    void moveTo(const QPoint &place);
    void press() { button(true); }
    void release() { button(false); }

private:
    void button(bool down);
    void send();

    QSize m_screen;
    std::unique_ptr<WaylandConnection> m_connection;
    wl_proxy *m_pointer = nullptr;
    std::uint32_t m_time = 0;
};

} // namespace orvelle::test
