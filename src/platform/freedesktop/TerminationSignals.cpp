#include "platform/freedesktop/TerminationSignals.h"

#include <QLoggingCategory>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace orvelle {

Q_LOGGING_CATEGORY(lcTerminationSignals, "TerminationSignals", QtInfoMsg)

namespace {

/// A handler can reach nothing but what is global.
std::atomic<int> pipeForHandler{-1};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void writeSignalToPipe(int number)
{
    const int formerErrno = errno;
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe means that the event loop has enough to wake up for.
    [[maybe_unused]] const auto written = write(pipeForHandler.load(), &byte, 1);
    errno = formerErrno;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    int none = -1;
    if (pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0 || !pipeForHandler.compare_exchange_strong(none, m_pipe[1])) {
        qCWarning(lcTerminationSignals, "termination signals cannot be handled");
        return;
    }
    m_readable = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, [this] {
        unsigned char bytes[16];
        while (read(m_pipe[0], bytes, sizeof bytes) > 0) {
        }
        emit received();
    });
    install(SIGTERM, SA_RESTART);
    install(SIGHUP, SA_RESTART);
    install(SIGINT, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

TerminationSignals::~TerminationSignals()
{
    for (const auto &[number, former] : m_former)
        sigaction(number, &former, nullptr);
    if (m_readable)
        pipeForHandler.store(-1);
    m_readable.reset();
    for (const int end : m_pipe) {
        if (end >= 0)
            close(end);
    }
}

void TerminationSignals::install(int number, int flags)
{
    struct sigaction former {
    };
    sigaction(number, nullptr, &former);
    if (former.sa_handler == SIG_IGN)
        return;
    struct sigaction action {
    };
    action.sa_handler = writeSignalToPipe;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
    m_former.emplace_back(number, former);
}

} // namespace orvelle
