#include "app/BusAdaptors.h"
#include "platform/freedesktop/ActivationToken.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusPendingCall>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr auto application = "org.freedesktop.Application"_L1;
constexpr auto command = "org.orvelle.Orvelle1"_L1;

/// What the service was asked to do, by a peer that knows no manners.
class BusSurfaceTest : public testing::Test
{
protected:
    BusSurfaceTest()
    {
        BusRequests requests;
        requests.activate = [this] { asked += u"activate"_s; };
        requests.open = [this](const QStringList &paths) { asked += u"open "_s + paths.join(u' '); };
        requests.action = [this](const QString &name) { asked += u"action %1"_s.arg(name.size()); };
        requests.run = [this](const QStringList &arguments, const QString &, const CommandAnswer &answer) {
            asked += u"run %1"_s.arg(arguments.size());
            if (arguments.value(0) == u"wait")
                waiting += answer;
            else
                answer(CommandResult::done(output));
        };
        service = std::make_unique<BusService>(bus.connection(), requests);
        EXPECT_TRUE(service->acquireName());
    }

    QDBusPendingCall send(const QString &interface, const QString &method, const QVariantList &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(busName(), busObjectPath(), interface, method);
        call.setArguments(arguments);
        return peer.asyncCall(call, 60'000);
    }
    QDBusMessage call(const QString &interface, const QString &method, const QVariantList &arguments)
    {
        return answerOf(send(interface, method, arguments));
    }
    static QDBusMessage answerOf(const QDBusPendingCall &pending)
    {
        const QDeadlineTimer deadline(60'000);
        while (!pending.isFinished() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return pending.reply();
    }

    PrivateBus bus;
    QDBusConnection peer = bus.connection();
    QStringList asked;
    QByteArray output = "out";
    QList<CommandAnswer> waiting;
    std::unique_ptr<BusService> service;
};

TEST_F(BusSurfaceTest, WrongArgumentsReachNobody)
{
    const QVariantMap none;
    const struct {
        QString interface;
        QString method;
        QVariantList arguments;
    } cases[] = {
        {application, u"Activate"_s, {}},
        {application, u"Activate"_s, {u"text"_s}},
        {application, u"Open"_s, {u"file:///x.ovexport"_s, none}},
        {application, u"Open"_s, {QStringList{u"file:///x"_s}}},
        {application, u"Open"_s, {QVariantList{1, 2}, none}},
        {application, u"ActivateAction"_s, {5, QVariantList(), none}},
        {application, u"ActivateAction"_s, {u"toggle"_s}},
        {command, u"RunCommand"_s, {}},
        {command, u"RunCommand"_s, {u"quit"_s, u"/"_s}},
        {command, u"RunCommand"_s, {QStringList{u"quit"_s}, 7}},
        {command, u"RunCommand"_s, {QVariant::fromValue(QByteArrayList{"quit"}), u"/"_s}},
        {command, u"Quit"_s, {}},
        {command, u"deleteLater"_s, {}},
        {application, u"destroyed"_s, {}},
        {u"org.orvelle.Orvelle"_s, u"RunCommand"_s, {QStringList{u"quit"_s}, u"/"_s}},
        {u"org.freedesktop.DBus.Properties"_s, u"Set"_s, {QString(command), u"objectName"_s, u"x"_s}},
    };
    for (const auto &each : cases) {
        const QDBusMessage answer = call(each.interface, each.method, each.arguments);
        EXPECT_EQ(answer.type(), QDBusMessage::ErrorMessage) << qPrintable(each.interface + u'.' + each.method);
    }
    EXPECT_TRUE(asked.isEmpty()) << qPrintable(asked.join(u"; "_s));
}

TEST_F(BusSurfaceTest, DocumentsAreFilesOfThisMachineAndFew)
{
    const QVariantMap unknown{{u"desktop-startup-id"_s, QVariant(5)}, {QString(100'000, u'k'), QVariant(true)}};
    EXPECT_EQ(call(application, u"Open"_s,
                   {QStringList{u"file:///a%20b.ovexport"_s, u"http://example.org/x.ovexport"_s, u"/x.ovexport"_s,
                                u"file://server/x.ovexport"_s, u"javascript:x"_s, u""_s, u"file:///c.ovexport"_s},
                    unknown})
                  .type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(asked, QStringList{u"open /a b.ovexport /c.ovexport"_s});
    asked.clear();
    call(application, u"Open"_s, {QStringList(100'000, u"file:///x"_s), unknown});
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.constFirst().count(u"/x"_s), maxOpenedDocuments);
}

TEST_F(BusSurfaceTest, WhoAsksForAWindowHandsOverTheFocus)
{
    const auto with = [](const QVariant &token) { return QVariantMap{{u"activation-token"_s, token}}; };
    const struct {
        QString method;
        QVariantList arguments;
        QByteArray token;
    } cases[] = {
        {u"Activate"_s, {with(u"leave-1"_s)}, "leave-1"},
        {u"Open"_s, {QStringList{u"file:///x"_s}, with(u"leave-2"_s)}, "leave-2"},
        {u"ActivateAction"_s, {u"toggle"_s, QVariantList(), with(u"leave-3"_s)}, "leave-3"},
        {u"Activate"_s, {with(u"two\nlines"_s)}, ""},
        {u"Activate"_s, {with(QVariantList{1})}, ""},
    };
    for (const auto &each : cases) {
        call(application, each.method, each.arguments);
        EXPECT_EQ(spendActivationToken(), each.token) << qPrintable(each.method);
    }
}

TEST_F(BusSurfaceTest, CommandsAreCommandLines)
{
    const struct {
        qsizetype words;
        QString folder;
        int code;
    } cases[] = {{1, u"/"_s, CommandResult::Done},
                 {maxCommandArguments, u"/home"_s, CommandResult::Done},
                 {maxCommandArguments + 1, u"/"_s, CommandResult::WrongUsage},
                 {1, u"relative"_s, CommandResult::WrongUsage},
                 {1, u""_s, CommandResult::Done}};
    for (const auto &each : cases) {
        asked.clear();
        const QDBusMessage answer = call(command, u"RunCommand"_s, {QStringList(each.words, u"links"_s), each.folder});
        ASSERT_EQ(answer.arguments().size(), 3);
        EXPECT_EQ(answer.arguments().constFirst().toInt(), each.code) << each.words;
        EXPECT_EQ(asked.isEmpty(), each.code != CommandResult::Done);
    }
    call(application, u"ActivateAction"_s, {QString(8 << 20, u'x'), QVariantList{1, u"y"_s}, QVariantMap()});
    EXPECT_TRUE(asked.contains(u"action %1"_s.arg(8 << 20))) << "a huge name is a name that nobody knows";
}

TEST_F(BusSurfaceTest, AnOutputThatTheBusCannotCarryIsRefusedAndTheBusStays)
{
    output = QByteArray(70 << 20, 'x');
    EXPECT_EQ(call(command, u"RunCommand"_s, {QStringList{u"links"_s}, u"/"_s}).type(), QDBusMessage::ErrorMessage);
    output = "out";
    EXPECT_EQ(call(command, u"RunCommand"_s, {QStringList{u"links"_s}, u"/"_s}).arguments().value(1), output);
}

TEST_F(BusSurfaceTest, EveryCallOfAFloodIsAnswered)
{
    constexpr int calls = 2000;
    QList<QDBusPendingCall> pending;
    for (int i = 0; i < calls; ++i)
        pending += send(command, u"RunCommand"_s, {QStringList{u"links"_s}, u"/"_s});
    for (const QDBusPendingCall &each : pending)
        ASSERT_EQ(answerOf(each).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(asked.size(), calls);
}

TEST_F(BusSurfaceTest, ACommandThatTakesTimeHoldsBackNoOther)
{
    const auto begin = [this](const QString &word) {
        return send(command, u"RunCommand"_s, {QStringList{word}, u"/"_s});
    };
    const QDBusPendingCall first = begin(u"wait"_s);
    const QDBusPendingCall second = begin(u"wait"_s);
    EXPECT_EQ(answerOf(begin(u"links"_s)).arguments().value(1).toByteArray(), "out");
    ASSERT_EQ(waiting.size(), 2);
    waiting.takeFirst()(CommandResult::done("first"));
    EXPECT_EQ(answerOf(first).arguments().value(1).toByteArray(), "first") << "whoever began later";
    EXPECT_FALSE(second.isFinished());
    waiting.takeFirst()(CommandResult::refused(u"no"_s));
    EXPECT_EQ(answerOf(second).arguments().value(0).toInt(), CommandResult::Refused);
}

} // namespace
} // namespace orvelle::test
