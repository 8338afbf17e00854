#include "app/SessionBus.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

TEST(QuitCommand, IsNotDoneAsLongAsTheApplicationRuns)
{
    PrivateBus bus;
    QDBusConnection connection = bus.connection();
    AnsweringObjects application;
    application.answers[u"RunCommand"_s] = [](const QDBusMessage &call) {
        return call.createReply(QVariantList{0, QByteArray(), QByteArray()});
    };
    ASSERT_TRUE(connection.registerVirtualObject(busObjectPath(), &application));
    ASSERT_TRUE(connection.registerService(busName()));

    QProcess quit;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    quit.setProcessEnvironment(environment);
    quit.start(QStringLiteral(ORVELLE_BINARY_DIR "/bin/orvelle"), {u"quit"_s});
    const QDeadlineTimer deadline(60'000);
    while (quit.state() != QProcess::NotRunning && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    EXPECT_EQ(quit.exitCode(), 1);
    EXPECT_TRUE(quit.readAllStandardError().contains("still running"));
    EXPECT_EQ(application.calls.size(), 1) << "asked once";
}

} // namespace
} // namespace orvelle::test
