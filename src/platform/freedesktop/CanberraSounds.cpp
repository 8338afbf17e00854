#include "platform/freedesktop/CanberraSounds.h"

#include "platform/freedesktop/x11/XcbTools.h"

#include <QLoggingCategory>

#include <canberra.h>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcSounds, "Sounds", QtInfoMsg)

/// Null when there is no memory for one. Made for the first sound and never
/// destroyed: some drivers unload their code while a thread of theirs is still
/// on its last line. It connects again by itself.
ca_context *soundContext()
{
    static ca_context *const context = [] {
        ca_context *made = nullptr;
        if (ca_context_create(&made) == CA_SUCCESS)
            ca_context_change_props(made, CA_PROP_APPLICATION_NAME, "Orvelle", CA_PROP_APPLICATION_ID,
                                    "org.orvelle.Orvelle", nullptr);
        return made;
    }();
    return context;
}

bool play(const char *event)
{
    ca_context *context = soundContext();
    const int result = context
                           ? ca_context_play(context, 0, CA_PROP_EVENT_ID, event, CA_PROP_MEDIA_ROLE, "event", nullptr)
                           : CA_ERROR_OOM;
    qCDebug(lcSounds, "%s: %s", event, ca_strerror(result));
    return result == CA_SUCCESS;
}

} // namespace

CanberraSounds::CanberraSounds(std::function<void()> bell) : m_bell(std::move(bell)) {}

void CanberraSounds::ringXBell()
{
    if (const auto server = XcbConnection::open({})) {
        xcb_bell(server->raw(), 0);
        xcb_flush(server->raw());
    }
}

void CanberraSounds::playAlarm()
{
    m_player.run([bell = m_bell] {
        // By the freedesktop sound naming specification; small themes have only the last.
        if (play("alarm-clock-elapsed") || play("complete") || play("bell"))
            return;
        qCInfo(lcSounds, "no sound could be played, ringing the bell");
        bell();
    });
}

} // namespace orvelle
