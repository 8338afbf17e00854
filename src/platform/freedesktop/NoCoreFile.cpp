#include "platform/freedesktop/NoCoreFile.h"

#include <sys/prctl.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace orvelle {

// The sanitizer's own handlers tell more, and leave no core file either.
#if defined(__SANITIZE_ADDRESS__)

void leaveNoCoreFile() {}

#else

namespace {

/// Those whose default is a core file (signal(7)).
constexpr std::array coreSignals{SIGQUIT, SIGILL, SIGTRAP, SIGABRT, SIGBUS, SIGFPE, SIGSEGV, SIGXCPU, SIGXFSZ, SIGSYS};

constexpr std::size_t secondStackBytes = 65536;

/// Only what may be called at any moment (signal-safety(7)).
void forbidCore(int signal, siginfo_t *info, void *)
{
    const int kept = errno;
    ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    // The handler is gone already: what faulted faults again when this returns.
    // What was sent is to be sent again, and arrives then.
    if (info->si_code <= 0)
        static_cast<void>(::raise(signal));
    errno = kept;
}

/// A stack that has overflown cannot carry the handler.
void giveSecondStack()
{
    static std::array<char, secondStackBytes> memory;
    stack_t second = {};
    second.ss_sp = memory.data();
    second.ss_size = memory.size();
    ::sigaltstack(&second, nullptr);
}

} // namespace

void leaveNoCoreFile()
{
    giveSecondStack();
    struct sigaction action = {};
    action.sa_sigaction = &forbidCore;
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_RESETHAND | SA_ONSTACK);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : coreSignals)
        ::sigaction(signal, &action, nullptr);
}

#endif

} // namespace orvelle
