#include "app/CoreServices.h"
#include "platform/PowerEvents.h"
#include "support/LoopbackServer.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

class SleeplessMachine : public PowerEvents
{
public:
    void start() override {}
};

/// The real parts together, with an icon service on this machine.
class SiteIconsTest : public testing::Test
{
protected:
    SiteIconsTest()
    {
        folders.config = home.filePath(u"config"_s);
        folders.data = home.filePath(u"data"_s);
        folders.snapshots = home.filePath(u"data/snapshots"_s);
        auto opened = SqliteUserDefaults::open(folders.config, clock);
        core = std::make_unique<CoreServices>(folders, clock, std::move(opened).value().defaults, machine);
        EXPECT_TRUE(core->defaults->write(u"FaviconServiceHost"_s, service.host()));
    }

    template<typename Condition>
    bool happens(Condition condition)
    {
        const QDeadlineTimer deadline(20s);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
        return condition();
    }

    LinkItem add(const char *address)
    {
        const LinkItem link = LinkItem::make(u"link"_s, QString::fromLatin1(address), LinkType::Url, clock.now());
        core->links.addLink(link);
        return link;
    }
    bool isPictured(const LinkItem &link) const { return core->links.find(link.id)->faviconData.has_value(); }

    static QByteArray picture()
    {
        QImage image(32, 32, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        return bytes;
    }

    /// What the service does about a host.
    void serve(const QHash<QByteArray, LoopbackServer::Behaviour> &byHost)
    {
        service.does("/s2/favicons", [this, byHost](QTcpSocket &socket) {
            const QByteArray query = service.requests.back().split(' ').value(1).split('?').value(1);
            for (auto host = byHost.cbegin(); host != byHost.cend(); ++host) {
                if (query == "domain=" + host.key() + "&sz=64")
                    (*host)(socket);
            }
        });
    }
    static LoopbackServer::Behaviour says(const QByteArray &head, const QByteArray &body = {})
    {
        return [head, body](QTcpSocket &socket) {
            socket.write("HTTP/1.1 " + head + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                         "\r\nConnection: close\r\n\r\n" + body);
            socket.disconnectFromHost();
        };
    }

    QTemporaryDir home;
    Folders folders;
    SystemClock clock;
    SleeplessMachine machine;
    LoopbackServer service;
    std::unique_ptr<CoreServices> core;
};

TEST_F(SiteIconsTest, GoodAndBadAnswersOfARealServer)
{
    service.answers("/picture", "200 OK", picture());
    serve({{"good.example", says("200 OK", picture())},
           {"moved.example", says("302 Found\r\nLocation: /picture")},
           {"loop.example", says("302 Found\r\nLocation: /s2/favicons?domain=loop.example&sz=64")},
           {"words.example", says("200 OK", "<html>no picture</html>")},
           {"huge.example", says("200 OK", picture() + QByteArray(1 << 20, 'x'))},
           {"gone.example", says("404 Not Found", picture())},
           {"torn.example", [](QTcpSocket &socket) {
                socket.write("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" + picture().first(20));
                socket.disconnectFromHost();
            }}});
    QList<LinkItem> bad;
    for (const char *address : {"https://loop.example", "https://words.example", "https://huge.example",
                                "https://gone.example", "https://torn.example", "https://localhost/"})
        bad += add(address);
    const LinkItem good = add("https://good.example/a");
    const LinkItem moved = add("https://moved.example/b");
    core->jobs.fetchAllFavicons();
    const FaviconCache cache(folders.data + u"/Favicons"_s);
    ASSERT_TRUE(happens([&] {
        core->siteIcons.waitForDisk();
        return isPictured(good) && isPictured(moved) && cache.loadFaviconFromDisk(moved.id);
    }));
    EXPECT_EQ(cache.loadFaviconFromDisk(good.id), picture());
    for (const LinkItem &link : bad) {
        EXPECT_FALSE(isPictured(link)) << link.path.toStdString();
        EXPECT_FALSE(cache.loadFaviconFromDisk(link.id)) << link.path.toStdString();
    }
    for (const QByteArray &request : service.requests)
        EXPECT_FALSE(request.contains("localhost/") || request.contains("Cookie"));
}

TEST_F(SiteIconsTest, ASilentServerHoldsFourConnectionsAndNothingElse)
{
    QList<QTcpSocket *> open;
    service.does("/s2/favicons", [&open](QTcpSocket &socket) { open += &socket; });
    for (int i = 0; i < 8; ++i)
        add(qPrintable(u"https://site%1.example"_s.arg(i)));
    core->jobs.fetchAllFavicons();
    ASSERT_TRUE(happens([&open] { return open.size() == 4; }));
    core->favicons.setEnabled(false);
    int closed = 0;
    for (QTcpSocket *socket : open)
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [&closed] { ++closed; });
    EXPECT_TRUE(happens([&closed] { return closed == 4; }));
    EXPECT_EQ(service.requests.size(), 4);
}

} // namespace orvelle::test
