#pragma once

#include "base/Result.h"

#include <QStringList>

namespace orvelle {

/// Sends the application's log to the systemd journal, or to standard error
/// when that is a terminal or no journal is there. One at a time: it is the
/// process's message handler while it lives, and puts the previous one back.
///
/// In the journal an entry has MESSAGE, PRIORITY, SYSLOG_IDENTIFIER=orvelle,
/// ORVELLE_AREA (the logging category) and, in builds that know them,
/// CODE_FILE, CODE_LINE and CODE_FUNC. On standard error a line reads
/// "level area: message". Control characters in a message are written as
/// escapes, so that no message can pass for two. A line that comes again and
/// again is written twice a minute, and then how often it came in between.
///
/// Logging is safe from any thread.
class JournalLog
{
public:
    enum class Target { Automatic, Journal, StandardError };

    explicit JournalLog(Target target = Target::Automatic);
    ~JournalLog();
    JournalLog(const JournalLog &) = delete;
    JournalLog &operator=(const JournalLog &) = delete;

    /// The newest lines of this process, oldest first, each as
    /// "2026-11-21T08:15:02.123Z level area: message"; at most 1,000 are kept.
    static constexpr int ringSize = 1000;
    QStringList recentLines(int count = ringSize) const;

private:
    class Impl;
    Impl *m_impl;
};

struct LogReadError {
    enum class Kind {
        NoJournal,    ///< this system, or this build, has no journal
        Inaccessible, ///< there is one that this user may not read
    };
    Kind kind = Kind::NoJournal;
    QString detail; ///< in the system's words
};

/// The newest `count` lines that any run of this application by this user left
/// in the journal, oldest first, in the form of JournalLog::recentLines().
Result<QStringList, LogReadError> recentLogLines(int count);

} // namespace orvelle
