#include "platform/freedesktop/x11/XcbHotKeys.h"

#include "platform/Clock.h"
#include "platform/freedesktop/x11/XcbKeyboard.h"
#include "platform/freedesktop/x11/XcbTools.h"

#include <QLoggingCategory>

#include <xcb/xproto.h>

#include <algorithm>

namespace orvelle {
namespace {

Q_LOGGING_CATEGORY(lcHotKeys, "HotKeys", QtInfoMsg)

constexpr quint8 accessError = 10; // BadAccess of the X11 protocol

/// How often a key that is held down is looked at. Quicker than anybody presses
/// it twice.
constexpr std::chrono::milliseconds heldPeriod{25};

} // namespace

XcbHotKeys::XcbHotKeys(Clock &clock, QObject *parent) : HotKeyService(parent), m_clock(clock) {}

XcbHotKeys::~XcbHotKeys()
{
    m_readable.reset(); // before the connection whose socket it watches
}

bool XcbHotKeys::connected()
{
    if (m_x && m_x->isBroken())
        connectionLost();
    if (!m_x && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) {
        m_x = XcbConnection::open({});
        if (m_x) {
            m_readable = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_x->raw()), QSocketNotifier::Read);
            connect(m_readable.get(), &QSocketNotifier::activated, this, &XcbHotKeys::readEvents);
        }
    }
    return m_x != nullptr;
}

void XcbHotKeys::connectionLost()
{
    m_held.reset();
    m_readable.reset();
    m_grab.reset();
    m_x.reset();
}

std::optional<HotKeyError> XcbHotKeys::registerHotKey(const HotKey &hotKey)
{
    unregisterHotKey();
    if (!connected())
        return HotKeyError{HotKeyError::Kind::Unavailable, 0};
    const auto error = grab(hotKey);
    // One that the keyboard lacks may be on the next one.
    m_wanted = hotKey;
    return error;
}

std::optional<HotKeyError> XcbHotKeys::grab(const HotKey &hotKey)
{
    // The answers below may take events off the socket, which then stays quiet.
    QMetaObject::invokeMethod(this, &XcbHotKeys::readEvents, Qt::QueuedConnection);
    const XcbKeyboard keyboard(*m_x);
    const auto keycode = keyboard.keycodeOf(hotKey.key);
    const auto modifiers = keyboard.maskOf(hotKey.modifiers);
    if (!keycode || !modifiers)
        return HotKeyError{HotKeyError::Kind::NoSuchKey, 0};
    m_grab = Grab{*keycode, *modifiers, keyboard.lockCombinations()};
    std::vector<xcb_void_cookie_t> asked;
    for (const quint16 locks : m_grab->locks) {
        asked.push_back(xcb_grab_key_checked(m_x->raw(), 0, m_x->root(), *modifiers | locks, *keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    quint8 refused = 0;
    for (const xcb_void_cookie_t cookie : asked) {
        if (const XcbPtr<xcb_generic_error_t> error{xcb_request_check(m_x->raw(), cookie)})
            refused = error->error_code;
    }
    if (refused == 0)
        return std::nullopt;
    // Half a hot key, which works while Num Lock is off, helps nobody.
    ungrab();
    const auto kind = refused == accessError ? HotKeyError::Kind::HeldByAnother : HotKeyError::Kind::NoSuchKey;
    return HotKeyError{kind, refused};
}

void XcbHotKeys::ungrab()
{
    if (!m_grab || !m_x)
        return;
    // Only what is ours goes; where another program holds it, nothing happens.
    for (const quint16 locks : m_grab->locks)
        xcb_ungrab_key(m_x->raw(), m_grab->keycode, m_x->root(), m_grab->modifiers | locks);
    xcb_flush(m_x->raw());
    m_grab.reset();
}

void XcbHotKeys::unregisterHotKey()
{
    m_wanted.reset();
    ungrab();
}

void XcbHotKeys::readEvents()
{
    bool mappingChanged = false;
    bool wasPressed = false;
    while (m_x) {
        const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x->raw())};
        if (!event)
            break;
        const int type = event->response_type & 0x7f;
        if (type == XCB_KEY_PRESS)
            wasPressed = isNewPress(*reinterpret_cast<const xcb_key_press_event_t *>(event.get())) || wasPressed;
        else if (type == XCB_MAPPING_NOTIFY)
            mappingChanged = true;
    }
    if (m_x && m_x->isBroken()) {
        qCWarning(lcHotKeys, "The X server is gone, and the hot key with it");
        connectionLost();
        return;
    }
    if (mappingChanged && m_wanted)
        grabAgain();
    if (wasPressed && m_grab)
        emit fired();
}

bool XcbHotKeys::isNewPress(const xcb_key_press_event_t &event)
{
    // The server gives us the keyboard until the key is up, and the menu needs
    // it now. The answer is waited for: the menu asks over another connection.
    const XcbPtr<xcb_generic_error_t> ignored{
        xcb_request_check(m_x->raw(), xcb_ungrab_keyboard_checked(m_x->raw(), event.time))};
    // The server repeats a key that is held down as further presses, and with
    // the keyboard let go of nobody tells us of its end.
    if (m_held)
        return false;
    m_held = m_clock.repeating(heldPeriod, [this, keycode = event.detail] {
        const bool isHeld = isDown(keycode);
        readEvents(); // repetitions that came with the answer
        if (!isHeld)
            m_held.reset();
    });
    return true;
}

bool XcbHotKeys::isDown(quint8 keycode) const
{
    const XcbPtr<xcb_query_keymap_reply_t> keys(
        m_x ? xcb_query_keymap_reply(m_x->raw(), xcb_query_keymap(m_x->raw()), nullptr) : nullptr);
    return keys && (keys->keys[keycode / 8] >> (keycode % 8) & 1) != 0;
}

void XcbHotKeys::grabAgain()
{
    const bool had = m_grab.has_value();
    ungrab();
    const auto error = grab(*m_wanted);
    if (!error && !had)
        emit hotKeyFound();
    else if (error && had)
        emit hotKeyLost(*error);
}

} // namespace orvelle
