#include "platform/freedesktop/wayland/WaylandKeymap.h"

#include "platform/freedesktop/wayland/WaylandConnection.h"

#include <sys/mman.h>
#include <unistd.h>

namespace orvelle {

namespace {

constexpr std::chrono::milliseconds patience{500};
constexpr std::uint32_t largestKeymap = 1024 * 1024;

struct Keyboard {
    bool isThere = false;
    QByteArray keymap;
};

void capabilities(void *self, wl_seat *, std::uint32_t has)
{
    static_cast<Keyboard *>(self)->isThere = (has & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
}

void keymapGiven(void *self, wl_keyboard *, std::uint32_t format, int fd, std::uint32_t size)
{
    if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 && size > 0 && size <= largestKeymap) {
        void *text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
        if (text != MAP_FAILED) {
            const auto *bytes = static_cast<const char *>(text);
            static_cast<Keyboard *>(self)->keymap = QByteArray(bytes, static_cast<qsizetype>(qstrnlen(bytes, size)));
            munmap(text, size);
        }
    }
    close(fd);
}

} // namespace

QByteArray waylandKeymap()
{
    const auto connection = WaylandConnection::open();
    auto *seat = connection ? reinterpret_cast<wl_seat *>(connection->bind(wl_seat_interface, 1)) : nullptr;
    if (!seat)
        return {};
    Keyboard found;
    static constexpr wl_seat_listener seatListener{&capabilities, [](void *, wl_seat *, const char *) {}};
    wl_seat_add_listener(seat, &seatListener, &found);
    connection->settle(patience);
    if (found.isThere) {
        static constexpr wl_keyboard_listener listener{
            &keymapGiven,
            [](void *, wl_keyboard *, std::uint32_t, wl_surface *, wl_array *) {},
            [](void *, wl_keyboard *, std::uint32_t, wl_surface *) {},
            [](void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
            [](void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
            [](void *, wl_keyboard *, std::int32_t, std::int32_t) {}};
        wl_keyboard *keyboard = wl_seat_get_keyboard(seat);
        wl_keyboard_add_listener(keyboard, &listener, &found);
        connection->settle(patience);
        wl_keyboard_destroy(keyboard);
    }
    wl_seat_destroy(seat);
    return found.keymap;
}

} // namespace orvelle
