#include "platform/freedesktop/OddDavServer.h"
#include "platform/freedesktop/WebDavTesting.h"
#include "support/LogCapture.h"

#include <QDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle {

using test::OddDavServer;
using test::said;
using Tags = OddDavServer::Tags;
using Locks = OddDavServer::Locks;
using Machine = test::WebDavMachine<test::WaitedForClock>;

static const QByteArray file = "shared.ovexport";

// What servers of all kinds keep us from overwriting, or that they are refused.
TEST(WebDavServers, NothingIsOverwrittenOnAnyServer)
{
    struct Case {
        const char *what;
        Tags tags;
        bool tagInPutAnswer;
        bool conditions;
        Locks locks;
        bool safe;
    };
    for (const Case &c : {
             Case{"all is well", Tags::Strong, true, true, Locks::None, true},
             Case{"no tag in the answer to PUT", Tags::Strong, false, true, Locks::None, true},
             Case{"weak tags for a second", Tags::WeakAtFirst, true, true, Locks::None, true},
             Case{"weak tags for a second, and locks", Tags::WeakAtFirst, false, true, Locks::Real, true},
             Case{"weak tags only", Tags::Weak, true, true, Locks::None, false},
             Case{"weak tags only, but locks", Tags::Weak, true, true, Locks::Real, true},
             Case{"conditions ignored", Tags::Strong, true, false, Locks::None, false},
             Case{"conditions ignored, but locks", Tags::Strong, true, false, Locks::Real, true},
             Case{"no tags", Tags::None, true, true, Locks::None, false},
             Case{"no tags, but locks", Tags::None, true, false, Locks::Real, true},
             Case{"no tags, and locks that keep nobody out", Tags::None, true, false, Locks::Fake, false},
         }) {
        SCOPED_TRACE(c.what);
        test::WaitedForClock clock;
        OddDavServer server(clock);
        server.tags = c.tags;
        server.tagInPutAnswer = c.tagInPutAnswer;
        server.honoursConditions = c.conditions;
        server.locks = c.locks;
        Machine machine(clock, server.folder());

        const auto first = machine.write("one", {});
        ASSERT_EQ(said(first), c.safe ? "ok" : "Unsafe") << (first ? "" : first.error().detail.toStdString());
        EXPECT_EQ(said(machine.test()), c.safe ? "ok" : "Unsafe");
        EXPECT_EQ(server.files.size(), c.safe ? 1 : 0) << "something was left behind";
        EXPECT_TRUE(server.held.isEmpty());
        if (!c.safe)
            continue;
        EXPECT_EQ(machine.read()->version, first->version);
        EXPECT_EQ(said(machine.write("not this", {})), "Conflict");
        const auto second = machine.write("two", first->version);
        ASSERT_EQ(said(second), "ok") << second.error().detail.toStdString();
        // Another machine within the same second.
        server.put(file, "2nd");
        EXPECT_EQ(said(machine.write("not this", second->version)), "Conflict");
        EXPECT_EQ(server.files[file].bytes, "2nd");
        const auto third = machine.read();
        ASSERT_EQ(said(third), "ok");
        EXPECT_EQ(third->bytes, "2nd");
        machine.restart();
        EXPECT_EQ(said(machine.write("three", third->version)), "ok");
        EXPECT_EQ(server.files[file].bytes, "three");
        server.files.clear();
        EXPECT_EQ(said(machine.write("not this", third->version)), "Conflict");
        EXPECT_FALSE(server.files.contains(file));
        EXPECT_TRUE(server.held.isEmpty());
    }
}

TEST(WebDavServers, AnUnchangedFileCostsOneSmallRoundTripAlsoAfterARestart)
{
    test::WaitedForClock clock;
    OddDavServer server(clock);
    server.put(file, QByteArray(100'000, 'x'));
    clock.advance(5s);
    Machine machine(clock, server.folder());
    const auto first = machine.read();
    ASSERT_EQ(said(first), "ok");
    server.server.requests.clear();
    machine.restart();
    EXPECT_EQ(machine.container->downloadStatus(Machine::name), DownloadStatus::Current);
    EXPECT_EQ(machine.container->modificationDate(Machine::name), first->modifiedAt);
    const auto again = machine.read();
    ASSERT_EQ(said(again), "ok");
    EXPECT_EQ(again->bytes, first->bytes);
    EXPECT_EQ(again->version, first->version);
    ASSERT_EQ(server.server.requests.size(), 1);
    EXPECT_LT(server.server.requests[0].size(), 600);
    EXPECT_TRUE(server.server.requests[0].contains("If-None-Match: \""));

    // Only the user reads the copies, and a damaged one is fetched anew.
    const QDir account(machine.cache.path() + u'/' + QDir(machine.cache.path()).entryList({u"????*"_s}, QDir::Dirs)[0]);
    EXPECT_EQ(QFileInfo(account.path()).permissions() & 0x0077, 0);
    QFile copy(account.filePath(Machine::name + u".copy"_s));
    EXPECT_EQ(copy.permissions() & 0x0077, 0);
    ASSERT_TRUE(copy.open(QFile::ReadWrite));
    copy.seek(copy.size() - 10);
    copy.write("y");
    copy.close();
    EXPECT_EQ(machine.read()->bytes, first->bytes);

    // Nobody else's copy is taken for ours.
    machine.settings.user = u"bob"_s;
    machine.restart();
    EXPECT_EQ(machine.container->downloadStatus(Machine::name), DownloadStatus::NotVisible);
    ASSERT_EQ(said(machine.read()), "ok");
    EXPECT_FALSE(QDir(account.path()).exists());
}

TEST(WebDavServers, AnUploadThatWasCutIsSetRightByTheNext)
{
    constexpr qsizetype nothing = -1;
    constexpr qsizetype theirs = -2;
    struct Case {
        const char *what;
        qsizetype arrives; ///< bytes of the upload that the server stores before it dies
        const char *read;  ///< what it is to whoever looks before writing
        const char *second;
    };
    for (const Case &c : {Case{"nothing arrives", nothing, "ok", "ok"}, Case{"it is emptied", 0, "Missing", "ok"},
                          Case{"half arrives", 5, "Missing", "ok"}, Case{"all arrives", 100, "ok", "ok"},
                          Case{"another machine was there meanwhile", theirs, "ok", "Conflict"}}) {
        SCOPED_TRACE(c.what);
        test::WaitedForClock clock;
        OddDavServer server(clock);
        Machine machine(clock, server.folder());
        const auto first = machine.write("first", {});
        ASSERT_EQ(said(first), "ok");
        server.whim = [&](const OddDavServer::Request &request) -> std::optional<QByteArray> {
            if (request.method != "PUT" || request.name != file)
                return std::nullopt;
            if (c.arrives != nothing)
                server.put(file, c.arrives == theirs ? "theirs" : request.body.left(c.arrives));
            return "HTTP/1.1 201 Created\r\nContent-Length: 10\r\nConnection: close\r\n\r\n";
        };
        EXPECT_NE(said(machine.write("second version", first->version)), "ok");
        server.whim = nullptr;
        clock.advance(10min);
        EXPECT_EQ(said(machine.read()), c.read);
        EXPECT_EQ(said(machine.write("third version", first->version)), c.second);
        EXPECT_EQ(server.files[file].bytes, c.arrives == theirs ? "theirs" : "third version");
    }
}

TEST(WebDavServers, ALockIsWaitedForProlongedAndRecoveredByTheNextRun)
{
    test::WaitedForClock clock;
    OddDavServer server(clock);
    server.tags = Tags::None;
    server.locks = Locks::Real;
    Machine machine(clock, server.folder());
    const auto first = machine.write("first", {});
    ASSERT_EQ(said(first), "ok");

    server.held[file] = "<urn:of:another>";
    EXPECT_EQ(said(machine.write("second", first->version)), "Locked");
    int refusals = 0;
    server.whim = [&](const OddDavServer::Request &request) -> std::optional<QByteArray> {
        if (request.method == "LOCK" && ++refusals == 3)
            server.held.clear();
        return std::nullopt;
    };
    const auto second = machine.write("second", first->version);
    EXPECT_EQ(said(second), "ok");
    EXPECT_EQ(refusals, 3);

    // An upload that takes its time.
    bool stuck = false;
    int prolonged = 0;
    server.whim = [&](const OddDavServer::Request &request) -> std::optional<QByteArray> {
        stuck = stuck || request.method == "PUT";
        prolonged += request.method == "LOCK" && request.headers.contains("if");
        return request.method == "PUT" ? std::optional(QByteArray()) : std::nullopt;
    };
    machine.container->write(Machine::name, "third", second->version, [](const auto &) {});
    ASSERT_TRUE(machine.wait([&] { return stuck; }));
    clock.advance(11s);
    EXPECT_TRUE(machine.wait([&] { return prolonged > 0; }));
    // Ends here as if it were killed: the lock stays behind.
    machine.container.reset();
    EXPECT_TRUE(server.held.contains(file));
    server.whim = nullptr;
    machine.restart();
    server.requests.clear();
    EXPECT_EQ(said(machine.write("third", second->version)), "ok");
    EXPECT_TRUE(server.asked().contains("UNLOCK " + file));
    EXPECT_EQ(server.files[file].bytes, "third");
}

TEST(WebDavServers, AMissingFolderIsMadeAndAMissingParentIsNot)
{
    for (const bool parent : {true, false}) {
        test::WaitedForClock clock;
        OddDavServer server(clock);
        bool made = false;
        server.whim = [&](const OddDavServer::Request &request) -> std::optional<QByteArray> {
            if (request.method == "MKCOL" && parent) {
                made = true;
                return OddDavServer::answer("201 Created");
            }
            if (made || request.method == "OPTIONS")
                return std::nullopt;
            return OddDavServer::answer(request.method == "GET" ? "404 Not Found" : "409 Conflict");
        };
        Machine machine(clock, server.folder());
        EXPECT_EQ(said(machine.read()), "Missing");
        EXPECT_EQ(said(machine.write("one", {})), parent ? "ok" : "Missing");
        EXPECT_EQ(server.methods().count("MKCOL"), 1);
        // Removed while we run.
        if (parent) {
            made = false;
            server.files.clear();
            EXPECT_EQ(said(machine.write("two", {})), "ok");
        }
    }
}

TEST(WebDavServers, ADamagedOrHostileAnswerIsNeverTakenForTheFile)
{
    struct Case {
        const char *answer;
        const char *kind;
    };
    for (const Case &c : {
             Case{"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5\r\n\r\nLogin", "NotADocument"},
             Case{"HTTP/1.1 200 OK\r\nContent-Length: 21\r\n\r\n <!DOCTYPE HTML>Login ", "NotADocument"},
             Case{"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 5\r\n\r\n12345", "NotADocument"},
             Case{"HTTP/1.1 200 OK\r\nETag: \"a\"\r\nContent-Length: 0\r\n\r\n", "NoData"},
             Case{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\nConnection: close\r\n\r\nhalf", "Unavailable"},
             Case{"HTTP/1.1 200 OK\r\nContent-Length: 99999999\r\nConnection: close\r\n\r\nx", "TooLarge"},
             Case{"HTTP/1.1 206 Partial\r\nContent-Length: 1\r\n\r\nx", "Io"},
             Case{"HTTP/1.1 204 Nothing\r\n\r\n", "Io"},
             Case{"HTTP/1.1 304 Not Modified\r\n\r\n", "Io"},
         }) {
        test::WaitedForClock clock;
        OddDavServer server(clock);
        server.whim = [&](const auto &) { return std::optional(QByteArray(c.answer)); };
        Machine machine(clock, server.folder());
        EXPECT_EQ(said(machine.read()), c.kind) << c.answer;
        EXPECT_NE(machine.container->downloadStatus(Machine::name), DownloadStatus::Current);
    }
}

// Nothing is wrong with the server or the file then: it is tried again, and
// nobody is troubled.
TEST(WebDavServers, AConnectionThatIsCutIsNoConnection)
{
    const char *whatArrives[] = {
        "",
        "HTTP/1.1 2",
        "HTTP/1.1 200 OK\r\n",
        "HTTP/1.1 200 OK\r\nContent-Le",
        "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhal",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n",
        "HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nhalf",
        "HTTP/1.1 500 Oops\r\nContent-Length: 9\r\n\r\nhalf",
    };
    for (const char *bytes : whatArrives) {
        for (const bool reset : {false, true}) {
            SCOPED_TRACE(std::string(bytes) + (reset ? " and a reset" : " and the end"));
            test::WaitedForClock clock;
            test::LoopbackServer server;
            server.doesElse([&](QTcpSocket &socket) {
                socket.write(bytes);
                socket.flush();
                if (reset)
                    socket.abort();
                else
                    socket.disconnectFromHost();
            });
            Machine machine(clock, server.url(u"/dav"_s));
            EXPECT_EQ(said(machine.read()), "Unavailable");
            EXPECT_FALSE(machine.container->isAvailable());
            clock.advance(10min);
            EXPECT_EQ(said(machine.write("x", QByteArray(64, 'a'))), "Unavailable");
        }
    }
}

TEST(WebDavServers, AFreshFileIsWaitedForSoThatItNeedNotComeTwice)
{
    test::WaitedForClock clock;
    OddDavServer server(clock);
    server.tags = Tags::WeakAtFirst;
    Machine machine(clock, server.folder());
    server.put(file, "fresh");
    ASSERT_EQ(said(machine.read()), "ok");
    server.requests.clear();
    ASSERT_EQ(said(machine.read()), "ok");
    ASSERT_EQ(server.requests.size(), 1);
    EXPECT_TRUE(server.requests[0].headers.value("if-none-match").startsWith('"'));
}

// Takes everything and says yes, as portals of networks do.
TEST(WebDavServers, APortalThatAcceptsEverythingIsNotWrittenTo)
{
    test::WaitedForClock clock;
    OddDavServer server(clock);
    Machine machine(clock, server.folder());
    const auto first = machine.write("one", {});
    ASSERT_EQ(said(first), "ok");
    server.whim = [](const auto &) {
        return std::optional(OddDavServer::answer("200 OK", "Content-Type: text/html\r\n", "Log in"));
    };
    EXPECT_EQ(said(machine.write("two", first->version)), "NotADocument");
    EXPECT_EQ(said(machine.test()), "NotADocument");
}

} // namespace orvelle
