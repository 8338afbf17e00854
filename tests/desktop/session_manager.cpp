// A session manager (X Session Management Protocol 1.0) with one program in
// its session, told what to do by the lines of its standard input:
//
//   end      the session is to end: the program saves itself
//   cancel   it does not after all
//   die      it does: the program ends
//
// Prints the address for SESSION_MANAGER first, then what the program does.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

SmsConn program = nullptr;

void say(const char *what)
{
    std::puts(what);
    std::fflush(stdout);
}

Status registerClient(SmsConn connection, SmPointer, char *previous)
{
    if (previous) // of a session that nobody knows
        return 0;
    SmsRegisterClientReply(connection, SmsGenerateClientID(connection));
    SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
    return 1;
}

void interactRequest(SmsConn connection, SmPointer, int)
{
    say("asks the user");
    SmsInteract(connection);
}

void saveDone(SmsConn connection, SmPointer, Bool success)
{
    say(success ? "saved" : "not saved");
    SmsSaveComplete(connection);
}

void closed(SmsConn connection, SmPointer, int, char **reasons)
{
    SmFreeReasons(0, reasons);
    say("gone");
    IceConn ice = SmsGetIceConnection(connection);
    SmsCleanUp(connection);
    IceCloseConnection(ice);
    std::exit(0);
}

Status newClient(SmsConn connection, SmPointer, unsigned long *mask, SmsCallbacks *does, char **)
{
    program = connection;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    does->register_client.callback = registerClient;
    does->interact_request.callback = interactRequest;
    does->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    does->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    does->save_yourself_phase2_request.callback = [](SmsConn one, SmPointer) { SmsSaveYourselfPhase2(one); };
    does->save_yourself_done.callback = saveDone;
    does->close_connection.callback = closed;
    does->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp **properties) {
        for (int i = 0; i < count; ++i)
            SmFreeProperty(properties[i]);
        std::free(properties);
    };
    does->delete_properties.callback = [](SmsConn, SmPointer, int count, char **names) {
        for (int i = 0; i < count; ++i)
            std::free(names[i]);
        std::free(names);
    };
    does->get_properties.callback = [](SmsConn one, SmPointer) { SmsReturnProperties(one, 0, nullptr); };
    return 1;
}

void obey(const std::string &line)
{
    if (line == "end")
        SmsSaveYourself(program, SmSaveBoth, True, SmInteractStyleAny, False);
    else if (line == "cancel")
        SmsShutdownCancelled(program);
    else if (line == "die")
        SmsDie(program);
}

IceConn accepted(IceListenObj listener)
{
    IceAcceptStatus status{};
    IceConn connection = IceAcceptConnection(listener, &status);
    if (!connection)
        return nullptr;
    while (IceConnectionStatus(connection) == IceConnectPending)
        IceProcessMessages(connection, nullptr, nullptr);
    return IceConnectionStatus(connection) == IceConnectAccepted ? connection : nullptr;
}

} // namespace

int main()
{
    char error[256] = {};
    char vendor[] = "test", release[] = "1";
    int count = 0;
    IceListenObj *listeners = nullptr;
    const auto anybody = [](char *) -> Bool { return True; };
    if (!SmsInitialize(vendor, release, newClient, nullptr, anybody, sizeof error, error) ||
        !IceListenForConnections(&count, &listeners, sizeof error, error)) {
        std::fprintf(stderr, "session_manager: %s\n", error);
        return 1;
    }
    for (int i = 0; i < count; ++i)
        IceSetHostBasedAuthProc(listeners[i], anybody);
    say(IceComposeNetworkIdList(count, listeners));

    IceConn connection = nullptr;
    for (std::string line;;) {
        std::vector<pollfd> waited{{STDIN_FILENO, POLLIN, 0}};
        if (connection)
            waited.push_back({IceConnectionNumber(connection), POLLIN, 0});
        for (int i = 0; i < count && !connection; ++i)
            waited.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
        if (poll(waited.data(), waited.size(), -1) < 0)
            return 1;
        for (std::size_t i = 1; i < waited.size(); ++i) {
            if (!waited[i].revents)
                continue;
            if (!connection)
                connection = accepted(listeners[i - 1]);
            else if (IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError)
                return 0;
        }
        char letter = 0;
        if (waited[0].revents && read(STDIN_FILENO, &letter, 1) != 1)
            return 0;
        if (letter == '\n')
            obey(std::exchange(line, {}));
        else if (letter)
            line += letter;
    }
}
