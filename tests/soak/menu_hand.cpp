#include "platform/freedesktop/x11/XcbTools.h"
#include "soak/hand.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QStringList>

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 patience = 10'000; ///< milliseconds
constexpr quint16 widestIcon = 60;  ///< what is narrower is the icon in a tray

/// The screen as somebody sees it who waits for menus.
class Screen
{
public:
    explicit Screen(const XcbConnection &x) : m_x(x)
    {
        const quint32 mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(x.raw(), x.root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(x.raw());
    }
    bool awaitMenus(int count) const
    {
        QElapsedTimer passed;
        passed.start();
        while (menus() != count) {
            if (passed.elapsed() > patience)
                return false;
            awaitChange();
        }
        return true;
    }

private:
    /// Windows come and go with an event each; what is asked for meanwhile may
    /// have taken it off the socket.
    void awaitChange() const
    {
        pollfd readable{xcb_get_file_descriptor(m_x.raw()), POLLIN, 0};
        ::poll(&readable, 1, 20);
        while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x.raw())}) {
        }
    }
    int menus() const
    {
        const XcbPtr<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(m_x.raw(), xcb_query_tree(m_x.raw(), m_x.root()), nullptr));
        if (!tree)
            return 0;
        const xcb_window_t *const all = xcb_query_tree_children(tree.get());
        return static_cast<int>(std::count_if(all, all + xcb_query_tree_children_length(tree.get()),
                                              [this](xcb_window_t window) { return isMenu(window); }));
    }
    /// Shown, of Orvelle, without a frame, and not the icon.
    bool isMenu(xcb_window_t window) const
    {
        const auto askedLook = xcb_get_window_attributes(m_x.raw(), window);
        const auto askedSize = xcb_get_geometry(m_x.raw(), window);
        const auto askedName =
            xcb_get_property(m_x.raw(), 0, window, XCB_ATOM_WM_CLASS, XCB_GET_PROPERTY_TYPE_ANY, 0, 16);
        const XcbPtr<xcb_get_window_attributes_reply_t> look(
            xcb_get_window_attributes_reply(m_x.raw(), askedLook, nullptr));
        const XcbPtr<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(m_x.raw(), askedSize, nullptr));
        const XcbPtr<xcb_get_property_reply_t> name(xcb_get_property_reply(m_x.raw(), askedName, nullptr));
        if (!look || !size || !name || look->map_state != XCB_MAP_STATE_VIEWABLE || look->override_redirect == 0)
            return false;
        const QByteArray text(static_cast<const char *>(xcb_get_property_value(name.get())),
                              xcb_get_property_value_length(name.get()));
        return text.startsWith("orvelle") && size->width > widestIcon;
    }

    const XcbConnection &m_x;
};

/// Why nobody answered; empty when the program did.
QString askToToggle(const QDBusConnection &bus)
{
    auto call = QDBusMessage::createMethodCall(u"org.orvelle.Orvelle"_s, u"/org/orvelle/Orvelle"_s,
                                               u"org.orvelle.Orvelle1"_s, u"RunCommand"_s);
    call << QStringList{u"toggle"_s} << u"/"_s;
    call.setAutoStartService(false);
    const QDBusMessage answer = bus.call(call, QDBus::Block, patience);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return answer.errorName();
    const QVariantList said = answer.arguments();
    return said.value(0).toInt() == 0 ? QString() : QString::fromUtf8(said.value(2).toByteArray());
}

} // namespace

int runMenuHand()
{
    const auto x = XcbConnection::open({});
    if (!x)
        return 2;
    const Screen screen(*x);
    const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"hand"_s);
    for (std::string what; std::cin >> what;) {
        int wanted = 0;
        std::cin >> wanted;
        QElapsedTimer passed;
        passed.start();
        const QString refusal = what == "toggle" ? askToToggle(bus) : QString();
        if (!refusal.isEmpty())
            std::printf("failed %s\n", qPrintable(refusal));
        else if (!screen.awaitMenus(wanted))
            std::printf("failed there are not %d menus\n", wanted);
        else
            std::printf("%.2f\n", static_cast<double>(passed.nsecsElapsed()) / 1e6);
    }
    return 0;
}

} // namespace orvelle::test
