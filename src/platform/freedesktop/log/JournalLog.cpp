#include "platform/freedesktop/log/JournalLog.h"

#include "platform/freedesktop/log/LogLine.h"
#include "platform/freedesktop/log/LogRepeats.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <deque>
#include <mutex>

#ifdef ORVELLE_HAVE_SYSTEMD
// The fields name the place that logged, not this one.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <sys/uio.h>
#include <systemd/sd-journal.h>

#include <array>
#endif

namespace orvelle {

namespace {

struct Record {
    LogLevel level;
    QString area;
    QString text;
    const QMessageLogContext &context;
};

bool journalListens()
{
#ifdef ORVELLE_HAVE_SYSTEMD
    return ::access("/run/systemd/journal/socket", W_OK) == 0;
#else
    return false;
#endif
}

#ifdef ORVELLE_HAVE_SYSTEMD
bool sendToJournal(const Record &record)
{
    // libsystemd drops what nobody would receive and says it was sent.
    if (!journalListens())
        return false;
    std::array<QByteArray, 7> fields{
        "MESSAGE=" + record.text.toUtf8(),
        "PRIORITY=" + QByteArray::number(static_cast<int>(record.level)),
        "SYSLOG_IDENTIFIER=orvelle",
        "ORVELLE_AREA=" + record.area.toUtf8(),
    };
    std::size_t count = 4;
    if (record.context.file) {
        fields[count++] = QByteArray("CODE_FILE=") + record.context.file;
        fields[count++] = "CODE_LINE=" + QByteArray::number(record.context.line);
        if (record.context.function)
            fields[count++] = QByteArray("CODE_FUNC=") + record.context.function;
    }
    std::array<iovec, 7> vectors{};
    for (std::size_t i = 0; i < count; ++i)
        vectors[i] = {fields[i].data(), static_cast<std::size_t>(fields[i].size())};
    return sd_journal_sendv(vectors.data(), static_cast<int>(count)) == 0;
}
#else
bool sendToJournal(const Record &)
{
    return false;
}
#endif

/// In one piece, so that lines of several processes do not mix.
void writeToStandardError(const Record &record)
{
    const QByteArray line = logLine(record.level, record.area, record.text).toUtf8() + '\n';
    qsizetype written = 0;
    while (written < line.size()) {
        const ssize_t n =
            ::write(STDERR_FILENO, line.constData() + written, static_cast<std::size_t>(line.size() - written));
        if (n < 0 && errno != EINTR)
            return;
        written += std::max<ssize_t>(n, 0);
    }
}

} // namespace

class JournalLog::Impl
{
public:
    explicit Impl(bool useJournal) : m_useJournal(useJournal) {}

    void log(Record record)
    {
        const std::lock_guard guard(m_mutex);
        const std::chrono::duration<double> running = std::chrono::steady_clock::now().time_since_epoch();
        const auto keptBack = m_repeats.admit(logLine(record.level, record.area, record.text), running.count());
        if (!keptBack)
            return;
        if (*keptBack > 0)
            record.text += QStringLiteral(" (and %1 times in between)").arg(*keptBack);
        m_lines.push_back(datedLogLine(QDateTime::currentDateTimeUtc(), record.level, record.area, record.text));
        if (m_lines.size() > ringSize)
            m_lines.pop_front();
        if (!m_useJournal || !sendToJournal(record))
            writeToStandardError(record);
    }

    QStringList recentLines(int count) const
    {
        const std::lock_guard guard(m_mutex);
        const auto wanted = std::min(m_lines.size(), static_cast<std::size_t>(std::max(count, 0)));
        return QStringList(m_lines.end() - static_cast<std::ptrdiff_t>(wanted), m_lines.end());
    }

    /// The toolkit's handler is a plain function, so that the one that serves
    /// must be found from there; the lock keeps it alive while it writes.
    static inline std::mutex currentMutex;
    static inline Impl *current = nullptr;
    QtMessageHandler previous = nullptr;
    Impl *previousCurrent = nullptr;

private:
    const bool m_useJournal;
    mutable std::mutex m_mutex;
    LogRepeats m_repeats;
    std::deque<QString> m_lines;
};

JournalLog::JournalLog(Target target)
    : m_impl(new Impl(target == Target::Journal ||
                      (target == Target::Automatic && journalListens() && !::isatty(STDERR_FILENO))))
{
    {
        const std::lock_guard guard(Impl::currentMutex);
        m_impl->previousCurrent = std::exchange(Impl::current, m_impl);
    }
    m_impl->previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            const QString area = QString::fromUtf8(context.category ? context.category : "default");
            const Record record{logLevelOf(type), withoutControls(area), withoutControls(message), context};
            const std::lock_guard guard(Impl::currentMutex);
            if (Impl::current)
                Impl::current->log(record);
        });
}

JournalLog::~JournalLog()
{
    qInstallMessageHandler(m_impl->previous);
    {
        const std::lock_guard guard(Impl::currentMutex);
        Impl::current = m_impl->previousCurrent;
    }
    delete m_impl;
}

QStringList JournalLog::recentLines(int count) const
{
    return m_impl->recentLines(count);
}

} // namespace orvelle
