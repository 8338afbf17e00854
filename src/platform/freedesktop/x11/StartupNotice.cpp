#include "platform/freedesktop/x11/StartupNotice.h"

#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QByteArray>

#include <poll.h>

#undef signals // a member's name in GIO's headers
#include <gio/gio.h>

#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>

namespace orvelle {
namespace {

constexpr int answerMs = 500;

struct NoticeContext {
    GAppLaunchContext parent;
    std::unique_ptr<XcbConnection> *x; ///< opened when a program wants it
    const char *token;                 ///< empty without one
};
struct NoticeContextClass {
    GAppLaunchContextClass parent;
};

struct UnrefLauncher {
    void operator()(SnLauncherContext *launcher) const { sn_launcher_context_unref(launcher); }
};
struct UnrefDisplay {
    void operator()(SnDisplay *display) const { sn_display_unref(display); }
};

/// The server's present time; 0 when it does not tell.
xcb_timestamp_t serverTime(const XcbConnection &x)
{
    const xcb_window_t window = xcb_generate_id(x.raw());
    const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(x.raw(), XCB_COPY_FROM_PARENT, window, x.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(x.raw(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_destroy_window(x.raw(), window);
    xcb_flush(x.raw());
    pollfd readable{xcb_get_file_descriptor(x.raw()), POLLIN, 0};
    do {
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(x.raw())}) {
            if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
                return reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
        }
    } while (!x.isBroken() && poll(&readable, 1, answerMs) > 0);
    return 0;
}

/// The id that GIO hands to the program; allocated for GIO to free.
char *announce(GAppLaunchContext *context, GAppInfo *info, GList *)
{
    const auto *notice = reinterpret_cast<NoticeContext *>(context);
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return *notice->token ? g_strdup(notice->token) : nullptr;
    *notice->x = XcbConnection::open({});
    const XcbConnection *x = notice->x->get();
    if (!x)
        return nullptr;
    const std::unique_ptr<SnDisplay, UnrefDisplay> display(sn_xcb_display_new(x->raw(), nullptr, nullptr));
    const std::unique_ptr<SnLauncherContext, UnrefLauncher> launcher(
        sn_launcher_context_new(display.get(), x->screenNumber()));
    const char *name = g_app_info_get_display_name(info);
    sn_launcher_context_set_name(launcher.get(), name);
    sn_launcher_context_set_description(launcher.get(), name);
    sn_launcher_context_set_binary_name(launcher.get(), g_app_info_get_executable(info));
    sn_launcher_context_initiate(launcher.get(), "orvelle", name, serverTime(*x));
    xcb_flush(x->raw());
    return g_strdup(sn_launcher_context_get_startup_id(launcher.get()));
}

void initClass(void *type, void *)
{
    static_cast<GAppLaunchContextClass *>(type)->get_startup_notify_id = &announce;
}

GType contextType()
{
    static const GType type =
        g_type_register_static_simple(G_TYPE_APP_LAUNCH_CONTEXT, "OrvelleLaunchContext", sizeof(NoticeContextClass),
                                      &initClass, sizeof(NoticeContext), nullptr, GTypeFlags(0));
    return type;
}

} // namespace

class StartupNotice::Private
{
public:
    Private()
    {
        auto *made = static_cast<NoticeContext *>(g_object_new(contextType(), nullptr));
        made->x = &x;
        made->token = token.constData();
        context = &made->parent;
        // Copies the environment, which threads must not read while it may change.
        g_app_launch_context_unsetenv(context, "XDG_ACTIVATION_TOKEN");
        // Meant for our own windows; some of another program would not show.
        g_app_launch_context_unsetenv(context, "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT");
        if (!token.isEmpty())
            g_app_launch_context_setenv(context, "XDG_ACTIVATION_TOKEN", token.constData());
    }
    ~Private() { g_object_unref(context); }
    Q_DISABLE_COPY_MOVE(Private)

    std::unique_ptr<XcbConnection> x;
    const QByteArray token = spendActivationToken();
    GAppLaunchContext *context;
};

StartupNotice::StartupNotice() : m_p(std::make_unique<Private>()) {}

StartupNotice::~StartupNotice() = default;

_GAppLaunchContext *StartupNotice::context() const
{
    return m_p->context;
}

} // namespace orvelle
