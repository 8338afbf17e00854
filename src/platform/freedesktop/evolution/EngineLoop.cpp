#include "platform/freedesktop/evolution/EngineLoop.h"

namespace orvelle {

namespace {

using Work = std::function<void()>;

gboolean callOnce(gpointer work)
{
    (*static_cast<Work *>(work))();
    return G_SOURCE_REMOVE;
}
void discard(gpointer work)
{
    delete static_cast<Work *>(work);
}

/// The number of the source in the context.
guint attach(GSource *source, Work work, GMainContext *context)
{
    g_source_set_callback(source, callOnce, new Work(std::move(work)), discard);
    const guint number = g_source_attach(source, context);
    g_source_unref(source);
    return number;
}

} // namespace

void listen(gpointer object, const char *signal, std::function<void()> heard)
{
    // Swapped, so that what the signal carries comes after what the handler takes.
    const auto call = +[](gpointer work) { (*static_cast<Work *>(work))(); };
    g_signal_connect_data(
        object, signal, G_CALLBACK(call), new Work(std::move(heard)), [](gpointer work, GClosure *) { discard(work); },
        G_CONNECT_SWAPPED);
}

struct EngineLoop::Awaited {
    EngineLoop &loop;
    Finished finished;
};

EngineLoop::EngineLoop() : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context, FALSE)) {}

EngineLoop::~EngineLoop()
{
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void EngineLoop::run()
{
    g_main_context_push_thread_default(m_context);
    g_main_loop_run(m_loop);
    while (m_awaited > 0)
        g_main_context_iteration(m_context, TRUE);
    g_main_context_pop_thread_default(m_context);
}

void EngineLoop::post(Work work)
{
    attach(g_idle_source_new(), std::move(work), m_context);
}

void EngineLoop::quitSoon()
{
    post([this] { g_main_loop_quit(m_loop); });
}

guint EngineLoop::after(int milliseconds, Work work)
{
    return attach(g_timeout_source_new(static_cast<guint>(milliseconds)), std::move(work), m_context);
}

void EngineLoop::forget(guint &timer)
{
    if (GSource *source = timer ? g_main_context_find_source_by_id(m_context, timer) : nullptr)
        g_source_destroy(source);
    timer = 0;
}

void *EngineLoop::awaiting(Finished finished)
{
    ++m_awaited;
    return new Awaited{*this, std::move(finished)};
}

GAsyncReadyCallback EngineLoop::finished()
{
    return &EngineLoop::finish;
}

void EngineLoop::finish(GObject *source, GAsyncResult *result, gpointer awaited)
{
    const std::unique_ptr<Awaited> own(static_cast<Awaited *>(awaited));
    own->finished(source, result);
    --own->loop.m_awaited;
}

void EngineLoop::beside(Work work, Work done)
{
    GTask *task = g_task_new(nullptr, nullptr, finished(),
                             awaiting([done = std::move(done)](GObject *, GAsyncResult *) { done(); }));
    g_task_set_task_data(task, new Work(std::move(work)), discard);
    g_task_run_in_thread(task, [](GTask *own, gpointer, gpointer data, GCancellable *) {
        (*static_cast<Work *>(data))();
        g_task_return_boolean(own, TRUE);
    });
    g_object_unref(task);
}

} // namespace orvelle
