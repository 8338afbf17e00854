#include "platform/freedesktop/GioCalendarApplication.h"

#include <QLoggingCategory>

#include <memory>

#undef signals // a member's name in GIO's headers
#include <gio/gio.h>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcCalendarApplication, "Workspace", QtInfoMsg)

constexpr const char *handledTypes[] = {"x-scheme-handler/webcal", "x-scheme-handler/webcals", "text/calendar"};

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};

/// An application whose entry wants files starts without any.
void launch()
{
    for (const char *type : handledTypes) {
        const std::unique_ptr<GAppInfo, Unref> application(g_app_info_get_default_for_type(type, FALSE));
        if (!application)
            continue;
        GError *raw = nullptr;
        if (g_app_info_launch(application.get(), nullptr, nullptr, &raw))
            return;
        qCWarning(lcCalendarApplication, "The calendar application did not start: %s", raw ? raw->message : "");
        g_clear_error(&raw);
    }
    qCWarning(lcCalendarApplication, "No application for calendars is installed");
}

} // namespace

GioCalendarApplication::GioCalendarApplication()
{
    m_launcher.setMaxThreadCount(1);
}

GioCalendarApplication::~GioCalendarApplication()
{
    m_launcher.waitForDone(2000);
}

void GioCalendarApplication::open()
{
    m_launcher.start(&launch);
}

} // namespace orvelle
