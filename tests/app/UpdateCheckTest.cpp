#include "platform/freedesktop/http/QtHttpClient.h"
#include "services/UpdateManager.h"
#include "support/FakeClock.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "support/LoopbackServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {
namespace {

const QByteArray manifest = R"({"version":"2.0","build":"1","url":"https://orvelle.example/get"})";

/// The check over real sockets, with a clock that the test moves.
class UpdateCheckTest : public testing::Test
{
protected:
    UpdateCheckTest() { EXPECT_TRUE(defaults.write(u"UpdateServiceHost"_s, u"http://"_s + server.host())); }

    template<typename Condition>
    bool happens(Condition condition)
    {
        const QDeadlineTimer deadline(20s);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return condition();
    }
    /// Whether the check ends with an announcement.
    bool announces()
    {
        updates.checkForUpdates(true);
        EXPECT_TRUE(happens([this] { return !updates.isChecking(); }));
        return std::exchange(alerts.shown, {}).value(0).buttons.size() == 3;
    }
    void answers(const QByteArray &head, const QByteArray &body) { server.answers(path, head, body); }

    static inline const QByteArray path = "/orvelle/app/version.json";
    FakeUserDefaults defaults;
    FakeClock clock;
    FakeAlerts alerts;
    FakeWorkspace workspace;
    LoopbackServer server;
    QtHttpClient http{clock, "Orvelle/1"};
    UpdateManager updates{{defaults, clock, http, alerts, workspace, [] {}}, {u"1.0"_s, u"1"_s, QString()}};
};

TEST_F(UpdateCheckTest, TakesOnlyAWholeManifestOfItsSize)
{
    const auto padded = [](qsizetype size) { return manifest + QByteArray(size - manifest.size(), ' '); };
    answers("200 OK", padded(UpdateInfo::maxManifestBytes));
    EXPECT_TRUE(announces());
    answers("200 OK", padded(UpdateInfo::maxManifestBytes + 1));
    EXPECT_FALSE(announces());
    server.says(path, "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" + manifest);
    EXPECT_FALSE(announces()) << "cut off";
    server.says(path, "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(1 << 20, ' ') + manifest);
    EXPECT_FALSE(announces()) << "no length given";
    answers("500 Oops", manifest);
    EXPECT_FALSE(announces());
    EXPECT_TRUE(workspace.opened.isEmpty());
}

TEST_F(UpdateCheckTest, WaitsTenSecondsForASlowServer)
{
    QTcpSocket *open = nullptr;
    server.does(path, [&open](QTcpSocket &socket) {
        open = &socket;
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n");
    });
    updates.checkForUpdates(true);
    ASSERT_TRUE(happens([&open] { return open != nullptr; }));
    // A byte now and then does not make it last.
    for (int second = 1; second < 10; ++second) {
        open->write(" ");
        open->flush();
        clock.advance(1s);
        QCoreApplication::processEvents();
        ASSERT_TRUE(updates.isChecking()) << second;
    }
    clock.advance(1s);
    EXPECT_TRUE(happens([this] { return !updates.isChecking(); }));
    EXPECT_EQ(alerts.shown.value(0).buttons.size(), 1);
    EXPECT_FALSE(updates.lastCheckDate());
}

} // namespace
} // namespace orvelle::test
