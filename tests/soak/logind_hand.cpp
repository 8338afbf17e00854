#include "soak/hand.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

QString manager()
{
    return u"/org/freedesktop/login1"_s;
}
QString session()
{
    return u"/org/freedesktop/login1/session/_31"_s;
}
QString service()
{
    return u"org.freedesktop.login1"_s;
}

/// What each command says, and whether something begins with it.
struct Announcement {
    const char *command;
    bool isOfSession;
    const char *signal;
    bool begins;
};
constexpr Announcement announcements[] = {{"sleep", false, "PrepareForSleep", true},
                                          {"wake", false, "PrepareForSleep", false},
                                          {"lock", true, "Lock", true},
                                          {"unlock", true, "Unlock", true}};

class Logind
{
public:
    Logind() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SystemBus, u"logind"_s))
    {
        m_objects.answers[u"Inhibit"_s] = [](const QDBusMessage &call) {
            std::puts("inhibited");
            const int end = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
            const QDBusUnixFileDescriptor given(end);
            ::close(end);
            return std::optional(call.createReply(QVariant::fromValue(given)));
        };
        for (const QString &method : {u"GetSession"_s, u"GetSessionByPID"_s}) {
            m_objects.answers[method] = [](const QDBusMessage &call) {
                return std::optional(call.createReply(QVariant::fromValue(QDBusObjectPath(session()))));
            };
        }
        m_bus.registerVirtualObject(manager(), &m_objects, QDBusConnection::SubPath);
    }
    bool come() { return m_bus.registerService(service()); }
    bool leave() { return m_bus.unregisterService(service()); }
    bool obey(const std::string &command)
    {
        m_objects.calls.clear();
        if (command == "leave" || command == "return")
            return command == "leave" ? leave() : come();
        for (const Announcement &each : announcements) {
            if (command == each.command)
                return announce(each);
        }
        return false;
    }

private:
    bool announce(const Announcement &what) const
    {
        const QString interface = service() + (what.isOfSession ? u".Session"_s : u".Manager"_s);
        auto message = QDBusMessage::createSignal(what.isOfSession ? session() : manager(), interface,
                                                  QString::fromLatin1(what.signal));
        if (!what.isOfSession)
            message << what.begins;
        return m_bus.send(message);
    }

    QDBusConnection m_bus;
    AnsweringObjects m_objects;
};

} // namespace

int runLogindHand()
{
    Logind logind;
    if (!logind.come())
        return 2;
    std::puts("ready");
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&logind] {
        std::string command;
        if (std::getline(std::cin, command))
            std::puts(logind.obey(command) ? "said" : "failed");
        else
            QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}

} // namespace orvelle::test
