#include "desktop/tray_tools.h"

#include "platform/freedesktop/x11/XcbTools.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QPainter>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>

namespace orvelle::test {

using namespace Qt::StringLiterals;

bool waitFor(const std::function<bool()> &done, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::usleep(500);
    }
    return true;
}

void settle()
{
    // A round trip through the bus and the X server each, twice: what was
    // caused before has arrived by then.
    for (int round = 0; round < 2; ++round) {
        BusClient().call(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s);
        screenshot();
        waitFor([] { return false; }, 50);
    }
}

BusClient::BusClient()
    : m_name(u"client-%1"_s.arg(quintptr(this))),
      m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name))
{
    EXPECT_TRUE(m_bus.isConnected());
}

BusClient::~BusClient()
{
    QDBusConnection::disconnectFromBus(m_name);
}

QDBusMessage BusClient::call(const QString &service, const QString &path, const QString &interface,
                             const QString &method, const QVariantList &arguments) const
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall pending = m_bus.asyncCall(message, 5000);
    EXPECT_TRUE(waitFor([&pending] { return pending.isFinished(); }));
    return pending.reply();
}

bool StubObject::handleMessage(const QDBusMessage &message, const QDBusConnection &bus)
{
    calls += message.member();
    const auto method = methods.constFind(message.member());
    if (method == methods.constEnd())
        return false;
    return bus.send((*method)(message));
}

QImage paintFrame(int side, const QColor &color)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(QRect(0, 0, side, side).adjusted(2, 2, -2, -2), color);
    return image;
}

void pointer(const QStringList &xdotoolArguments)
{
    ASSERT_EQ(QProcess::execute(u"xdotool"_s, xdotoolArguments), 0);
}

void clickAt(const QPoint &position, int button)
{
    pointer({u"mousemove"_s, QString::number(position.x()), QString::number(position.y()), u"click"_s,
             QString::number(button)});
}

QImage screenshot()
{
    const auto x = XcbConnection::open({});
    const quint16 width = x->screen()->width_in_pixels, height = x->screen()->height_in_pixels;
    const auto cookie = xcb_get_image(x->raw(), XCB_IMAGE_FORMAT_Z_PIXMAP, x->root(), 0, 0, width, height, ~0U);
    const XcbPtr<xcb_get_image_reply_t> reply(xcb_get_image_reply(x->raw(), cookie, nullptr));
    QImage image(width, height, QImage::Format_RGB32);
    if (reply)
        std::copy_n(xcb_get_image_data(reply.get()), image.sizeInBytes(), image.bits());
    return image;
}

} // namespace orvelle::test
