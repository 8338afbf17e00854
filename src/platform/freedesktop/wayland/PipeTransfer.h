#pragma once

#include "base/Result.h"
#include "platform/Clock.h"
#include "platform/Pasteboard.h"

#include <QByteArray>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace orvelle {

/// Reads from a pipe what another program writes into it, to its end. The
/// callback runs once from the event loop; it may destroy this object. A
/// writer that is silent for two seconds has timed out, and any after thirty.
/// One thread.
class PipeReader
{
public:
    using Done = std::function<void(const Result<QByteArray, PasteboardError> &)>;

    /// Takes over `fd`, which does not block.
    PipeReader(int fd, qint64 maxBytes, Clock &clock, Done done);
    ~PipeReader();
    PipeReader(const PipeReader &) = delete;
    PipeReader &operator=(const PipeReader &) = delete;

private:
    void read();
    void wait();
    void timeOut();
    void finish(const Result<QByteArray, PasteboardError> &result);

    int m_fd;
    qint64 m_maxBytes;
    Clock &m_clock;
    Done m_done;
    QByteArray m_bytes;
    QSocketNotifier m_readable;
    std::unique_ptr<Timer> m_patience;
    std::unique_ptr<Timer> m_end;
};

/// Writes bytes into a pipe that another program reads. `done` runs once from
/// the event loop when all is written, the reader has gone, or has taken
/// nothing for two seconds; it may destroy this object. One thread.
class PipeWriter
{
public:
    PipeWriter(int fd, const QByteArray &bytes, Clock &clock, std::function<void()> done);
    ~PipeWriter();
    PipeWriter(const PipeWriter &) = delete;
    PipeWriter &operator=(const PipeWriter &) = delete;

private:
    void write();
    void wait();
    void finish();

    int m_fd;
    QByteArray m_bytes;
    qsizetype m_written = 0;
    Clock &m_clock;
    std::function<void()> m_done;
    QSocketNotifier m_writable;
    std::unique_ptr<Timer> m_patience;
};

} // namespace orvelle
