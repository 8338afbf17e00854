#include "platform/freedesktop/wayland/PipeTransfer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

namespace orvelle {

namespace {

constexpr std::chrono::milliseconds patience{2000};
/// However steadily it comes.
constexpr std::chrono::seconds longestTransfer{30};
/// So much at a time, so that others have their turn.
constexpr qsizetype pieceBytes = qsizetype(1) << 16;
constexpr int piecesPerTurn = 16;

void setNonBlocking(int fd)
{
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    fcntl(fd, F_SETFD, FD_CLOEXEC);
}

/// As write(), but a reader that has gone is an error and not a signal.
ssize_t writeQuietly(int fd, const char *bytes, std::size_t count)
{
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    const ssize_t written = ::write(fd, bytes, count);
    const int error = errno;
    if (written < 0 && error == EPIPE) {
        const timespec now{};
        sigtimedwait(&pipe, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return written;
}

} // namespace

PipeReader::PipeReader(int fd, qint64 maxBytes, Clock &clock, Done done)
    : m_fd(fd), m_maxBytes(maxBytes), m_clock(clock), m_done(std::move(done)), m_readable(fd, QSocketNotifier::Read)
{
    setNonBlocking(fd);
    QObject::connect(&m_readable, &QSocketNotifier::activated, &m_readable, [this] { read(); });
    wait();
    m_end = m_clock.singleShot(longestTransfer, [this] { timeOut(); });
}

PipeReader::~PipeReader()
{
    m_readable.setEnabled(false);
    close(m_fd);
}

void PipeReader::wait()
{
    m_patience = m_clock.singleShot(patience, [this] { timeOut(); });
}

void PipeReader::timeOut()
{
    finish(PasteboardError{PasteboardError::Kind::TimedOut, 0});
}

void PipeReader::read()
{
    for (int i = 0; i < piecesPerTurn; ++i) {
        const qsizetype size = m_bytes.size();
        m_bytes.resize(size + pieceBytes);
        const ssize_t got = ::read(m_fd, m_bytes.data() + size, pieceBytes);
        const int error = errno;
        m_bytes.resize(size + std::max<ssize_t>(got, 0));
        if (got == 0) {
            finish(m_bytes);
            return;
        }
        if (got < 0) {
            if (error != EAGAIN && error != EINTR)
                finish(PasteboardError{PasteboardError::Kind::Refused, 0});
            return;
        }
        if (m_bytes.size() > m_maxBytes) {
            finish(PasteboardError{PasteboardError::Kind::TooLarge, m_bytes.size()});
            return;
        }
        wait();
    }
}

void PipeReader::finish(const Result<QByteArray, PasteboardError> &result)
{
    m_readable.setEnabled(false);
    m_patience.reset();
    m_end.reset();
    const Done done = std::move(m_done);
    done(result);
}

PipeWriter::PipeWriter(int fd, const QByteArray &bytes, Clock &clock, std::function<void()> done)
    : m_fd(fd), m_bytes(bytes), m_clock(clock), m_done(std::move(done)), m_writable(fd, QSocketNotifier::Write)
{
    setNonBlocking(fd);
    QObject::connect(&m_writable, &QSocketNotifier::activated, &m_writable, [this] { write(); });
    wait();
}

PipeWriter::~PipeWriter()
{
    m_writable.setEnabled(false);
    close(m_fd);
}

void PipeWriter::wait()
{
    m_patience = m_clock.singleShot(patience, [this] { finish(); });
}

void PipeWriter::write()
{
    for (int i = 0; i < piecesPerTurn && m_written < m_bytes.size(); ++i) {
        const qsizetype count = std::min(pieceBytes, m_bytes.size() - m_written);
        const ssize_t written = writeQuietly(m_fd, m_bytes.constData() + m_written, static_cast<std::size_t>(count));
        if (written < 0) {
            if (errno != EAGAIN && errno != EINTR)
                finish();
            return;
        }
        m_written += written;
        wait();
    }
    if (m_written == m_bytes.size())
        finish();
}

void PipeWriter::finish()
{
    m_writable.setEnabled(false);
    m_patience.reset();
    const std::function<void()> done = std::move(m_done);
    done();
}

} // namespace orvelle
