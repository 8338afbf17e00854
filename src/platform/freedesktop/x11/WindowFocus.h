#pragma once

#include "platform/Workspace.h"

#include <memory>

namespace orvelle {

class XcbConnection;

/// Which window has the focus on X11, and giving it back. It connects when
/// first asked; on Wayland, and without a display, there is nothing to know.
/// Main thread.
class WindowFocus
{
public:
    WindowFocus();
    ~WindowFocus();

    WindowToken focused();
    void give(WindowToken window);

private:
    bool connected();
    bool isViewable(quint32 window) const;
    bool managerActivates() const;

    std::unique_ptr<XcbConnection> m_x;
    bool m_tried = false;
};

} // namespace orvelle
