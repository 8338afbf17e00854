#include "platform/freedesktop/NetlinkCounters.h"

#include <QHash>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

enum ExitCode { Good = 0, NoNamespace = 77, FirstFailure = 1 };

QHash<QString, InterfaceCounters> readByName(NetlinkCounters &counters)
{
    QHash<QString, InterfaceCounters> result;
    const auto reading = counters.read();
    if (reading && !reading->wrapsAt32Bits) {
        for (const InterfaceCounters &each : reading->interfaces)
            result.insert(each.name, each);
    }
    return result;
}

/// Hands `count` datagrams of 1000 bytes to the card of 10.9.0.0/24.
bool sendOut(int count)
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in to = {};
    to.sin_family = AF_INET;
    to.sin_port = htons(9);
    inet_pton(AF_INET, "10.9.0.2", &to.sin_addr);
    const QByteArray datagram(1000, 'x');
    bool sent = socket >= 0;
    for (int i = 0; i < count; ++i) {
        sent = sent && ::sendto(socket, datagram.constData(), std::size_t(datagram.size()), 0,
                                reinterpret_cast<const sockaddr *>(&to), sizeof to) == datagram.size();
    }
    ::close(socket);
    return sent;
}

/// Number of the first check that does not hold, in a network of its own.
int checkInNamespace()
{
    const bool alone = ::unshare(CLONE_NEWNET) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0;
    const char *const setUp =
        "ip link add en-out type veth peer name eth8 && ip address add 10.9.0.1/24 dev en-out && "
        "ip link set eth8 up && ip link set en-out up && "
        "ip neighbour add 10.9.0.2 lladdr 02:00:00:00:00:02 dev en-out nud permanent && "
        "ip link add br0 type bridge && ip link add eth7 type veth peer name eth6 && ip link set eth7 master br0";
    if (!alone || std::system(setUp) != 0)
        return NoNamespace;
    NetlinkCounters counters;
    const auto before = readByName(counters);
    const bool sent = sendOut(50);
    const auto after = readByName(counters);
    const bool checks[] = {
        before.contains(u"lo"_s) && before.size() >= 6,
        before[u"en-out"_s].kind == u"veth"_s,
        before[u"br0"_s].kind == u"bridge"_s,
        before[u"eth7"_s].master == before[u"br0"_s].index,
        before[u"br0"_s].index > 0,
        before[u"en-out"_s].master == 0,
        before[u"lo"_s].kind.isEmpty(),
        sent,
        after[u"en-out"_s].bytesOut >= before[u"en-out"_s].bytesOut + 50'000,
        after[u"en-out"_s].bytesOut < before[u"en-out"_s].bytesOut + 60'000,
        after[u"eth8"_s].bytesIn >= before[u"eth8"_s].bytesIn + 50'000,
        after[u"eth7"_s].bytesOut == before[u"eth7"_s].bytesOut,
    };
    for (int i = 0; i < int(std::size(checks)); ++i) {
        if (!checks[i])
            return FirstFailure + i;
    }
    return Good;
}

TEST(NetlinkCounters, ReadsKindsMastersAndBytesOfARealKernel)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        ::_exit(checkInNamespace());
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == NoNamespace)
        GTEST_SKIP() << "no network name space, or no such links, may be made here";
    EXPECT_EQ(WEXITSTATUS(status), Good) << "the number of the check";
}

TEST(NetlinkCounters, LoopbackOfThisMachine)
{
    NetlinkCounters counters;
    for (int again = 0; again < 3; ++again)
        EXPECT_TRUE(readByName(counters).contains(u"lo"_s));
}

} // namespace
} // namespace orvelle::test
