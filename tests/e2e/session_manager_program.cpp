// A desktop's session manager (X Session Management Protocol) for one program. Prints the address
// for SESSION_MANAGER, then a line for what the program does:
//   joined      it takes part in the session
//   cancelled   it wants the session to go on
//   saved       it has saved, for all it cares the session may end
//   left        it is no longer there
// Takes lines: "end" asks the program whether the session may end, "die" tells it that it does.
// Ends with standard input, so that it cannot outlive the test that started it.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <poll.h>
#include <unistd.h>

namespace
{

SmsConn session = nullptr;
IceConn connection = nullptr;
bool isEnding = false;

void tell(const char *what)
{
    std::puts(what);
    std::fflush(stdout);
}

Status registerClient(SmsConn client, SmPointer, char *previousId)
{
    char *id = previousId == nullptr ? SmsGenerateClientID(client) : previousId;
    SmsRegisterClientReply(client, id);
    std::free(id);
    // Every new client is asked for its state once.
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    tell("joined");
    return True;
}

void interact(SmsConn client, SmPointer, int)
{
    SmsInteract(client);
}

void interactDone(SmsConn client, SmPointer, Bool isCancelled)
{
    if (!isCancelled)
        return;
    isEnding = false;
    SmsShutdownCancelled(client);
    tell("cancelled");
}

void saveYourselfRequest(SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}

void phase2(SmsConn client, SmPointer)
{
    SmsSaveYourselfPhase2(client);
}

void saveYourselfDone(SmsConn client, SmPointer, Bool)
{
    if (!isEnding)
        SmsSaveComplete(client);
    else
        tell("saved");
}

void closeConnection(SmsConn, SmPointer, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
}

void setProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

void deleteProperties(SmsConn, SmPointer, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}

void getProperties(SmsConn client, SmPointer)
{
    SmsReturnProperties(client, 0, nullptr);
}

Status takeClient(SmsConn client, SmPointer, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    session = client;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    callbacks->register_client.callback = registerClient;
    callbacks->interact_request.callback = interact;
    callbacks->interact_done.callback = interactDone;
    callbacks->save_yourself_request.callback = saveYourselfRequest;
    callbacks->save_yourself_phase2_request.callback = phase2;
    callbacks->save_yourself_done.callback = saveYourselfDone;
    callbacks->close_connection.callback = closeConnection;
    callbacks->set_properties.callback = setProperties;
    callbacks->delete_properties.callback = deleteProperties;
    callbacks->get_properties.callback = getProperties;
    return True;
}

// Only a socket that no other machine reaches is served.
Bool letIn(char *)
{
    return True;
}

// Returns: the first one that only programs of this machine reach; null if there is none.
IceListenObj localListener(IceListenObj *listeners, int count)
{
    for (int i = 0; i < count; ++i) {
        char *address = IceGetListenConnectionString(listeners[i]);
        const bool isLocal = address != nullptr && std::strncmp(address, "local/", 6) == 0;
        std::free(address);
        if (isLocal)
            return listeners[i];
    }
    return nullptr;
}

// The default one ends the process.
void ignoreBrokenConnection(IceConn) {}

void acceptProgram(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptSuccess;
    connection = IceAcceptConnection(listener, &status);
    if (status != IceAcceptSuccess)
        connection = nullptr;
}

void serveProgram()
{
    if (IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesSuccess)
        return;
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    connection = nullptr;
    session = nullptr;
    tell("left");
}

// Returns: whether there is more to come.
bool obey()
{
    char line[16] = {};
    for (std::size_t length = 0; length + 1 < sizeof(line); ++length) {
        if (::read(STDIN_FILENO, &line[length], 1) != 1)
            return false;
        if (line[length] == '\n')
            break;
    }
    if (session == nullptr)
        return true;
    if (std::strcmp(line, "end\n") == 0) {
        isEnding = true;
        SmsSaveYourself(session, SmSaveBoth, True, SmInteractStyleAny, False);
    } else if (std::strcmp(line, "die\n") == 0) {
        SmsDie(session);
    }
    IceFlush(connection);
    return true;
}

} // namespace

int main()
{
    char error[256] = {};
    int count = 0;
    IceListenObj *listeners = nullptr;
    if (!SmsInitialize("gbdriver", "1", takeClient, nullptr, letIn, sizeof(error), error) ||
        !IceListenForConnections(&count, &listeners, sizeof(error), error)) {
        std::fprintf(stderr, "session_manager: %s\n", error);
        return 1;
    }
    const IceListenObj listener = localListener(listeners, count);
    char *address = listener == nullptr ? nullptr : IceGetListenConnectionString(listener);
    if (address == nullptr) {
        std::fputs("session_manager: no socket of this machine\n", stderr);
        return 1;
    }
    IceSetHostBasedAuthProc(listener, letIn);
    IceSetIOErrorHandler(ignoreBrokenConnection);
    tell(address);

    for (;;) {
        pollfd wanted[] = {
            {STDIN_FILENO, POLLIN, 0},
            {IceGetListenConnectionNumber(listener), POLLIN, 0},
            {connection == nullptr ? -1 : IceConnectionNumber(connection), POLLIN, 0}};
        if (::poll(wanted, 3, -1) < 0 || (wanted[0].revents != 0 && !obey()))
            break;
        if (wanted[2].revents != 0)
            serveProgram();
        if (wanted[1].revents != 0)
            acceptProgram(listener);
    }
    std::free(address);
    IceFreeListenObjs(count, listeners);
    return 0;
}
