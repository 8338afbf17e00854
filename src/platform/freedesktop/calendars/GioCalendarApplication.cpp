#include "platform/freedesktop/calendars/GioCalendarApplication.h"

#include "platform/freedesktop/GLibPointers.h"
#include "platform/freedesktop/x11/StartupNotice.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcCalendarApplication, "Workspace", QtInfoMsg)

constexpr const char *handledTypes[] = {"x-scheme-handler/webcal", "x-scheme-handler/webcals", "text/calendar"};

/// An application whose entry wants files starts without any.
void launch(const StartupNotice &notice)
{
    for (const char *type : handledTypes) {
        const ObjectPtr<GAppInfo> application(g_app_info_get_default_for_type(type, FALSE));
        if (!application)
            continue;
        GError *raw = nullptr;
        if (g_app_info_launch(application.get(), nullptr, notice.context(), &raw))
            return;
        qCWarning(lcCalendarApplication, "The calendar application did not start: %s", raw ? raw->message : "");
        g_clear_error(&raw);
    }
    qCWarning(lcCalendarApplication, "No application for calendars is installed");
}

} // namespace

void GioCalendarApplication::open()
{
    m_launcher.run([notice = std::make_shared<StartupNotice>()] { launch(*notice); });
}

} // namespace orvelle
