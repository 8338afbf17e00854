#pragma once

#include "platform/Pasteboard.h"

#include <QThread>

#include <memory>

namespace orvelle {

/// Owns the compositor's clipboard with what was written here, and answers
/// those who paste it: in a thread and over a connection of its own. The
/// toolkit waits on the main thread for an owner's answer, so an owner that
/// lived there would be asked and never heard by this program's own windows.
/// Main thread.
class WaylandClipboardOwner
{
public:
    WaylandClipboardOwner();
    /// What is owned ends with it. A thread that a hung compositor holds up is
    /// left to itself.
    ~WaylandClipboardOwner();

    /// Takes the clipboard with these forms, or empties it with none, soon
    /// after the call; the first one starts the thread. Without a compositor
    /// that lets us (see DataControlProtocol) nothing happens.
    void write(const QList<PasteboardItem> &forms);

private:
    class Service;

    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Service> m_service; ///< lives in the thread
};

} // namespace orvelle
