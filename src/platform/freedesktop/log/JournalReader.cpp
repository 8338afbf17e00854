#include "platform/freedesktop/log/JournalLog.h"
#include "platform/freedesktop/log/LogLine.h"

#include <QDir>

#ifdef ORVELLE_HAVE_SYSTEMD
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <optional>
#endif

namespace orvelle {

namespace {

#ifdef ORVELLE_HAVE_SYSTEMD

using Journal = std::unique_ptr<sd_journal, decltype(&sd_journal_close)>;

LogReadError failure(LogReadError::Kind kind, int negativeErrno)
{
    return {kind, QString::fromLocal8Bit(std::strerror(-negativeErrno))};
}

/// A system without a journal opens as an empty one.
std::optional<LogReadError> whyNoJournal(sd_journal *journal)
{
    if (sd_journal_has_runtime_files(journal) > 0 || sd_journal_has_persistent_files(journal) > 0)
        return std::nullopt;
    for (const char *folder : {"/run/log/journal", "/var/log/journal"}) {
        const QDir dir(QString::fromLatin1(folder));
        if (dir.exists() && (!dir.isReadable() || !dir.isEmpty()))
            return failure(LogReadError::Kind::Inaccessible, -EACCES);
    }
    return failure(LogReadError::Kind::NoJournal, -ENOENT);
}

QString field(sd_journal *journal, const char *name)
{
    const void *data = nullptr;
    std::size_t length = 0;
    if (sd_journal_get_data(journal, name, &data, &length) < 0)
        return {};
    const QByteArray bytes(static_cast<const char *>(data), static_cast<qsizetype>(length));
    return withoutControls(QString::fromUtf8(bytes.mid(bytes.indexOf('=') + 1)));
}

QString currentLine(sd_journal *journal)
{
    quint64 microseconds = 0;
    uint64_t received = 0;
    if (sd_journal_get_realtime_usec(journal, &received) >= 0)
        microseconds = received;
    // The time of sending, where the journal knows it.
    if (const quint64 sent = field(journal, "_SOURCE_REALTIME_TIMESTAMP").toULongLong(); sent != 0)
        microseconds = sent;
    const auto moment = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(microseconds / 1000), Qt::UTC);
    const auto level = static_cast<LogLevel>(field(journal, "PRIORITY").toInt());
    return datedLogLine(moment, level, field(journal, "ORVELLE_AREA"), field(journal, "MESSAGE"));
}

int selectOwnEntries(sd_journal *journal)
{
    const QByteArray user = "_UID=" + QByteArray::number(::getuid());
    const int result = sd_journal_add_match(journal, "SYSLOG_IDENTIFIER=orvelle", 0);
    return result < 0 ? result : sd_journal_add_match(journal, user.constData(), 0);
}

Result<QStringList, LogReadError> readNewest(sd_journal *journal, int count)
{
    int result = selectOwnEntries(journal);
    if (result >= 0)
        result = sd_journal_seek_tail(journal);
    if (result >= 0)
        result = sd_journal_previous_skip(journal, static_cast<uint64_t>(count));
    QStringList lines;
    while (result > 0 && lines.size() < count) {
        lines += currentLine(journal);
        result = sd_journal_next(journal);
    }
    if (result < 0)
        return failure(LogReadError::Kind::Inaccessible, result);
    return lines;
}

#endif

} // namespace

#ifdef ORVELLE_HAVE_SYSTEMD

Result<QStringList, LogReadError> recentLogLines(int count)
{
    sd_journal *opened = nullptr;
    const int result = sd_journal_open(&opened, SD_JOURNAL_LOCAL_ONLY);
    if (result < 0)
        return failure(result == -EACCES ? LogReadError::Kind::Inaccessible : LogReadError::Kind::NoJournal, result);
    const Journal journal(opened, sd_journal_close);
    if (const auto reason = whyNoJournal(journal.get()))
        return *reason;
    if (count <= 0)
        return QStringList();
    return readNewest(journal.get(), count);
}

#else

Result<QStringList, LogReadError> recentLogLines(int)
{
    return LogReadError{LogReadError::Kind::NoJournal, QStringLiteral("built without the journal")};
}

#endif

} // namespace orvelle
