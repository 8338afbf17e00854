#pragma once

#include "platform/HotKeyService.h"

#include <QSocketNotifier>

#include <memory>
#include <optional>
#include <vector>

struct xcb_key_press_event_t;

namespace orvelle {

class Clock;
class Timer;
class XcbConnection;

/// The hot key as a passive grab on the root window (X11 protocol, GrabKey),
/// over a connection of its own: the toolkit's would not see when another
/// keyboard is set. Unavailable on Wayland, where a grab would hold only while
/// an X window has the focus. Main thread.
class XcbHotKeys : public HotKeyService
{
    Q_OBJECT

public:
    explicit XcbHotKeys(Clock &clock, QObject *parent = nullptr);
    ~XcbHotKeys() override;

    std::optional<HotKeyError> registerHotKey(const HotKey &hotKey) override;
    void unregisterHotKey() override;

private:
    struct Grab {
        quint8 keycode = 0;
        quint16 modifiers = 0;
        std::vector<quint16> locks; ///< every combination of the lock keys
    };

    bool connected();
    void connectionLost();
    std::optional<HotKeyError> grab(const HotKey &hotKey);
    void ungrab();
    void grabAgain();
    void readEvents();
    bool isNewPress(const xcb_key_press_event_t &event);
    bool isDown(quint8 keycode) const;

    Clock &m_clock;
    std::unique_ptr<XcbConnection> m_x;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::optional<HotKey> m_wanted;
    std::optional<Grab> m_grab;    ///< what the server has granted
    std::unique_ptr<Timer> m_held; ///< from a press until the key was seen up
};

} // namespace orvelle
