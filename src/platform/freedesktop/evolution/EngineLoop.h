#pragma once

#include "platform/freedesktop/evolution/GObjectTools.h"

#include <QThread>

namespace orvelle {

/// A thread that runs a GLib main loop, its thread-default one, and the ways to
/// have something done there. Unless said otherwise functions are for that
/// thread alone.
class EngineLoop : public QThread
{
public:
    EngineLoop();
    /// The thread has ended, or was never started.
    ~EngineLoop() override;

    /// Any thread.
    void post(std::function<void()> work);
    /// Ends the thread once all that is under way has come back. Any thread.
    void quitSoon();

    /// Calls once after that time; 0 is none. The number is for forget().
    guint after(int milliseconds, std::function<void()> work);
    /// Safe with 0 and with one that has been called; sets it to 0.
    void forget(guint &timer);

    using Finished = std::function<void(GObject *source, GAsyncResult *result)>;
    /// What GIO's asynchronous functions take: pass finished() as the callback
    /// and this as its data. The loop does not end before it is called.
    void *awaiting(Finished finished);
    static GAsyncReadyCallback finished();

    /// Runs what waits on a thread of GIO's pool, then `done` here.
    void beside(std::function<void()> work, std::function<void()> done);

protected:
    void run() override;

private:
    struct Awaited;
    static void finish(GObject *source, GAsyncResult *result, gpointer awaited);

    GMainContext *m_context;
    GMainLoop *m_loop;
    int m_awaited = 0;
};

} // namespace orvelle
