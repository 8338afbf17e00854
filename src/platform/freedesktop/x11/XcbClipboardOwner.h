#pragma once

#include "platform/Pasteboard.h"

#include <QThread>

#include <memory>

namespace orvelle {

/// Owns the CLIPBOARD selection of the X server that $DISPLAY names with what
/// was written here, and answers those who paste it: in a thread and over a
/// connection of its own. The toolkit waits on the main thread for an owner's
/// answer, so an owner that lived there would be asked and never heard by this
/// program's own windows. Main thread.
class XcbClipboardOwner
{
public:
    /// Starts the thread, which connects at the first write.
    XcbClipboardOwner();
    /// Hands what is owned over to the desktop's clipboard manager, if there is
    /// one; waits for it a second at most. A thread that a server holds up longer
    /// is left to itself.
    ~XcbClipboardOwner();

    /// Takes the selection with these forms, or lets go of it with none, soon
    /// after the call. A server that was started again is joined; without one
    /// nothing happens.
    void write(const QList<PasteboardItem> &forms);

private:
    class Service;

    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Service> m_service; ///< lives in the thread; touched directly only once that has ended
};

} // namespace orvelle
